#include "platform/AVFoundation/StillGStreamer.h"

#include "platform/AVFoundation/PipelineGStreamer.h"

#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>

namespace zuvi {

namespace {

struct MappedBuffer {
  explicit MappedBuffer(std::shared_ptr<GstSample> owner) : sample(std::move(owner)) {
    mapped = gst_buffer_map(gst_sample_get_buffer(sample.get()), &map, GST_MAP_READ);
  }
  ~MappedBuffer() {
    if (mapped) gst_buffer_unmap(gst_sample_get_buffer(sample.get()), &map);
  }
  MappedBuffer(const MappedBuffer&) = delete;

  std::shared_ptr<GstSample> sample;
  GstMapInfo map{};
  bool mapped = false;
};

} // namespace

std::optional<Data> encodeStill(const CameraFrame& frame) {
  // A JPEG file holds full-range colours of one fixed matrix, whatever the camera gives.
  auto made = Pipeline::launch(
      "appsrc name=in format=time ! videoconvert ! video/x-raw,format=I420,colorimetry=1:4:0:0 ! "
      "jpegenc quality=95 ! appsink name=out sync=false",
      [](const Pipeline::Event&) {});
  auto* pipeline = std::get_if<std::unique_ptr<Pipeline>>(&made);
  if (!pipeline || !(*pipeline)->play()) return std::nullopt;

  auto* in = GST_APP_SRC((*pipeline)->element("in"));
  gst_app_src_push_sample(in, frame.sample.get());
  gst_app_src_end_of_stream(in);
  auto* sample =
      gst_app_sink_try_pull_sample(GST_APP_SINK((*pipeline)->element("out")), 5 * GST_SECOND);
  if (!sample) return std::nullopt;
  auto held =
      std::make_shared<const MappedBuffer>(std::shared_ptr<GstSample>(sample, GstMiniUnref()));
  if (!held->mapped) return std::nullopt;
  return Data(held, held->map.data, held->map.size);
}

} // namespace zuvi
