#include "platform/AVFoundation/PipelineGStreamer.h"

#include <ZuviSDK/Foundation/Print.h>
#include "platform/AVFoundation/AVError.h"
#include "platform/Foundation/SizeSignalBlocked.h"

#include <map>

namespace zuvi {

namespace {

Error cameraError(int code, const std::string& description) {
  return {AVFoundationErrorDomain, code, description};
}

std::string packageOf(const std::string& element) {
  static const std::map<std::string, std::string> packages{
      {"appsink", "gstreamer1.0-plugins-base"},    {"appsrc", "gstreamer1.0-plugins-base"},
      {"bayer2rgb", "gstreamer1.0-plugins-bad"},   {"jpegparse", "gstreamer1.0-plugins-bad"},
      {"decodebin", "gstreamer1.0-plugins-base"},  {"videoconvert", "gstreamer1.0-plugins-base"},
      {"videoscale", "gstreamer1.0-plugins-base"}, {"h264parse", "gstreamer1.0-plugins-bad"},
      {"openh264enc", "gstreamer1.0-plugins-bad"}, {"imagefreeze", "gstreamer1.0-plugins-good"},
      {"jpegdec", "gstreamer1.0-plugins-good"},    {"jpegenc", "gstreamer1.0-plugins-good"},
      {"qtmux", "gstreamer1.0-plugins-good"},      {"v4l2src", "gstreamer1.0-plugins-good"},
      {"pipewiresrc", "gstreamer1.0-pipewire"},
  };
  auto found = packages.find(element);
  return found == packages.end() ? "gstreamer1.0-plugins-good" : found->second;
}

Error launchError(GstParseContext* context, const GError* error) {
  std::string line = error ? error->message : "unknown";
  gchar** missing = gst_parse_context_get_missing_elements(context);
  if (missing && missing[0])
    line = std::string("The camera needs the element ") + missing[0] + ": install the package " +
           packageOf(missing[0]) + ".";
  g_strfreev(missing);
  print(line);
  return cameraError(AVErrorInvalidSetting, line);
}

Error messageError(GstMessage* message) {
  GError* native = nullptr;
  gst_message_parse_error(message, &native, nullptr);
  GErrorRef error(native);
  const bool full = g_error_matches(native, GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_NO_SPACE_LEFT) ||
                    g_error_matches(native, GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_WRITE);
  return cameraError(full ? AVErrorDiskFull : AVErrorUnknown, native->message);
}

GstBusSyncReply heard(GstBus*, GstMessage* message, gpointer data) {
  const auto& listener = *static_cast<Pipeline::Listener*>(data);
  if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR)
    listener({Pipeline::Event::Kind::Failed, messageError(message), GST_MESSAGE_SRC_NAME(message)});
  else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS)
    listener({Pipeline::Event::Kind::Ended, {}, {}});
  gst_message_unref(message);
  return GST_BUS_DROP;
}

} // namespace

bool startGStreamer() {
  static const bool started = [] {
    GError* error = nullptr;
    // The library would otherwise catch crashes while it lists its plugins.
    gst_segtrap_set_enabled(FALSE);
    const SizeSignalBlocked blocked; // it may store the list
    if (gst_init_check(nullptr, nullptr, &error)) return true;
    GErrorRef owned(error);
    print(std::string("The camera library does not start: ") + (error ? error->message : "?"));
    return false;
  }();
  return started;
}

bool hasElement(const char* name) {
  if (!startGStreamer()) return false;
  GstRef<GstElementFactory> factory(gst_element_factory_find(name));
  return factory != nullptr;
}

std::variant<std::unique_ptr<Pipeline>, Error> Pipeline::launch(const std::string& description,
                                                                Listener listener) {
  if (!startGStreamer())
    return cameraError(AVErrorInvalidSetting, "The camera library does not start.");
  GError* error = nullptr;
  auto* context = gst_parse_context_new();
  auto* made =
      gst_parse_launch_full(description.c_str(), context, GST_PARSE_FLAG_FATAL_ERRORS, &error);
  GErrorRef owned(error);
  if (!made || error) {
    auto value = launchError(context, error);
    if (made) gst_object_unref(made);
    gst_parse_context_free(context);
    return value;
  }
  gst_parse_context_free(context);
  gst_object_ref_sink(made);
  return std::unique_ptr<Pipeline>(new Pipeline(made, std::move(listener)));
}

Pipeline::Pipeline(GstElement* adopted, Listener listener) : pipeline_(adopted) {
  GstRef<GstBus> bus(gst_element_get_bus(adopted));
  gst_bus_set_sync_handler(bus.get(), heard, new Listener(std::move(listener)),
                           [](gpointer data) { delete static_cast<Listener*>(data); });
  // One clock for everybody, so that the times of pictures can be compared with the machine's.
  GstRef<GstClock> clock(gst_system_clock_obtain());
  gst_pipeline_use_clock(GST_PIPELINE(adopted), clock.get());
}

Pipeline::~Pipeline() {
  gst_element_set_state(pipeline_.get(), GST_STATE_NULL);
}

GstElement* Pipeline::element(const char* name) const {
  auto* found = gst_bin_get_by_name(GST_BIN(pipeline_.get()), name);
  if (found) gst_object_unref(found); // the pipeline holds it as long as this object lives
  return found;
}

bool Pipeline::play() {
  return gst_element_set_state(pipeline_.get(), GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
}

} // namespace zuvi
