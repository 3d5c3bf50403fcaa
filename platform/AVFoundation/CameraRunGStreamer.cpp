#include "platform/AVFoundation/CameraRunGStreamer.h"

#include "platform/AVFoundation/AVError.h"
#include "platform/AVFoundation/SerialQueue.h"
#include "platform/AVFoundation/StillGStreamer.h"

#include <algorithm>
#include <utility>

namespace zuvi {

namespace {
// Long enough for a camera that has just been switched on.
constexpr double stillPatience = 5;
constexpr double permissionInterval = 0.1;
} // namespace

void CameraRun::answerWithout(const CameraStream::StillHandler& handler, const char* why) {
  DispatchQueue::global().async([handler, why] {
    handler(std::nullopt, Error{AVFoundationErrorDomain, AVErrorNoDataCaptured, why});
  });
}

void PreviewList::add(std::weak_ptr<CameraPreview> preview) {
  std::lock_guard lock(mutex_);
  std::erase_if(previews_, [](const auto& one) { return one.expired(); });
  previews_.push_back(std::move(preview));
}

std::vector<std::shared_ptr<CameraPreview>> PreviewList::live() {
  std::vector<std::shared_ptr<CameraPreview>> live;
  std::lock_guard lock(mutex_);
  for (const auto& preview : previews_)
    if (auto one = preview.lock()) live.push_back(std::move(one));
  return live;
}

bool PreviewList::anyWantsFrames() {
  bool any = false;
  for (const auto& preview : live())
    any |= preview->wantsFrames();
  return any;
}

void PreviewList::show(const std::shared_ptr<const CGImage>& image) {
  for (const auto& preview : live())
    preview->frame(image);
}

CameraRun::CameraRun(std::shared_ptr<PreviewList> previews, CameraUse use,
                     CameraStream::Listener listener)
    : previews_(std::move(previews)), use_(use), listener_(std::move(listener)) {}

void CameraRun::begin(const CameraOpening& opening) {
  SerialQueue::camera().async([self = shared_from_this(), opening] { self->open(opening); });
}

void CameraRun::open(const CameraOpening& opening) {
  if (!isRunning()) return; // stopped before its turn came
  switch (opening.permission()) {
  case AVAuthorizationStatus::Authorized:
    break;
  case AVAuthorizationStatus::NotDetermined:
    // The user is still being asked.
    return SerialQueue::camera().asyncAfter(
        permissionInterval, [self = shared_from_this(), opening] { self->open(opening); });
  default:
    return cameraEnded({AVFoundationErrorDomain, AVErrorNotAuthorized, "The camera is refused."});
  }
  const auto recipe = opening.recipe();
  if (!recipe)
    return cameraEnded(
        {AVFoundationErrorDomain, AVErrorDeviceWasDisconnected, "The camera is gone."});
  auto source = source_ = CameraSource::forRecipe(*recipe);
  source->attach(shared_from_this()); // may end the run at once, which lets go of the source
}

void CameraRun::end(Films films) {
  std::vector<Still> stills;
  std::vector<std::shared_ptr<FilmGStreamer>> ended;
  {
    std::lock_guard lock(mutex_);
    if (!running_) return;
    running_ = false;
    stills.swap(stills_);
    ended.swap(films_);
  }
  for (const auto& still : stills)
    answerWithout(still.handler, "The session was stopped.");
  for (const auto& film : ended)
    films == Films::Complete ? film->stop() : film->discard();
  SerialQueue::camera().async([self = shared_from_this()] {
    if (auto source = std::exchange(self->source_, nullptr)) source->detach(self.get());
  });
}

bool CameraRun::isRunning() const {
  std::lock_guard lock(mutex_);
  return running_;
}

void CameraRun::captureStill(CameraStream::StillHandler handler) {
  std::lock_guard lock(mutex_);
  if (!running_) return answerWithout(handler, "The session does not run.");
  stills_.push_back({++lastStill_, monotonicTime(), std::move(handler)});
  SerialQueue::camera().asyncAfter(stillPatience, [weak = weak_from_this(), id = lastStill_] {
    if (auto self = weak.lock()) self->forgetStill(id);
  });
}

void CameraRun::forgetStill(std::uint64_t id) {
  std::lock_guard lock(mutex_);
  auto late = std::ranges::find(stills_, id, &Still::id);
  if (late == stills_.end()) return;
  answerWithout(late->handler, "The camera gave no picture in time.");
  stills_.erase(late);
}

void CameraRun::addFilm(std::shared_ptr<FilmGStreamer> film) {
  std::unique_lock lock(mutex_);
  if (running_) {
    films_.push_back(film);
    return;
  }
  lock.unlock();
  film->stop();
}

bool CameraRun::isFilming() const {
  std::lock_guard lock(mutex_);
  return !films_.empty();
}

bool CameraRun::isWantedLater(const CameraFrame& frame) const {
  return !films_.empty() ||
         std::ranges::any_of(stills_, [&](const auto& still) { return frame.time >= still.asked; });
}

void CameraRun::frame(const CameraFrame& frame) {
  {
    std::lock_guard lock(mutex_);
    if (!running_) return;
    if (isWantedLater(frame)) {
      const auto own = ownPixels(frame);
      std::erase_if(films_, [&own](const auto& film) { return !film->frame(own); });
      encodeStills(own);
    }
  }
  if (!seen_.exchange(true)) listener_(CameraStream::Event::FirstPicture, std::nullopt);
  if (!previews_->anyWantsFrames()) return;
  if (const auto picture = converter_.convert(frame)) previews_->show(picture);
}

void CameraRun::encodeStills(const CameraFrame& frame) {
  std::erase_if(stills_, [&frame](Still& still) {
    if (frame.time < still.asked) return false; // the camera saw it before it was asked
    DispatchQueue::global().async([frame, handler = std::move(still.handler)] {
      if (auto jpeg = encodeStill(frame))
        handler(std::move(jpeg), std::nullopt);
      else
        answerWithout(handler, "The picture cannot be encoded.");
    });
    return true;
  });
}

void CameraRun::cameraEnded(const Error& error) {
  std::vector<Still> stills;
  std::vector<std::shared_ptr<FilmGStreamer>> films;
  bool ran = false;
  {
    std::lock_guard lock(mutex_);
    ran = std::exchange(running_, false);
    stills.swap(stills_);
    films.swap(films_);
  }
  source_.reset();
  if (ran) listener_(CameraStream::Event::Failed, error);
  for (const auto& still : stills)
    answerWithout(still.handler, "The camera is gone.");
  for (const auto& film : films)
    film->stopBecause(error);
}

} // namespace zuvi
