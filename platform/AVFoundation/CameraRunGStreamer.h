#pragma once

#include "platform/AVFoundation/CameraSourceGStreamer.h"
#include "platform/AVFoundation/CameraStream.h"
#include "platform/AVFoundation/FilmGStreamer.h"
#include "platform/AVFoundation/PreviewConverterGStreamer.h"

#include <atomic>
#include <mutex>
#include <vector>

namespace zuvi {

/// The previews of one session. They outlast its runs.
class PreviewList {
public:
  void add(std::weak_ptr<CameraPreview> preview);
  bool anyWantsFrames();
  void show(const std::shared_ptr<const CGImage>& image);

private:
  std::vector<std::shared_ptr<CameraPreview>> live();

  std::mutex mutex_;
  std::vector<std::weak_ptr<CameraPreview>> previews_;
};

/// One run of a session on its camera, from start to stop or failure. Any thread.
class CameraRun final : public CameraViewer, public std::enable_shared_from_this<CameraRun> {
public:
  CameraRun(std::shared_ptr<PreviewList> previews, CameraUse use, CameraStream::Listener listener);

  void begin(const CameraOpening& opening);
  enum class Films { Complete, Discard };
  /// Lets go of the camera. Further calls change nothing.
  void end(Films films);
  bool isRunning() const;

  /// Answers a still that cannot be, for the given reason.
  static void answerWithout(const CameraStream::StillHandler& handler, const char* why);
  void captureStill(CameraStream::StillHandler handler);
  void addFilm(std::shared_ptr<FilmGStreamer> film);

  CameraUse use() const override { return use_; }
  bool isFilming() const override;
  void frame(const CameraFrame& frame) override;
  void cameraEnded(const Error& error) override;

private:
  struct Still {
    std::uint64_t id;
    GstClockTime asked;
    CameraStream::StillHandler handler;
  };
  void open(const CameraOpening& opening);
  void encodeStills(const CameraFrame& frame);
  bool isWantedLater(const CameraFrame& frame) const;
  void forgetStill(std::uint64_t id);

  const std::shared_ptr<PreviewList> previews_;
  const CameraUse use_;
  const CameraStream::Listener listener_;
  std::atomic<bool> seen_ = false; ///< a picture has come
  mutable std::mutex mutex_;
  bool running_ = true;
  std::uint64_t lastStill_ = 0;
  std::vector<Still> stills_;
  std::vector<std::shared_ptr<FilmGStreamer>> films_;
  PreviewConverter converter_;           // the camera's own thread only
  std::shared_ptr<CameraSource> source_; // camera queue only
};

} // namespace zuvi
