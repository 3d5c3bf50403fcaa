#include "platform/AVFoundation/PreviewConverterGStreamer.h"

#include <gst/video/gstvideopool.h>

#include <utility>

namespace zuvi {

namespace {

/// The pixels of a buffer, for as long as somebody holds them.
class MappedPicture {
public:
  MappedPicture(const GstVideoInfo& info, GstBuffer* buffer, GstMapFlags access)
      : mapped_(gst_video_frame_map(&frame_, &info, buffer, access)) {}
  ~MappedPicture() {
    if (mapped_) gst_video_frame_unmap(&frame_);
  }
  MappedPicture(const MappedPicture&) = delete;

  bool isMapped() const { return mapped_; }
  GstVideoFrame* frame() { return &frame_; }
  const GstVideoFrame* frame() const { return &frame_; }

private:
  GstVideoFrame frame_{};
  bool mapped_ = false;
};

std::shared_ptr<const CGImage> imageOf(std::shared_ptr<const MappedPicture> picture) {
  const auto* frame = picture->frame();
  const auto width = GST_VIDEO_FRAME_WIDTH(frame), height = GST_VIDEO_FRAME_HEIGHT(frame);
  const auto stride = static_cast<std::size_t>(GST_VIDEO_FRAME_PLANE_STRIDE(frame, 0));
  // The converter fills alpha, so the pixels count as they are and nothing is copied.
  Data pixels(std::move(picture), GST_VIDEO_FRAME_PLANE_DATA(frame, 0), stride * height);
  return CGImage::fromPixels(std::move(pixels), width, height, stride, CGImage::Format::BGRA);
}

} // namespace

bool PreviewConverter::prepare(GstCaps* caps) {
  if (caps_ && gst_caps_is_equal(caps_.get(), caps)) return converter_ && pool_;
  caps_.reset(gst_caps_ref(caps));
  converter_.reset();
  pool_.reset();
  if (!gst_video_info_from_caps(&from_, caps)) return false;
  gst_video_info_set_interlaced_format(&to_, GST_VIDEO_FORMAT_BGRA, from_.interlace_mode,
                                       from_.width, from_.height);
  to_.fps_n = from_.fps_n; // the converter asks for equal ones
  to_.fps_d = from_.fps_d;
  converter_.reset(gst_video_converter_new(&from_, &to_, nullptr));
  if (!converter_) return false;
  pool_.reset(gst_video_buffer_pool_new());
  auto* config = gst_buffer_pool_get_config(pool_.get());
  const GstMini<GstCaps> pictures(gst_video_info_to_caps(&to_));
  gst_buffer_pool_config_set_params(config, pictures.get(), to_.size, 2, 0);
  if (!gst_buffer_pool_set_config(pool_.get(), config) ||
      !gst_buffer_pool_set_active(pool_.get(), TRUE))
    pool_.reset();
  return pool_ != nullptr;
}

std::shared_ptr<const CGImage> PreviewConverter::convert(const CameraFrame& frame) {
  if (!prepare(gst_sample_get_caps(frame.sample.get()))) return nullptr;
  GstBuffer* buffer = nullptr;
  if (gst_buffer_pool_acquire_buffer(pool_.get(), &buffer, nullptr) != GST_FLOW_OK) return nullptr;
  {
    MappedPicture in(from_, gst_sample_get_buffer(frame.sample.get()), GST_MAP_READ);
    MappedPicture out(to_, buffer, GST_MAP_WRITE);
    if (in.isMapped() && out.isMapped())
      gst_video_converter_frame(converter_.get(), in.frame(), out.frame());
    else
      gst_clear_buffer(&buffer);
  }
  if (!buffer) return nullptr;
  auto picture = std::make_shared<const MappedPicture>(to_, buffer, GST_MAP_READ);
  gst_buffer_unref(buffer); // the mapping holds it
  return picture->isMapped() ? imageOf(std::move(picture)) : nullptr;
}

} // namespace zuvi
