#pragma once

#include "platform/AVFoundation/AVCaptureMovieFileOutput.h"
#include "platform/AVFoundation/CameraStream.h"

#include <mutex>

namespace zuvi {

/// One film from its start to the delegate's call. Lives until that call, also without its output.
/// Any thread.
class MovieRecording : public std::enable_shared_from_this<MovieRecording> {
public:
  MovieRecording(std::string path, std::weak_ptr<AVCaptureFileOutputRecordingDelegate> delegate,
                 DispatchQueue& queue);

  void start(CameraStream& stream);
  /// Ends a recording that cannot begin.
  void refuse(Error error);
  void stop();
  /// Gives the film up; the delegate hears of it.
  void interrupt();
  /// Gives the film up; the delegate hears nothing.
  void cancel();
  bool isRecording() const;

private:
  enum class State { Recording, Stopped, Ended };

  void ended(std::optional<Error> error);
  void tell(const std::optional<Error>& error);

  const std::shared_ptr<FilmFile> file_;
  const std::weak_ptr<AVCaptureFileOutputRecordingDelegate> delegate_;
  DispatchQueue& queue_;
  mutable std::mutex mutex_;
  State state_ = State::Recording;
  bool silent_ = false;
  std::shared_ptr<CameraFilm> film_;
};

} // namespace zuvi
