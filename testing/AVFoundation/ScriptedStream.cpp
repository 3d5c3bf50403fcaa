#include "testing/AVFoundation/ScriptedStream.h"

#include <ZuviSDK/Foundation/Make.h>
#include "platform/AVFoundation/AVError.h"
#include "testing/AVFoundation/ScriptedCamera.h"
#include "testing/AVFoundation/ScriptedFilm.h"

#include <utility>

namespace zuvi {

ScriptedStream::ScriptedStream(std::shared_ptr<ScriptedCamera> camera, DispatchQueue& queue)
    : camera_(std::move(camera)), queue_(queue) {}

ScriptedStream::~ScriptedStream() {
  if (!running_) return;
  camera_->stops++;
  answerStills(std::nullopt);
  for (const auto& film : films_)
    if (auto live = film.lock()) live->discard();
}

void ScriptedStream::start(CameraUse) {
  camera_->starts++;
  running_ = true;
  queue_.async([weak = weak_from_this(), fails = camera_->fails] {
    const auto self = weak.lock();
    if (!self || !self->running_) return;
    if (fails)
      return self->end(
          {AVFoundationErrorDomain, AVErrorDeviceWasDisconnected, "The camera is gone."});
    self->listener_(Event::FirstPicture, std::nullopt);
  });
}

void ScriptedStream::stop() {
  if (!running_) return;
  camera_->stops++;
  running_ = false;
  answerStills(std::nullopt);
  for (const auto& film : std::exchange(films_, {}))
    if (auto live = film.lock()) live->complete(std::nullopt);
}

void ScriptedStream::end(const Error& error) {
  if (!running_) return;
  running_ = false;
  listener_(Event::Failed, error);
  answerStills(std::nullopt);
  for (const auto& film : std::exchange(films_, {}))
    if (auto live = film.lock()) live->complete(error);
}

void ScriptedStream::addPreview(std::weak_ptr<CameraPreview> preview) {
  previews_.push_back(std::move(preview));
}

void ScriptedStream::show(const std::shared_ptr<const CGImage>& image) {
  if (!running_) return;
  for (const auto& preview : previews_)
    if (auto live = preview.lock(); live && live->wantsFrames()) live->frame(image);
}

void ScriptedStream::captureStill(StillHandler handler) {
  camera_->stills++;
  stills_.push_back(std::move(handler));
  if (camera_->answersStills) answerStills(camera_->still);
}

void ScriptedStream::answerStills(const std::optional<Data>& still) {
  std::optional<Error> error;
  if (!still)
    error = Error{AVFoundationErrorDomain, AVErrorNoDataCaptured, "The camera gave no picture."};
  for (auto& handler : std::exchange(stills_, {}))
    queue_.async([handler = std::move(handler), still, error] { handler(still, error); });
}

std::shared_ptr<CameraFilm> ScriptedStream::startFilm(std::shared_ptr<FilmFile> file,
                                                      FilmHandler ended) {
  auto film = make<ScriptedFilm>(camera_, queue_, std::move(file), std::move(ended));
  films_.push_back(film);
  return film;
}

} // namespace zuvi
