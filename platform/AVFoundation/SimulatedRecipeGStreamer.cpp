#include "platform/AVFoundation/SourceRecipesGStreamer.h"

#include "platform/AVFoundation/SceneCairo.h"

#include <gst/app/gstappsrc.h>
#include <gst/video/video.h>

#include <cstring>

namespace zuvi {

namespace {

constexpr int framesPerSecond = 30;

std::vector<std::uint8_t> toI420(const Scene::Picture& picture, const GstVideoInfo& to) {
  GstVideoInfo from;
  gst_video_info_set_format(&from, GST_VIDEO_FORMAT_BGRx, picture.width, picture.height);
  from.fps_n = to.fps_n; // the converter accepts no change of rate
  from.fps_d = to.fps_d;
  std::vector<std::uint8_t> result(GST_VIDEO_INFO_SIZE(&to));
  auto* source = gst_buffer_new_wrapped_full(
      GST_MEMORY_FLAG_READONLY, const_cast<std::uint8_t*>(picture.pixels.data()),
      picture.pixels.size(), 0, picture.pixels.size(), nullptr, nullptr);
  auto* target = gst_buffer_new_wrapped_full(GstMemoryFlags(0), result.data(), result.size(), 0,
                                             result.size(), nullptr, nullptr);
  auto toInfo = to;
  GstVideoFrame in, out;
  if (gst_video_frame_map(&in, &from, source, GST_MAP_READ)) {
    if (gst_video_frame_map(&out, &toInfo, target, GST_MAP_WRITE)) {
      auto* converter = gst_video_converter_new(&from, &toInfo, nullptr);
      gst_video_converter_frame(converter, &in, &out);
      gst_video_converter_free(converter);
      gst_video_frame_unmap(&out);
    }
    gst_video_frame_unmap(&in);
  }
  gst_buffer_unref(source);
  gst_buffer_unref(target);
  return result;
}

GstVideoInfo infoOf(int width, int height) {
  GstVideoInfo info;
  gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, width, height);
  gst_video_colorimetry_from_string(&info.colorimetry, "bt709");
  info.fps_n = framesPerSecond;
  info.fps_d = 1;
  return info;
}

/// Paints the scene again and again; each picture costs one copy of the background.
class ScenePainter {
public:
  explicit ScenePainter(AVCaptureDevicePosition position)
      : scene_(Scene::draw(position)), info_(infoOf(Scene::width, Scene::height)),
        pieceInfo_(infoOf(scene_.piece.width, scene_.piece.height)),
        background_(toI420(scene_.background, info_)), piece_(toI420(scene_.piece, pieceInfo_)),
        pool_(gst_buffer_pool_new()) {
    auto* config = gst_buffer_pool_get_config(pool_.get());
    GstMini<GstCaps> caps(gst_video_info_to_caps(&info_));
    gst_buffer_pool_config_set_params(config, caps.get(), background_.size(), 2, 0);
    gst_buffer_pool_set_config(pool_.get(), config);
    gst_buffer_pool_set_active(pool_.get(), TRUE);
  }
  ~ScenePainter() { gst_buffer_pool_set_active(pool_.get(), FALSE); }
  ScenePainter(const ScenePainter&) = delete;

  GstMini<GstCaps> caps() const { return GstMini<GstCaps>(gst_video_info_to_caps(&info_)); }

  /// The next picture; null when there is no memory.
  GstBuffer* paint() {
    GstBuffer* buffer = nullptr;
    if (gst_buffer_pool_acquire_buffer(pool_.get(), &buffer, nullptr) != GST_FLOW_OK)
      return nullptr;
    GstMapInfo map;
    if (gst_buffer_map(buffer, &map, GST_MAP_WRITE)) {
      std::memcpy(map.data, background_.data(), background_.size());
      for (guint plane = 0; plane < 3; plane++)
        blend(map.data, plane);
      gst_buffer_unmap(buffer, &map);
    }
    GST_BUFFER_PTS(buffer) = gst_util_uint64_scale(frame_++, GST_SECOND, framesPerSecond);
    GST_BUFFER_DURATION(buffer) = GST_SECOND / framesPerSecond;
    return buffer;
  }

private:
  void blend(std::uint8_t* picture, guint plane) const {
    const int shift = plane ? 1 : 0; // colours are stored for two by two pixels
    const int x = scene_.pieceX(frame_) >> shift, y = scene_.y >> shift;
    const int width = scene_.piece.width >> shift, height = scene_.piece.height >> shift;
    const auto stride = info_.stride[plane], pieceStride = pieceInfo_.stride[plane];
    for (int row = 0; row < height; row++)
      std::memcpy(picture + info_.offset[plane] + std::size_t(y + row) * stride + x,
                  &piece_[pieceInfo_.offset[plane] + std::size_t(row) * pieceStride], width);
  }

  Scene scene_;
  GstVideoInfo info_, pieceInfo_;
  std::vector<std::uint8_t> background_, piece_;
  GstRef<GstBufferPool> pool_;
  std::uint64_t frame_ = 0;
};

void paintNext(GstAppSrc* source, guint, gpointer data) {
  auto* buffer = static_cast<ScenePainter*>(data)->paint();
  if (buffer)
    gst_app_src_push_buffer(source, buffer);
  else
    gst_app_src_end_of_stream(source);
}

} // namespace

SourceRecipe simulatedRecipe(AVCaptureDevicePosition position) {
  SourceRecipe recipe;
  recipe.key = position == AVCaptureDevicePosition::Back ? "simulated:back" : "simulated:front";
  recipe.launch = [](CameraUse) {
    return "appsrc name=scene format=time is-live=true max-buffers=1 max-bytes=0";
  };
  recipe.paced = true;
  recipe.configure = [position](const Pipeline& pipeline) {
    auto* source = GST_APP_SRC(pipeline.element("scene"));
    auto* painter = new ScenePainter(position);
    gst_app_src_set_caps(source, painter->caps().get());
    GstAppSrcCallbacks callbacks{};
    callbacks.need_data = paintNext;
    gst_app_src_set_callbacks(source, &callbacks, painter,
                              [](gpointer d) { delete static_cast<ScenePainter*>(d); });
  };
  return recipe;
}

} // namespace zuvi
