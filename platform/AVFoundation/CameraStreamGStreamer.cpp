#include "platform/AVFoundation/CameraStreamGStreamer.h"

#include <ZuviSDK/Foundation/Make.h>

namespace zuvi {

CameraStreamGStreamer::CameraStreamGStreamer(CameraOpening opening)
    : opening_(std::move(opening)) {}

CameraStreamGStreamer::~CameraStreamGStreamer() {
  if (run_) run_->end(CameraRun::Films::Discard);
}

void CameraStreamGStreamer::setListener(Listener listener) {
  listener_ = std::move(listener);
}

void CameraStreamGStreamer::start(CameraUse use) {
  if (isRunning()) return;
  run_ = make<CameraRun>(previews_, use, listener_);
  run_->begin(opening_);
}

void CameraStreamGStreamer::stop() {
  if (run_) run_->end(CameraRun::Films::Complete);
}

void CameraStreamGStreamer::addPreview(std::weak_ptr<CameraPreview> preview) {
  previews_->add(std::move(preview));
}

void CameraStreamGStreamer::captureStill(StillHandler handler) {
  if (!run_) return CameraRun::answerWithout(handler, "The session does not run.");
  run_->captureStill(std::move(handler));
}

std::shared_ptr<CameraFilm> CameraStreamGStreamer::startFilm(std::shared_ptr<FilmFile> file,
                                                             FilmHandler ended) {
  auto film = make<FilmGStreamer>(std::move(file), std::move(ended));
  film->begin();
  if (run_)
    run_->addFilm(film);
  else
    film->stop();
  return film;
}

} // namespace zuvi
