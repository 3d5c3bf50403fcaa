#include "platform/AVFoundation/FilmGStreamer.h"

#include "platform/AVFoundation/AVError.h"
#include "platform/AVFoundation/SerialQueue.h"

#include <gst/app/gstappsrc.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <set>
#include <unistd.h>
#include <utility>

namespace zuvi {

namespace {

// How long a disk may take to complete the file.
constexpr double closePatience = 10;
// A film asked for while the camera runs begins with the request. One that had to wait longer than
// this for the camera begins with the first picture.
constexpr GstClockTime startTolerance = 100 * GST_MSECOND;

Error filmError(int code, const std::string& why) {
  return {AVFoundationErrorDomain, code, why};
}

/// Made here so that nobody else can read it; the sink's own file would be open to all.
std::optional<Error> makePrivateFile(const std::string& path) {
  const int file =
      ::open(path.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_NONBLOCK | O_CLOEXEC, 0600);
  if (file < 0)
    return filmError(AVErrorDiskFull,
                     "The film cannot be written: " + std::string(strerror(errno)));
  ::close(file);
  return std::nullopt;
}

/// The films whose file is open. Film queue only; never destroyed.
std::set<FilmGStreamer*>& openFilms() {
  static auto& films = *new std::set<FilmGStreamer*>;
  return films;
}

} // namespace

FilmGStreamer::FilmGStreamer(std::string path, std::optional<double> maxDuration,
                             CameraStream::FilmHandler ended, const FilmEncoder* encoder)
    : path_(std::move(path)), maxDuration_(maxDuration), asked_(monotonicTime()),
      ended_(std::move(ended)), encoder_(encoder) {}

void FilmGStreamer::begin() {
  SerialQueue::film().async([self = shared_from_this()] { self->build(); });
}

void FilmGStreamer::build() {
  if (!ended_) return; // discarded before its turn came
  if (auto error = makePrivateFile(path_)) return end(std::move(error), true);
  fileMade_ = true;
  // A film that the end of the program cuts short must not stay on the disk.
  static std::once_flag registered;
  std::call_once(registered, [] { SerialQueue::film().whenProgramEnds(discardAll); });
  openFilms().insert(this);
  if (!encoder_ && !filmEncoders().empty()) encoder_ = &filmEncoders().front();
  auto made = Pipeline::launch(
      std::string("appsrc name=in format=time max-buffers=30 max-bytes=0 max-time=0 "
                  "leaky-type=upstream ! videoconvert ! videoscale ! capsfilter name=raw ! ") +
          (encoder_ ? encoder_->launch : "jpegenc") + " ! qtmux ! filesink name=file async=false",
      [weak = weak_from_this()](const Pipeline::Event& event) {
        SerialQueue::film().async([weak, event] {
          auto self = weak.lock();
          if (!self) return;
          if (event.kind == Pipeline::Event::Kind::Failed) return self->end(event.error, false);
          self->end(self->because_, true);
        });
      });
  if (auto* error = std::get_if<Error>(&made)) return end(*error, false);
  auto& pipeline = std::get<std::unique_ptr<Pipeline>>(made);
  g_object_set(pipeline->element("file"), "location", path_.c_str(), nullptr);
  if (GstElement* encoder = pipeline->element("openh264")) endWithoutFlush(encoder);
  if (!pipeline->play()) return end(filmError(AVErrorUnknown, "The film does not start."), false);
  std::lock_guard lock(mutex_);
  pipeline_ = std::move(pipeline);
}

void FilmGStreamer::discardAll() {
  for (auto* film : std::set(openFilms()))
    film->end(filmError(AVErrorOperationInterrupted, "The program ends."), false);
}

bool FilmGStreamer::frame(const CameraFrame& frame) {
  std::unique_lock lock(mutex_);
  if (stopped_) return false;
  if (frame.time < asked_) return true;
  if (!firstSeen_) firstSeen_ = frame.time;
  if (!pipeline_) return true;
  if (!origin_) {
    origin_ = *firstSeen_ - asked_ < startTolerance ? asked_ : *firstSeen_;
    setFormat(gst_sample_get_caps(frame.sample.get()));
  }
  // The first picture also stands for the moment before it.
  const GstClockTime place = held_ ? frame.time - *origin_ : 0;
  if (held_) {
    if (place <= heldPlace_) return true;
    if (maxDuration_ && place >= *maxDuration_ * GST_SECOND) {
      stopTime_ = *origin_ + GstClockTime(*maxDuration_ * GST_SECOND);
      lock.unlock();
      stopBecause(filmError(AVErrorMaximumDurationReached, "The film has reached its limit."));
      return false;
    }
    push(place - heldPlace_);
  }
  held_ = frame;
  heldPlace_ = place;
  return true;
}

void FilmGStreamer::setFormat(GstCaps* caps) {
  auto input = encoderInput(*encoder_, caps);
  g_object_set(pipeline_->element("raw"), "caps", input.get(), nullptr);
  gst_app_src_set_caps(GST_APP_SRC(pipeline_->element("in")), caps);
}

void FilmGStreamer::push(GstClockTime duration) {
  auto* buffer = gst_buffer_copy(gst_sample_get_buffer(held_->sample.get())); // shares the pixels
  GST_BUFFER_PTS(buffer) = heldPlace_;
  GST_BUFFER_DTS(buffer) = GST_CLOCK_TIME_NONE;
  GST_BUFFER_DURATION(buffer) = duration;
  gst_app_src_push_buffer(GST_APP_SRC(pipeline_->element("in")), buffer);
  held_.reset();
}

void FilmGStreamer::finishInput(std::optional<Error> because) {
  {
    std::lock_guard lock(mutex_);
    if (stopped_) return;
    stopped_ = true;
    because_ = std::move(because);
    if (!stopTime_) stopTime_ = monotonicTime();
  }
  SerialQueue::film().async([self = shared_from_this()] { self->close(); });
}

void FilmGStreamer::close() {
  if (!ended_) return;
  {
    std::lock_guard lock(mutex_);
    if (held_) {
      const auto last = *origin_ + heldPlace_;
      push(std::max(*stopTime_, last + GST_MSECOND) - last);
      gst_app_src_end_of_stream(GST_APP_SRC(pipeline_->element("in")));
      SerialQueue::film().asyncAfter(closePatience, [self = shared_from_this()] {
        self->end(filmError(AVErrorDiskFull, "The film cannot be completed in time."), false);
      });
      return;
    }
  }
  end(because_ ? because_ : filmError(AVErrorNoDataCaptured, "The film has no picture."), false);
}

void FilmGStreamer::discard() {
  {
    std::lock_guard lock(mutex_);
    stopped_ = true;
  }
  SerialQueue::film().async([self = shared_from_this()] {
    self->end(filmError(AVErrorOperationInterrupted, "The film was given up."), false);
  });
}

void FilmGStreamer::end(std::optional<Error> error, bool keepFile) {
  auto ended = std::exchange(ended_, nullptr);
  if (!ended) return;
  openFilms().erase(this);
  std::unique_ptr<Pipeline> pipeline;
  {
    std::lock_guard lock(mutex_);
    stopped_ = true;
    held_.reset();
    pipeline.swap(pipeline_);
  }
  if (keepFile)
    pipeline.reset(); // the file is whole only now
  else if (fileMade_)
    ::unlink(path_.c_str());
  // A disk that hangs may hold up what is left of the pipeline, but not the answer.
  ended(std::move(error));
  if (keepFile || !fileMade_ || !pipeline) return;
  pipeline.reset();
  ::unlink(path_.c_str()); // its sink may have opened the file in between
}

} // namespace zuvi
