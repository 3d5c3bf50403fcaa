#pragma once

#include <ZuviSDK/CoreGraphics/CGImage.h>
#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Foundation/Data.h>
#include <ZuviSDK/Foundation/Error.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zuvi {

class FilmFile;

/// Where a running camera's pictures are shown. Called on the camera's threads; must not wait.
class CameraPreview {
public:
  virtual ~CameraPreview() = default;
  /// Asked before each picture is prepared; false saves the work.
  virtual bool wantsFrames() = 0;
  virtual void frame(std::shared_ptr<const CGImage> image) = 0;
};

/// A film being written.
class CameraFilm {
public:
  virtual ~CameraFilm() = default;
  /// Completes the film. Further calls change nothing.
  virtual void stop() = 0;
  /// Ends the film and gives its file up, also while `stop` is at work.
  virtual void discard() = 0;
};

/// What a session takes with its camera: film, which wants many pictures, or stills alone, which
/// want large ones.
enum class CameraUse { Film, Stills };

/// A camera as one session uses it: the driver behind sessions and outputs. No call waits for the
/// camera. Answers come once, on any thread, and never within the call that asks for them.
class CameraStream {
public:
  using StillHandler = std::function<void(std::optional<Data> jpeg, std::optional<Error>)>;
  using FilmHandler = std::function<void(std::optional<Error>)>;

  /// Ends the run; films under way are discarded.
  virtual ~CameraStream() = default;

  /// What happens to a run by itself.
  enum class Event {
    FirstPicture, ///< the camera gives pictures
    Failed,       ///< the camera has gone or failed, which ended the run
  };
  /// `error` tells why a run failed.
  using Listener = std::function<void(Event, const std::optional<Error>& error)>;
  /// Hears of later runs. On any thread; of a failure before a film hears of it.
  virtual void setListener(Listener listener) = 0;

  virtual void start(CameraUse use) = 0;
  /// Waiting stills are answered without a picture, films are completed.
  virtual void stop() = 0;
  /// From `start` to `stop` or a failure of the camera.
  virtual bool isRunning() const = 0;

  /// Gets pictures whenever the camera runs, as long as it lives.
  virtual void addPreview(std::weak_ptr<CameraPreview> preview) = 0;
  virtual void captureStill(StillHandler handler) = 0;
  /// Starts a film. `ended` comes when the file is complete, or given up and an error tells why.
  virtual std::shared_ptr<CameraFilm> startFilm(std::shared_ptr<FilmFile> file,
                                                FilmHandler ended) = 0;

  /// The platform queue on which the callers above hear of results.
  virtual DispatchQueue& callbackQueue() { return DispatchQueue::global(); }
};

} // namespace zuvi
