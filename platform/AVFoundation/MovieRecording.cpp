#include "platform/AVFoundation/MovieRecording.h"

#include "platform/AVFoundation/FilmFile.h"

namespace zuvi {

MovieRecording::MovieRecording(std::string path,
                               std::weak_ptr<AVCaptureFileOutputRecordingDelegate> delegate,
                               DispatchQueue& queue)
    : file_(std::make_shared<FilmFile>(std::move(path))), delegate_(std::move(delegate)),
      queue_(queue) {}

void MovieRecording::start(CameraStream& stream) {
  auto film = stream.startFilm(
      file_, [self = shared_from_this()](auto error) { self->ended(std::move(error)); });
  std::lock_guard lock(mutex_);
  if (state_ == State::Recording) film_ = std::move(film);
}

void MovieRecording::refuse(Error error) {
  ended(std::move(error));
}

void MovieRecording::stop() {
  std::shared_ptr<CameraFilm> film;
  {
    std::lock_guard lock(mutex_);
    if (state_ != State::Recording) return;
    state_ = State::Stopped;
    film = film_;
  }
  if (film) film->stop();
}

void MovieRecording::interrupt() {
  std::shared_ptr<CameraFilm> film;
  {
    std::lock_guard lock(mutex_);
    film = film_;
    if (state_ == State::Recording) state_ = State::Stopped;
  }
  if (film) film->discard();
}

void MovieRecording::cancel() {
  {
    std::lock_guard lock(mutex_);
    silent_ = true;
  }
  interrupt();
}

bool MovieRecording::isRecording() const {
  std::lock_guard lock(mutex_);
  return state_ == State::Recording;
}

void MovieRecording::ended(std::optional<Error> error) {
  std::shared_ptr<CameraFilm> film; // let go of without the lock: it may hold this object
  {
    std::lock_guard lock(mutex_);
    state_ = State::Ended;
    film.swap(film_);
  }
  queue_.async([self = shared_from_this(), error = std::move(error)] { self->tell(error); });
}

void MovieRecording::tell(const std::optional<Error>& error) {
  bool silent = false;
  {
    std::lock_guard lock(mutex_);
    silent = silent_;
  }
  auto delegate = silent ? nullptr : delegate_.lock();
  // A film that nobody hears of would stay on the disk.
  if (!delegate) return file_->discard();
  const auto unkept = file_->keep();
  delegate->fileOutputDidFinishRecording(file_->path(), unkept ? unkept : error);
  // The delegate may be a screen by now held here only, and a screen dies on the main queue.
  DispatchQueue::main().async([delegate = std::move(delegate)]() mutable { delegate.reset(); });
}

} // namespace zuvi
