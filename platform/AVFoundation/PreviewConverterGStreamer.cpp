#include "platform/AVFoundation/PreviewConverterGStreamer.h"

#include <gst/video/gstvideopool.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace zuvi {

namespace {

constexpr double mostPixels = 1280.0 * 960, wantedPixels = 1280.0 * 720;

/// The same form at the size that is shown.
GstVideoInfo smallerOf(const GstVideoInfo& info) {
  const double pixels = double(info.width) * info.height;
  if (pixels <= mostPixels) return info;
  const double scale = std::sqrt(wantedPixels / pixels);
  const auto even = [scale](int side) { return std::max(2, int(std::lround(side * scale)) & ~1); };
  GstVideoInfo small;
  gst_video_info_set_interlaced_format(&small, GST_VIDEO_INFO_FORMAT(&info), info.interlace_mode,
                                       guint(even(info.width)), guint(even(info.height)));
  small.colorimetry = info.colorimetry;
  small.chroma_site = info.chroma_site;
  small.fps_n = info.fps_n; // the converter asks for equal ones
  small.fps_d = info.fps_d;
  return small;
}

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
  scaler_.reset();
  converter_.reset();
  pool_.reset();
  if (!gst_video_info_from_caps(&from_, caps)) return false;
  small_ = smallerOf(from_);
  if (small_.width != from_.width) {
    // Two taps look well enough on the way to a screen.
    scaler_.reset(gst_video_converter_new(
        &from_, &small_,
        gst_structure_new("options", GST_VIDEO_CONVERTER_OPT_RESAMPLER_METHOD,
                          GST_TYPE_VIDEO_RESAMPLER_METHOD, GST_VIDEO_RESAMPLER_METHOD_LINEAR,
                          GST_VIDEO_RESAMPLER_OPT_MAX_TAPS, G_TYPE_INT, 2, nullptr)));
    scaled_.reset(gst_buffer_new_allocate(nullptr, small_.size, nullptr));
    if (!scaler_ || !scaled_) return false;
  }
  gst_video_info_set_interlaced_format(&to_, GST_VIDEO_FORMAT_BGRA, small_.interlace_mode,
                                       guint(small_.width), guint(small_.height));
  to_.fps_n = small_.fps_n;
  to_.fps_d = small_.fps_d;
  converter_.reset(gst_video_converter_new(&small_, &to_, nullptr));
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

bool PreviewConverter::convert(const GstVideoFrame* in, GstVideoFrame* out) {
  if (!scaler_) {
    gst_video_converter_frame(converter_.get(), in, out);
    return true;
  }
  {
    MappedPicture small(small_, scaled_.get(), GST_MAP_WRITE);
    if (!small.isMapped()) return false;
    gst_video_converter_frame(scaler_.get(), in, small.frame());
  }
  const MappedPicture small(small_, scaled_.get(), GST_MAP_READ);
  if (!small.isMapped()) return false;
  gst_video_converter_frame(converter_.get(), small.frame(), out);
  return true;
}

std::shared_ptr<const CGImage> PreviewConverter::convert(const CameraFrame& frame) {
  if (!prepare(gst_sample_get_caps(frame.sample.get()))) return nullptr;
  GstBuffer* buffer = nullptr;
  if (gst_buffer_pool_acquire_buffer(pool_.get(), &buffer, nullptr) != GST_FLOW_OK) return nullptr;
  {
    MappedPicture in(from_, gst_sample_get_buffer(frame.sample.get()), GST_MAP_READ);
    MappedPicture out(to_, buffer, GST_MAP_WRITE);
    if (!in.isMapped() || !out.isMapped() || !convert(in.frame(), out.frame()))
      gst_clear_buffer(&buffer);
  }
  if (!buffer) return nullptr;
  auto picture = std::make_shared<const MappedPicture>(to_, buffer, GST_MAP_READ);
  gst_buffer_unref(buffer); // the mapping holds it
  return picture->isMapped() ? imageOf(std::move(picture)) : nullptr;
}

} // namespace zuvi
