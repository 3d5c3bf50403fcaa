#include "platform/AVFoundation/ScriptedFilm.h"

#include "platform/AVFoundation/AVError.h"
#include "platform/AVFoundation/ScriptedCamera.h"
#include "platform/Foundation/FileManager.h"

#include <utility>

namespace zuvi {

ScriptedFilm::ScriptedFilm(std::shared_ptr<ScriptedCamera> camera, DispatchQueue& queue,
                           std::string path, CameraStream::FilmHandler ended)
    : camera_(std::move(camera)), queue_(queue), path_(std::move(path)), ended_(std::move(ended)) {
  camera_->films.push_back(path_);
}

ScriptedFilm::~ScriptedFilm() {
  DispatchQueue::main().cancel(limit_);
}

void ScriptedFilm::limit(double seconds) {
  limit_ = DispatchQueue::main().asyncAfter(seconds, [weak = weak_from_this()] {
    if (auto self = weak.lock())
      self->complete(Error{AVFoundationErrorDomain, AVErrorMaximumDurationReached,
                           "The film has reached its limit."});
  });
}

void ScriptedFilm::stop() {
  if (!ended_) return;
  camera_->filmsStopped++;
  complete(std::nullopt);
}

void ScriptedFilm::discard() {
  if (!ended_) return;
  camera_->filmsDiscarded++;
  end(Error{AVFoundationErrorDomain, AVErrorOperationInterrupted, "The film was given up."});
}

void ScriptedFilm::complete(std::optional<Error> error) {
  if (!ended_) return;
  if (!camera_->film)
    return end(Error{AVFoundationErrorDomain, AVErrorNoDataCaptured, "The film has no picture."});
  if (!FileManager::writeAtomically(path_, camera_->film->view()))
    return end(Error{AVFoundationErrorDomain, AVErrorDiskFull, "The film cannot be written."});
  end(std::move(error));
}

void ScriptedFilm::end(std::optional<Error> error) {
  queue_.async(
      [ended = std::exchange(ended_, nullptr), error = std::move(error)] { ended(error); });
}

} // namespace zuvi
