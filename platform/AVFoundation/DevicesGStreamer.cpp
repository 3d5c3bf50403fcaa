#include "platform/AVFoundation/DevicesGStreamer.h"

#include "platform/AVFoundation/DevicePlace.h"
#include "platform/AVFoundation/SensorRotation.h"

#include <algorithm>
#include <cstdlib>

namespace zuvi {

namespace {

/// The first of `names` that the device tells.
std::string property(const GstStructure* properties, std::initializer_list<const char*> names) {
  for (const char* name : names) {
    const char* text = properties ? gst_structure_get_string(properties, name) : nullptr;
    if (!text) continue;
    return text;
  }
  return {};
}

/// One key for all names of a device file.
std::string keyOf(const std::string& path) {
  std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), std::free);
  return "device:" + (real ? std::string(real.get()) : path);
}

std::shared_ptr<GstCaps> shareCaps(GstCaps* adopted) {
  return adopted ? std::shared_ptr<GstCaps>(adopted, GstMiniUnref()) : nullptr;
}

/// What a camera offers is known once its device is open.
std::shared_ptr<GstCaps> askFormats(const std::string& path) {
  if (!hasElement("v4l2src")) return nullptr;
  GstRef<GstElement> source(gst_element_factory_make("v4l2src", nullptr));
  gst_object_ref_sink(source.get());
  g_object_set(source.get(), "device", path.c_str(), nullptr);
  std::shared_ptr<GstCaps> formats;
  if (gst_element_set_state(source.get(), GST_STATE_READY) != GST_STATE_CHANGE_FAILURE) {
    GstRef<GstPad> pad(gst_element_get_static_pad(source.get(), "src"));
    formats = shareCaps(gst_pad_query_caps(pad.get(), nullptr));
  }
  gst_element_set_state(source.get(), GST_STATE_NULL);
  return formats;
}

/// "front", "back" or "external", at its end; empty when the device tells none.
std::string locationOf(const GstStructure* properties) {
  auto word = property(properties, {"api.libcamera.location", "api.libcamera.Location",
                                    "device.position", "device.location"});
  std::ranges::transform(word, word.begin(), g_ascii_tolower);
  return word;
}

} // namespace

AVCaptureDevicePosition positionOf(const GstStructure* properties) {
  const auto word = locationOf(properties);
  if (word.ends_with("front")) return AVCaptureDevicePosition::Front;
  if (word.ends_with("back")) return AVCaptureDevicePosition::Back;
  return AVCaptureDevicePosition::Unspecified;
}

bool hasColour(const GstCaps* formats) {
  if (!formats || gst_caps_is_any(formats) || gst_caps_is_empty(formats)) return true; // unknown
  const GstMini<GstCaps> grey(
      gst_caps_from_string("video/x-raw(ANY),format=(string){GRAY8,GRAY16_LE,GRAY16_BE}"));
  return !gst_caps_is_subset(formats, grey.get());
}

FoundCamera describeDevice(const std::shared_ptr<GstDevice>& device) {
  FoundCamera camera;
  std::unique_ptr<GstStructure, decltype(&gst_structure_free)> properties(
      gst_device_get_properties(device.get()), gst_structure_free);
  std::unique_ptr<char, decltype(&g_free)> shown(gst_device_get_display_name(device.get()), g_free);
  const std::string name = shown ? shown.get() : "Camera";
  auto& candidate = camera.candidate;
  camera.path = property(properties.get(), {"device.path", "api.v4l2.path"});
  candidate.uniqueID = camera.path;
  if (candidate.uniqueID.empty())
    candidate.uniqueID = property(properties.get(), {"node.name", "object.serial"});
  if (candidate.uniqueID.empty()) candidate.uniqueID = name;
  candidate.localizedName = name;
  candidate.position = positionOf(properties.get());
  if (!camera.path.empty()) {
    const auto place = placeOf(camera.path);
    candidate.builtIn = place.builtIn;
    if (candidate.position == AVCaptureDevicePosition::Unspecified)
      candidate.position = place.position;
  }
  if (locationOf(properties.get()).ends_with("external")) candidate.builtIn = false;
  const auto formats = shareCaps(gst_device_get_caps(device.get()));
  candidate.colour = hasColour(formats.get());

  camera.element.key = camera.path.empty() ? "camera:" + candidate.uniqueID : keyOf(camera.path);
  camera.element.configure = [device, path = camera.path](GstElement* element) {
    // That of the kernel's cameras can't, and would leave the element at the first camera.
    if (!gst_device_reconfigure_element(device.get(), element) && !path.empty())
      g_object_set(element, "device", path.c_str(), nullptr);
  };
  camera.element.rotation =
      [path = camera.path,
       told = sensorRotationFrom(
           property(properties.get(), {"api.libcamera.rotation"}))]() -> std::optional<int> {
    if (told || path.empty()) return told;
    const int degrees = sensorRotation(path);
    return degrees > 0 ? std::optional(degrees) : std::nullopt;
  };
  camera.element.formats = [device] { return shareCaps(gst_device_get_caps(device.get())); };
  if (!givesPictures(formats.get())) return camera;
  GstRef<GstElement> sample(gst_device_create_element(device.get(), nullptr));
  if (!sample) return camera;
  gst_object_ref_sink(sample.get());
  if (auto* factory = gst_element_get_factory(sample.get()))
    camera.element.factory = GST_OBJECT_NAME(factory);
  return camera;
}

CameraElement cameraElementAt(const std::string& path) {
  CameraElement element;
  element.key = keyOf(path);
  element.factory = "v4l2src";
  element.configure = [path](GstElement* source) {
    g_object_set(source, "device", path.c_str(), nullptr);
  };
  element.formats = [path] { return askFormats(path); };
  element.rotation = [path] { return sensorRotation(path); };
  return element;
}

} // namespace zuvi
