#pragma once

#include "platform/AVFoundation/CameraStream.h"

#include <vector>

namespace zuvi {

class ScriptedCamera;
class ScriptedFilm;

/// A session's hold on a scripted camera.
class ScriptedStream final : public CameraStream,
                             public std::enable_shared_from_this<ScriptedStream> {
public:
  ScriptedStream(std::shared_ptr<ScriptedCamera> camera, DispatchQueue& queue);
  ~ScriptedStream() override;

  void setListener(Listener listener) override { listener_ = std::move(listener); }
  void start(CameraUse use) override;
  void stop() override;
  bool isRunning() const override { return running_; }
  void addPreview(std::weak_ptr<CameraPreview> preview) override;
  void captureStill(StillHandler handler) override;
  std::shared_ptr<CameraFilm> startFilm(std::shared_ptr<FilmFile> file, FilmHandler ended) override;
  DispatchQueue& callbackQueue() override { return queue_; }

  void answerStills(const std::optional<Data>& still);
  void show(const std::shared_ptr<const CGImage>& image);
  /// Ends the run as the camera does.
  void end(const Error& error);

private:
  std::shared_ptr<ScriptedCamera> camera_;
  DispatchQueue& queue_;
  Listener listener_ = [](Event, const std::optional<Error>&) {};
  bool running_ = false;
  std::vector<std::weak_ptr<CameraPreview>> previews_;
  std::vector<StillHandler> stills_;
  std::vector<std::weak_ptr<ScriptedFilm>> films_;
};

} // namespace zuvi
