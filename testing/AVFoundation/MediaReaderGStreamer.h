#pragma once

#include "platform/AVFoundation/PipelineGStreamer.h"

#include <array>
#include <string>

#include <gst/app/gstappsink.h>
#include <gst/video/video.h>

namespace zuvi {

using Rgb = std::array<int, 3>;

/// What a player makes of a film.
struct FilmFacts {
  int streams = 0;
  double seconds = 0; ///< as the file tells
  int frames = 0;     ///< that were decoded
  double end = 0;     ///< when the last of them is over
  int width = 0, height = 0;
  Rgb center{}; ///< middle of the first picture
};
inline void look(GstSample* sample, FilmFacts& facts) {
  GstVideoInfo info;
  GstVideoFrame frame;
  gst_video_info_from_caps(&info, gst_sample_get_caps(sample));
  if (!gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample), GST_MAP_READ)) return;
  facts.width = info.width;
  facts.height = info.height;
  const auto* row = static_cast<const guint8*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0)) +
                    std::size_t(info.height / 2) * GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0);
  for (int part = 0; part < 3; part++)
    facts.center[part] = row[info.width / 2 * 4 + part];
  gst_video_frame_unmap(&frame);
}

/// Decodes the whole file; all zero when it cannot be read.
inline FilmFacts readFilm(const std::string& path) {
  FilmFacts facts;
  startGStreamer();
  auto made = Pipeline::launch("filesrc name=file ! decodebin name=streams ! videoconvert ! "
                               "video/x-raw,format=RGBA ! appsink name=out sync=false",
                               [](const Pipeline::Event&) {});
  auto& pipeline = std::get<std::unique_ptr<Pipeline>>(made);
  g_object_set(pipeline->element("file"), "location", path.c_str(), nullptr);
  pipeline->play();
  auto* out = GST_APP_SINK(pipeline->element("out"));
  while (auto* next = gst_app_sink_try_pull_sample(out, 5 * GST_SECOND)) {
    GstMini<GstSample> sample(next);
    if (facts.frames++ == 0) look(next, facts);
    const auto* buffer = gst_sample_get_buffer(next);
    facts.end = double(GST_BUFFER_PTS(buffer) + GST_BUFFER_DURATION(buffer)) / GST_SECOND;
  }
  facts.streams = GST_ELEMENT(pipeline->element("streams"))->numsrcpads;
  gint64 length = 0;
  gst_element_query_duration(GST_ELEMENT(out), GST_FORMAT_TIME, &length);
  facts.seconds = double(length) / GST_SECOND;
  return facts;
}

/// A picture of one colour, 0xffRRGGBB.
inline CameraFrame solidFrame(int width, int height, unsigned colour) {
  startGStreamer();
  auto made = Pipeline::launch(
      "videotestsrc num-buffers=1 pattern=solid-color foreground-color=" + std::to_string(colour) +
          " ! video/x-raw,format=RGBx,framerate=30/1,width=" + std::to_string(width) +
          ",height=" + std::to_string(height) + " ! appsink name=out",
      [](const Pipeline::Event&) {});
  auto& pipeline = std::get<std::unique_ptr<Pipeline>>(made);
  pipeline->play();
  return {{gst_app_sink_pull_sample(GST_APP_SINK(pipeline->element("out"))), GstMiniUnref()}, 0};
}

} // namespace zuvi
