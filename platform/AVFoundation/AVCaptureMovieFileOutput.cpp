#include "platform/AVFoundation/AVCaptureMovieFileOutput.h"

#include <ZuviSDK/Foundation/Make.h>
#include "platform/AVFoundation/AVError.h"
#include "platform/AVFoundation/MovieRecording.h"

namespace zuvi {

AVCaptureMovieFileOutput::~AVCaptureMovieFileOutput() {
  sessionWillEnd();
}

void AVCaptureMovieFileOutput::startRecording(
    const std::string& path, std::weak_ptr<AVCaptureFileOutputRecordingDelegate> delegate) {
  auto recording = make<MovieRecording>(path, std::move(delegate), callbackQueue());
  if (isRecording())
    return recording->refuse(
        {AVFoundationErrorDomain, AVErrorOperationInterrupted, "A recording is under way."});
  auto stream = runningStream();
  if (!stream)
    return recording->refuse(
        {AVFoundationErrorDomain, AVErrorSessionNotRunning, "The session does not run."});
  recording_ = recording;
  recording_->start(*stream);
}

void AVCaptureMovieFileOutput::stopRecording() {
  if (recording_) recording_->stop();
}

void AVCaptureMovieFileOutput::cancelRecording() {
  if (recording_) recording_->cancel();
}

bool AVCaptureMovieFileOutput::isRecording() const {
  return recording_ && recording_->isRecording();
}

void AVCaptureMovieFileOutput::sessionWillEnd() {
  if (isRecording()) recording_->interrupt();
}

} // namespace zuvi
