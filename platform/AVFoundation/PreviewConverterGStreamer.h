#pragma once

#include <ZuviSDK/CoreGraphics/CGImage.h>
#include "platform/AVFoundation/PointersGStreamer.h"

#include <gst/video/video.h>

#include <memory>

namespace zuvi {

/// Turns a camera's pictures into ones that can be drawn, on the thread that brings them: a thread
/// of its own costs more than the work. Pictures above 1280 x 960 become smaller ones of about
/// 1280 x 720. One thread at a time.
class PreviewConverter {
public:
  /// Null when the picture's format is none that can be converted.
  std::shared_ptr<const CGImage> convert(const CameraFrame& frame);

private:
  bool prepare(GstCaps* caps);
  bool convert(const GstVideoFrame* in, GstVideoFrame* out);

  struct Free {
    void operator()(GstVideoConverter* converter) const { gst_video_converter_free(converter); }
    /// Pictures that are still drawn return to it later, and are freed then.
    void operator()(GstBufferPool* pool) const {
      gst_buffer_pool_set_active(pool, FALSE);
      gst_object_unref(pool);
    }
  };
  GstMini<GstCaps> caps_; ///< what the rest was made for
  GstVideoInfo from_{}, small_{}, to_{};
  // Scaling before the colours are converted is the cheaper way round; null for small pictures.
  std::unique_ptr<GstVideoConverter, Free> scaler_;
  GstMini<GstBuffer> scaled_;
  std::unique_ptr<GstVideoConverter, Free> converter_;
  std::unique_ptr<GstBufferPool, Free> pool_;
};

} // namespace zuvi
