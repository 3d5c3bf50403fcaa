#pragma once

#include <gst/gst.h>

#include <memory>

namespace zuvi {

struct GstUnref {
  void operator()(gpointer object) const { gst_object_unref(object); }
};
/// Owns one reference to an element, pad, device or bus.
template <class T> using GstRef = std::unique_ptr<T, GstUnref>;

struct GstMiniUnref {
  template <class T> void operator()(T* object) const {
    gst_mini_object_unref(GST_MINI_OBJECT_CAST(object));
  }
};
/// Owns one reference to a buffer, sample, message or caps.
template <class T> using GstMini = std::unique_ptr<T, GstMiniUnref>;

struct GErrorFree {
  void operator()(GError* error) const { g_error_free(error); }
};
using GErrorRef = std::unique_ptr<GError, GErrorFree>;

/// The buffer of a sample that an appsink gave, as a sample of its own: the sink writes into the
/// one that it gave when the next picture comes.
inline std::shared_ptr<GstSample> ownSample(GstSample* adopted) {
  GstMini<GstSample> given(adopted);
  auto* own = gst_sample_new(gst_sample_get_buffer(adopted), gst_sample_get_caps(adopted),
                             gst_sample_get_segment(adopted), nullptr);
  return {own, GstMiniUnref()};
}

/// One picture of a camera and when it was taken, on the machine's monotonic clock.
struct CameraFrame {
  std::shared_ptr<GstSample> sample;
  GstClockTime time = 0;
};

/// The same picture in memory of its own. A camera's memory may go with its pipeline, so whatever
/// outlives the call that brings a picture takes this.
inline CameraFrame ownPixels(const CameraFrame& frame) {
  auto* sample = frame.sample.get();
  const GstMini<GstBuffer> copy(gst_buffer_copy_deep(gst_sample_get_buffer(sample)));
  return {{gst_sample_new(copy.get(), gst_sample_get_caps(sample), gst_sample_get_segment(sample),
                          nullptr),
           GstMiniUnref()},
          frame.time};
}

/// The machine's monotonic clock.
inline GstClockTime monotonicTime() {
  return GstClockTime(g_get_monotonic_time()) * 1000;
}

} // namespace zuvi
