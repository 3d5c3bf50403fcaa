#include "testing/AVFoundation/ScriptedFilm.h"

#include "platform/AVFoundation/AVError.h"
#include "platform/AVFoundation/FilmFile.h"
#include "testing/AVFoundation/ScriptedCamera.h"

#include <utility>

#include <unistd.h>

namespace zuvi {

ScriptedFilm::ScriptedFilm(std::shared_ptr<ScriptedCamera> camera, DispatchQueue& queue,
                           std::shared_ptr<FilmFile> file, CameraStream::FilmHandler ended)
    : camera_(std::move(camera)), queue_(queue), file_(std::move(file)), ended_(std::move(ended)) {
  camera_->films.push_back(file_->path());
}

void ScriptedFilm::stop() {
  if (!ended_) return;
  camera_->filmsStopped++;
  complete(std::nullopt);
}

void ScriptedFilm::discard() {
  if (!ended_) return;
  camera_->filmsDiscarded++;
  file_->discard();
  end(Error{AVFoundationErrorDomain, AVErrorOperationInterrupted, "The film was given up."});
}

void ScriptedFilm::complete(std::optional<Error> error) {
  if (!ended_) return;
  if (!camera_->film)
    return end(Error{AVFoundationErrorDomain, AVErrorNoDataCaptured, "The film has no picture."});
  const std::string_view film = camera_->film->view();
  if (auto failed = file_->open()) return end(std::move(failed));
  if (::write(file_->descriptor(), film.data(), film.size()) != std::ssize(film)) {
    file_->discard();
    return end(Error{AVFoundationErrorDomain, AVErrorDiskFull, "The film cannot be written."});
  }
  end(std::move(error));
}

void ScriptedFilm::end(std::optional<Error> error) {
  queue_.async(
      [ended = std::exchange(ended_, nullptr), error = std::move(error)] { ended(error); });
}

} // namespace zuvi
