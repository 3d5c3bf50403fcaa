#include "platform/AVFoundation/PreviewBranchGStreamer.h"

#include "platform/Foundation/Print.h"

#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/video/video.h>

namespace zuvi {

namespace {

/// A buffer that is mapped for as long as somebody reads its pixels.
struct MappedFrame {
  explicit MappedFrame(std::shared_ptr<GstSample> owner) : sample(std::move(owner)) {
    GstVideoInfo info;
    mapped = gst_video_info_from_caps(&info, gst_sample_get_caps(sample.get())) &&
             gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample.get()), GST_MAP_READ);
  }
  ~MappedFrame() {
    if (mapped) gst_video_frame_unmap(&frame);
  }
  MappedFrame(const MappedFrame&) = delete;

  std::shared_ptr<GstSample> sample;
  GstVideoFrame frame{};
  bool mapped = false;
};

std::shared_ptr<const CGImage> imageOf(std::shared_ptr<GstSample> sample) {
  auto held = std::make_shared<const MappedFrame>(std::move(sample));
  if (!held->mapped) return nullptr;
  const auto* frame = &held->frame;
  const auto width = GST_VIDEO_FRAME_WIDTH(frame), height = GST_VIDEO_FRAME_HEIGHT(frame);
  const auto stride = static_cast<std::size_t>(GST_VIDEO_FRAME_PLANE_STRIDE(frame, 0));
  // The converter fills alpha, so the pixels count as they are and nothing is copied.
  Data pixels(held, GST_VIDEO_FRAME_PLANE_DATA(frame, 0), stride * height);
  return CGImage::fromPixels(std::move(pixels), width, height, stride, CGImage::Format::BGRA);
}

GstFlowReturn converted(GstAppSink* sink, gpointer data) {
  auto* sample = gst_app_sink_pull_sample(sink);
  if (!sample) return GST_FLOW_EOS;
  if (auto image = imageOf(ownSample(sample)))
    (*static_cast<PreviewBranch::Handler*>(data))(std::move(image));
  return GST_FLOW_OK;
}

} // namespace

std::unique_ptr<PreviewBranch> PreviewBranch::start(Handler handler) {
  auto made = Pipeline::launch("appsrc name=in format=time max-buffers=1 max-bytes=0 max-time=0 "
                               "leaky-type=downstream ! videoconvert ! video/x-raw,format=BGRA ! "
                               "appsink name=out sync=false enable-last-sample=false qos=false",
                               [](const Pipeline::Event& event) {
                                 if (event.kind == Pipeline::Event::Kind::Failed)
                                   print("The camera's preview ended: " + event.error.description);
                               });
  auto* pipeline = std::get_if<std::unique_ptr<Pipeline>>(&made);
  if (!pipeline) return nullptr;

  GstAppSinkCallbacks callbacks{};
  callbacks.new_sample = converted;
  gst_app_sink_set_callbacks(GST_APP_SINK((*pipeline)->element("out")), &callbacks,
                             new Handler(std::move(handler)),
                             [](gpointer data) { delete static_cast<Handler*>(data); });
  if (!(*pipeline)->play()) return nullptr;
  return std::unique_ptr<PreviewBranch>(new PreviewBranch(std::move(*pipeline)));
}

void PreviewBranch::push(const CameraFrame& frame) {
  gst_app_src_push_sample(GST_APP_SRC(pipeline_->element("in")), frame.sample.get());
}

} // namespace zuvi
