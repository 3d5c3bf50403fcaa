#include "platform/AVFoundation/FilmEncoderGStreamer.h"

#include "platform/AVFoundation/PipelineGStreamer.h"

#include <gst/video/video.h>

#include <algorithm>
#include <cmath>
#include <mutex>
#include <string_view>

namespace zuvi {

namespace {

// About 4 MB for seven seconds. The hardware ones are there only when their driver has found some.
constexpr FilmEncoder candidates[] = {
    {"vah264enc", "vah264enc bitrate=4500 ! h264parse", false},
    {"nvh264enc", "nvh264enc bitrate=4500 ! h264parse", false},
    {"qsvh264enc", "qsvh264enc bitrate=4500 ! h264parse", false},
    {"v4l2h264enc", "v4l2h264enc ! video/x-h264,level=(string)4 ! h264parse", false},
    {"openh264enc",
     "openh264enc name=openh264 usage-type=camera rate-control=bitrate bitrate=4500000 "
     "max-bitrate=6000000 "
     "gop-size=30 ! h264parse",
     false},
    {"x264enc",
     "x264enc tune=zerolatency speed-preset=veryfast bitrate=4500 key-int-max=30 ! h264parse",
     false},
    {"jpegenc", "jpegenc quality=85", true},
};

/// An element may be listed and still not work, such as that of a device in use.
bool works(const char* name) {
  if (!hasElement(name)) return false;
  GstRef<GstElement> element(gst_element_factory_make(name, nullptr));
  if (!element) return false;
  gst_object_ref_sink(element.get());
  const bool ready =
      gst_element_set_state(element.get(), GST_STATE_READY) != GST_STATE_CHANGE_FAILURE;
  gst_element_set_state(element.get(), GST_STATE_NULL);
  return ready;
}

} // namespace

namespace {

struct Encoders {
  std::mutex mutex;
  std::vector<FilmEncoder> usable;
};

Encoders& encoders() {
  static Encoders& known = *[] {
    auto* found = new Encoders;
    const bool parses = hasElement("h264parse");
    for (const auto& one : candidates)
      if ((one.fullRange || parses) && works(one.element)) found->usable.push_back(one);
    return found;
  }();
  return known;
}

} // namespace

std::vector<FilmEncoder> filmEncoders() {
  std::lock_guard lock(encoders().mutex);
  return encoders().usable;
}

void dropFilmEncoder(const char* element) {
  std::lock_guard lock(encoders().mutex);
  auto& usable = encoders().usable;
  if (usable.size() > 1)
    std::erase_if(usable,
                  [element](const auto& one) { return std::string_view(one.element) == element; });
}

GstMini<GstCaps> encoderInput(const FilmEncoder& encoder, const GstCaps* pictures) {
  GstMini<GstCaps> caps(gst_caps_from_string("video/x-raw,format=(string){I420,NV12}"));
  GstVideoInfo info;
  if (!gst_video_info_from_caps(&info, pictures)) return caps;
  // H.264 players take video range for granted; a camera that gives it is left as it is.
  if (encoder.fullRange)
    gst_caps_set_simple(caps.get(), "colorimetry", G_TYPE_STRING, "1:4:0:0", nullptr);
  else if (info.colorimetry.range != GST_VIDEO_COLOR_RANGE_16_235)
    gst_caps_set_simple(caps.get(), "colorimetry", G_TYPE_STRING, "bt709", nullptr);
  // The file is sent over a network; four by three may stay a little larger.
  constexpr double most = 1280.0 * 960, wanted = 1280.0 * 720;
  const double pixels = double(info.width) * info.height;
  const double scale = pixels > most ? std::sqrt(wanted / pixels) : 1;
  // Colours are stored for two by two pixels.
  const auto even = [scale](int side) { return std::max(2, int(std::lround(side * scale)) & ~1); };
  gst_caps_set_simple(caps.get(), "width", G_TYPE_INT, even(info.width), "height", G_TYPE_INT,
                      even(info.height), nullptr);
  return caps;
}

void endWithoutFlush(GstElement* encoder) {
  GstRef<GstPad> sink(gst_element_get_static_pad(encoder, "sink"));
  const auto pass = [](GstPad* pad, GstPadProbeInfo* info, gpointer) -> GstPadProbeReturn {
    if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) != GST_EVENT_EOS) return GST_PAD_PROBE_OK;
    GstRef<GstElement> element(gst_pad_get_parent_element(pad));
    GstRef<GstPad> source(gst_element_get_static_pad(element.get(), "src"));
    gst_pad_push_event(source.get(), gst_event_ref(GST_PAD_PROBE_INFO_EVENT(info)));
    return GST_PAD_PROBE_DROP;
  };
  gst_pad_add_probe(sink.get(), GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, pass, nullptr, nullptr);
}

} // namespace zuvi
