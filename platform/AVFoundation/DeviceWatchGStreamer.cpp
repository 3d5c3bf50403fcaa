#include "platform/AVFoundation/DeviceWatchGStreamer.h"

#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/Foundation/Print.h>
#include "platform/AVFoundation/AVError.h"
#include "platform/AVFoundation/SerialQueue.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <poll.h>
#include <thread>
#include <unistd.h>

namespace zuvi {

namespace {

// Milliseconds until a media server that is not there is looked for again, twice as long each time
// until one stayed for the longest of these.
constexpr int firstSearch = 1000, longestSearch = 60000;

// GStreamer's list of the media server's devices crashes when it is stopped before its own thread
// has heard that the server is gone, and does not tell when it has.
constexpr auto timeToHear = std::chrono::seconds(1);

std::atomic<bool> programEnds = false;

void heedTheEnd() {
  SerialQueue::camera().whenProgramEnds([] { programEnds = true; });
}

void endCamera(const std::string& key) {
  CameraSource::endFor(
      key, {AVFoundationErrorDomain, AVErrorDeviceWasDisconnected, "The camera is gone."});
}

} // namespace

/// Something that lists devices and tells on its bus how the list changes.
struct DeviceWatch::Source {
  GstRef<GstDeviceMonitor> monitor;
  GstRef<GstDeviceProvider> provider;
  GstRef<GstBus> bus;
  GList* devices = nullptr;  ///< at the beginning; whoever takes them frees the list
  GstClockTime patience = 0; ///< how long the first of them may take

  Source() = default;
  Source(Source&&) = default;
  ~Source() {
    if (monitor) gst_device_monitor_stop(monitor.get());
    if (provider) gst_device_provider_stop(provider.get());
  }

  static Source machine() {
    Source source;
    source.monitor.reset(gst_device_monitor_new());
    gst_device_monitor_add_filter(source.monitor.get(), "Video/Source", nullptr);
    source.bus.reset(gst_device_monitor_get_bus(source.monitor.get()));
    if (gst_device_monitor_start(source.monitor.get()))
      source.devices = gst_device_monitor_get_devices(source.monitor.get());
    return source;
  }

  /// The factory would give the one that it gave before, which may still stop.
  static GstDeviceProvider* ownProvider(const char* name) {
    const GstRef<GstPluginFeature> known(
        GST_PLUGIN_FEATURE(gst_device_provider_factory_find(name)));
    const GstRef<GstPluginFeature> loaded(known ? gst_plugin_feature_load(known.get()) : nullptr);
    if (!loaded) return nullptr;
    const auto type = gst_device_provider_factory_get_device_provider_type(
        GST_DEVICE_PROVIDER_FACTORY(loaded.get()));
    return GST_DEVICE_PROVIDER(gst_object_ref_sink(g_object_new(type, nullptr)));
  }

  static Source remote(int descriptor) {
    Source source;
    source.provider.reset(ownProvider("pipewiredeviceprovider"));
    if (!source.provider) {
      print("Cameras behind the portal need the package gstreamer1.0-pipewire.");
      ::close(descriptor);
      return source;
    }
    g_object_set(source.provider.get(), "fd", descriptor, nullptr);
    source.bus.reset(gst_device_provider_get_bus(source.provider.get()));
    if (gst_device_provider_start(source.provider.get()))
      source.devices = gst_device_provider_get_devices(source.provider.get());
    source.patience = 2 * GST_SECOND;
    return source;
  }
};

DeviceWatch& DeviceWatch::machine() {
  static auto& watch = *[] {
    auto* made = new DeviceWatch;
    heedTheEnd();
    std::thread([made] { made->watchMachine(); }).detach();
    return made;
  }();
  return watch;
}

DeviceWatch& DeviceWatch::remote(std::function<int()> connect) {
  auto* made = new DeviceWatch;
  heedTheEnd();
  std::thread([made, connect = std::move(connect)] { made->watchBehind(connect()); }).detach();
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
    const bool known = std::ranges::any_of(cameras, [&key = camera.element.key](const auto& other) {
      return other.element.key == key;
    });
    if (!known && !camera.element.factory.empty()) cameras.push_back(camera);
  }
  return cameras;
}

void DeviceWatch::watchMachine() {
  if (!startGStreamer()) return begin({});
  int search = firstSearch;
  for (auto link = MediaServerLink::toMachine();;) {
    // What lists its devices does not survive the server.
    const auto source = Source::machine();
    begin(source);
    if (link) {
      const auto since = monotonicTime();
      follow(source, link.get(), -1);
      if (monotonicTime() - since >= longestSearch * GST_MSECOND) search = firstSearch;
      link.reset();
      serverHasGone();
      continue; // with what there is without it
    }
    while (!link) {
      follow(source, nullptr, search);
      search = std::min(2 * search, longestSearch);
      link = MediaServerLink::toMachine();
    }
  }
}

void DeviceWatch::watchBehind(int descriptor) {
  if (descriptor < 0 || !startGStreamer()) return begin({});
  const auto link = MediaServerLink::by(descriptor);
  const auto source = Source::remote(descriptor);
  begin(source);
  if (!source.bus) return;
  follow(source, link.get(), -1);
  {
    const std::lock_guard lock(mutex_);
    failed_ = true;
  }
  serverHasGone();
}

/// Takes what `source` lists in place of what was known.
void DeviceWatch::begin(const Source& source) {
  decltype(found_) before;
  {
    const std::lock_guard lock(mutex_);
    before = found_;
  }
  for (auto* item = source.devices; item; item = item->next)
    add({GST_DEVICE(item->data), GstUnref()});
  g_list_free(source.devices);
  for (const auto& [device, camera] : before)
    remove(device.get());
  // A server may show what was granted a moment later.
  if (source.bus && cameras().empty()) hear(source, source.patience);
  {
    const std::lock_guard lock(mutex_);
    complete_ = true;
    failed_ = !source.bus;
  }
  announce();
}

/// Until the media server has ended, or for `patience` milliseconds; below 0 without limit.
void DeviceWatch::follow(const Source& source, const MediaServerLink* link, int patience) {
  GPollFD heard{};
  gst_bus_get_pollfd(source.bus.get(), &heard);
  for (;;) {
    pollfd waiting[] = {{heard.fd, POLLIN, 0}, {link ? link->descriptor() : -1, 0, 0}};
    const int ready = ::poll(waiting, 2, patience);
    // A server that ends with the program, as at the end of a session, finds no library any more.
    while (programEnds)
      ::pause();
    while (hear(source, 0))
      announce();
    if (ready == 0 || waiting[1].revents != 0) return;
  }
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
  SerialQueue::camera().async([key] { endCamera(key); });
}

void DeviceWatch::serverHasGone() {
  std::vector<std::string> gone;
  {
    const std::lock_guard lock(mutex_);
    std::erase_if(found_, [&gone](const auto& one) {
      const auto& element = one.second.element;
      if (element.factory == "pipewiresrc") gone.push_back(element.key);
      return element.factory == "pipewiresrc";
    });
  }
  // Waits for them: all that speak to a server in this process share one connection, and as long
  // as one has the old connection the others get it too.
  std::promise<void> ended;
  SerialQueue::camera().async([&] {
    std::ranges::for_each(gone, endCamera);
    ended.set_value();
  });
  ended.get_future().wait();
  announce();
  std::this_thread::sleep_for(timeToHear);
}

void DeviceWatch::announce() {
  DispatchQueue::main().async(
      [] { NotificationCenter::defaultCenter().post(AVCaptureDevicesDidChange); });
}

} // namespace zuvi
