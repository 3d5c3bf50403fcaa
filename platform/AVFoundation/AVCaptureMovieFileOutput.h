#pragma once

#include <ZuviSDK/Foundation/Error.h>
#include "platform/AVFoundation/AVCaptureOutput.h"

#include <memory>
#include <optional>
#include <string>

namespace zuvi {

class MovieRecording;

/// Hears the end of a film.
class AVCaptureFileOutputRecordingDelegate {
public:
  virtual ~AVCaptureFileOutputRecordingDelegate() = default;
  /// Comes once for every started recording, on a platform queue. With an error there is a file
  /// only if the film could be completed up to that point.
  virtual void fileOutputDidFinishRecording(const std::string& path,
                                            std::optional<Error> error) = 0;
};

/// Films a session's camera into a QuickTime file without sound. Main queue only.
class AVCaptureMovieFileOutput final : public AVCaptureOutput {
public:
  AVCaptureMovieFileOutput() = default;
  /// A film under way is given up and its file removed; the delegate gets an error.
  ~AVCaptureMovieFileOutput() override;

  /// Replaces a file that is there. While a recording is under way the call only gives the delegate
  /// an error.
  void startRecording(const std::string& path,
                      std::weak_ptr<AVCaptureFileOutputRecordingDelegate> delegate);
  /// Completes the file; a film without a picture is removed and gives an error. Without effect
  /// when nothing is recorded.
  void stopRecording();
  /// Gives the film up: its file is removed and the delegate hears nothing. Also ends a recording
  /// that was stopped but whose delegate has not been called.
  void cancelRecording();
  /// From `startRecording` to `stopRecording` or the film's end.
  bool isRecording() const;

private:
  CameraUse use() const override { return CameraUse::Film; }
  void sessionWillEnd() override;

  std::shared_ptr<MovieRecording> recording_;
};

} // namespace zuvi
