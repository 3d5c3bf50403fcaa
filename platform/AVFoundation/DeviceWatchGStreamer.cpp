#include "platform/AVFoundation/DeviceWatchGStreamer.h"

#include "platform/AVFoundation/AVError.h"
#include "platform/AVFoundation/SerialQueue.h"
#include "platform/Foundation/NotificationCenter.h"
#include "platform/Foundation/Print.h"

#include <algorithm>
#include <thread>
#include <unistd.h>

namespace zuvi {

/// Something that lists devices and tells on its bus how the list changes.
struct DeviceWatch::Source {
  GstRef<GstObject> owner;
  GstRef<GstBus> bus;
  GList* devices = nullptr;  ///< at the beginning; whoever takes them frees the list
  GstClockTime patience = 0; ///< how long the first of them may take

  static Source machine() {
    GstRef<GstDeviceMonitor> monitor(gst_device_monitor_new());
    gst_device_monitor_add_filter(monitor.get(), "Video/Source", nullptr);
    Source source{nullptr, GstRef<GstBus>(gst_device_monitor_get_bus(monitor.get()))};
    if (gst_device_monitor_start(monitor.get()))
      source.devices = gst_device_monitor_get_devices(monitor.get());
    source.owner.reset(GST_OBJECT(monitor.release()));
    return source;
  }

  static Source remote(int descriptor) {
    GstRef<GstDeviceProvider> provider(
        gst_device_provider_factory_get_by_name("pipewiredeviceprovider"));
    if (!provider) {
      print("Cameras behind the portal need the package gstreamer1.0-pipewire.");
      ::close(descriptor);
      return {};
    }
    g_object_set(provider.get(), "fd", descriptor, nullptr);
    Source source{nullptr, GstRef<GstBus>(gst_device_provider_get_bus(provider.get()))};
    if (gst_device_provider_start(provider.get()))
      source.devices = gst_device_provider_get_devices(provider.get());
    source.owner.reset(GST_OBJECT(provider.release()));
    source.patience = 2 * GST_SECOND;
    return source;
  }
};

DeviceWatch& DeviceWatch::machine() {
  static auto& watch = *[] {
    auto* made = new DeviceWatch;
    std::thread([made] { made->run(startGStreamer() ? Source::machine() : Source{}); }).detach();
    return made;
  }();
  return watch;
}

DeviceWatch& DeviceWatch::remote(std::function<int()> connect) {
  auto* made = new DeviceWatch;
  std::thread([made, connect = std::move(connect)] {
    const int descriptor = connect();
    made->run(descriptor >= 0 && startGStreamer() ? Source::remote(descriptor) : Source{});
  }).detach();
  return *made;
}

bool DeviceWatch::hasFailed() const {
  const std::lock_guard lock(mutex_);
  return failed_;
}

bool DeviceWatch::isComplete() const {
  const std::lock_guard lock(mutex_);
  return complete_;
}

std::vector<FoundCamera> DeviceWatch::cameras() const {
  std::vector<FoundCamera> cameras;
  const std::lock_guard lock(mutex_);
  for (const auto& [device, camera] : found_) {
    // One device may be listed by more than one system.
    const bool known = std::ranges::any_of(cameras, [&camera = camera](const auto& other) {
      return other.element.key == camera.element.key;
    });
    if (!known && !camera.element.factory.empty()) cameras.push_back(camera);
  }
  return cameras;
}

void DeviceWatch::run(const Source& source) {
  for (auto* item = source.devices; item; item = item->next)
    add({GST_DEVICE(item->data), GstUnref()});
  g_list_free(source.devices);
  // A server may show what was granted a moment later.
  if (source.bus && cameras().empty()) hear(source, source.patience);
  {
    const std::lock_guard lock(mutex_);
    complete_ = true;
    failed_ = !source.bus;
  }
  announce();
  while (source.bus && hear(source, GST_CLOCK_TIME_NONE))
    announce();
}

bool DeviceWatch::hear(const Source& source, GstClockTime patience) {
  constexpr auto wanted = GstMessageType(GST_MESSAGE_DEVICE_ADDED | GST_MESSAGE_DEVICE_REMOVED);
  const GstMini<GstMessage> message(gst_bus_timed_pop_filtered(source.bus.get(), patience, wanted));
  if (!message) return false;
  const bool added = GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_DEVICE_ADDED;
  GstDevice* device = nullptr;
  if (added)
    gst_message_parse_device_added(message.get(), &device);
  else
    gst_message_parse_device_removed(message.get(), &device);
  const std::shared_ptr<GstDevice> owned(device, GstUnref());
  added ? add(owned) : remove(device);
  return true;
}

void DeviceWatch::add(const std::shared_ptr<GstDevice>& device) {
  // A server lists other things too, such as microphones.
  if (!gst_device_has_classes(device.get(), "Video/Source")) return;
  {
    const std::lock_guard lock(mutex_);
    if (std::ranges::find(found_, device, &decltype(found_)::value_type::first) != found_.end())
      return; // the list of the beginning is told once more, device by device
  }
  auto camera = describeDevice(device);
  const std::lock_guard lock(mutex_);
  found_.emplace_back(device, std::move(camera));
}

void DeviceWatch::remove(GstDevice* device) {
  std::string key;
  {
    const std::lock_guard lock(mutex_);
    const auto gone = std::ranges::find_if(
        found_, [device](const auto& one) { return one.first.get() == device; });
    if (gone == found_.end()) return;
    key = gone->second.element.key;
    found_.erase(gone);
    const bool stillThere = std::ranges::any_of(
        found_, [&key](const auto& other) { return other.second.element.key == key; });
    if (stillThere) return; // listed by another system as well
  }
  // Not every driver tells a pipeline that its camera was pulled out.
  SerialQueue::camera().async([key] {
    CameraSource::endFor(
        key, {AVFoundationErrorDomain, AVErrorDeviceWasDisconnected, "The camera is gone."});
  });
}

void DeviceWatch::announce() {
  DispatchQueue::main().async(
      [] { NotificationCenter::defaultCenter().post(AVCaptureDevicesDidChange); });
}

} // namespace zuvi
