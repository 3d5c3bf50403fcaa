#pragma once

#include "platform/AVFoundation/CameraRunGStreamer.h"

namespace zuvi {

/// A session's way to a camera: one run after the other. Main queue only.
class CameraStreamGStreamer final : public CameraStream {
public:
  explicit CameraStreamGStreamer(CameraOpening opening);
  ~CameraStreamGStreamer() override;

  void setListener(Listener listener) override;
  void start(CameraUse use) override;
  void stop() override;
  bool isRunning() const override { return run_ && run_->isRunning(); }
  void addPreview(std::weak_ptr<CameraPreview> preview) override;
  void captureStill(StillHandler handler) override;
  std::shared_ptr<CameraFilm> startFilm(std::shared_ptr<FilmFile> file, FilmHandler ended) override;

private:
  const CameraOpening opening_;
  Listener listener_ = [](Event, const std::optional<Error>&) {};
  const std::shared_ptr<PreviewList> previews_ = std::make_shared<PreviewList>();
  std::shared_ptr<CameraRun> run_; // null before the first start
};

} // namespace zuvi
