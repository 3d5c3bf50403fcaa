#include "platform/AVFoundation/FilmGStreamer.h"

#include "platform/AVFoundation/AVError.h"
#include "platform/AVFoundation/SerialQueue.h"

#include <gst/app/gstappsrc.h>

#include <csignal>
#include <set>
#include <utility>

namespace zuvi {

namespace {

// How long the film may be without any progress while it is completed. A slow machine may take
// longer than that for all that is left.
constexpr double closePatience = 10;
// Raw pictures are large. Behind the encoder there is room for seconds, for a disk that is busy.
constexpr std::size_t mostUncoded = 8;
// A film asked for while the camera runs begins with the request. One that had to wait longer than
// this for the camera begins with the first picture.
constexpr GstClockTime startTolerance = 100 * GST_MSECOND;

Error filmError(int code, const std::string& why) {
  return {AVFoundationErrorDomain, code, why};
}

/// Over the limit on the size of files a write fails; the signal would end the process.
void blockSizeSignal(GstElement* sink) {
  GstRef<GstPad> pad(gst_element_get_static_pad(sink, "sink"));
  gst_pad_add_probe(
      pad.get(), GST_PAD_PROBE_TYPE_BUFFER,
      [](GstPad*, GstPadProbeInfo*, gpointer) {
        sigset_t signal;
        sigemptyset(&signal);
        sigaddset(&signal, SIGXFSZ);
        pthread_sigmask(SIG_BLOCK, &signal, nullptr); // of the thread that writes
        return GST_PAD_PROBE_OK;
      },
      nullptr, nullptr);
}

/// The films whose file is open. Film queue only; never destroyed.
std::set<FilmGStreamer*>& openFilms() {
  static auto& films = *new std::set<FilmGStreamer*>;
  return films;
}

} // namespace

FilmGStreamer::FilmGStreamer(std::shared_ptr<FilmFile> file, CameraStream::FilmHandler ended,
                             std::vector<FilmEncoder> encoders)
    : file_(std::move(file)), asked_(monotonicTime()), ended_(std::move(ended)),
      encoders_(std::move(encoders)) {}

void FilmGStreamer::begin() {
  SerialQueue::film().async([self = shared_from_this()] { self->build(); });
}

void FilmGStreamer::build() {
  if (!ended_) return; // discarded before its turn came
  // A film that the end of the program cuts short must not stay on the disk.
  static std::once_flag registered;
  std::call_once(registered, [] { SerialQueue::film().whenProgramEnds(discardAll); });
  openFilms().insert(this);
  if (encoders_.empty()) encoders_ = filmEncoders();
  if (encoders_.empty()) encoders_.push_back({"jpegenc", "jpegenc", true}); // tells what is missing
  launch();
}

void FilmGStreamer::launch() {
  if (auto error = file_->open()) return end(std::move(error), false);
  auto made = Pipeline::launch(
      std::string("appsrc name=in format=time max-buffers=0 max-bytes=0 max-time=0 ! "
                  "videoscale ! videoconvert ! capsfilter name=raw ! ") +
          encoders_.front().launch +
          " ! queue name=coded max-size-buffers=0 max-size-time=0 max-size-bytes=16000000 ! "
          "qtmux ! fdsink name=file async=false",
      [weak = weak_from_this(), attempt = ++attempt_](const Pipeline::Event& event) {
        SerialQueue::film().async([weak, attempt, event] {
          if (auto self = weak.lock()) self->heard(attempt, event);
        });
      });
  if (auto* error = std::get_if<Error>(&made)) return useNextEncoder(*error);
  auto& pipeline = std::get<std::unique_ptr<Pipeline>>(made);
  g_object_set(pipeline->element("file"), "fd", file_->descriptor(), nullptr);
  blockSizeSignal(pipeline->element("file"));
  if (GstElement* encoder = pipeline->element("openh264")) endWithoutFlush(encoder);
  if (!pipeline->play())
    return useNextEncoder(filmError(AVErrorUnknown, "The film does not start."));
  std::lock_guard lock(mutex_);
  pipeline_ = std::move(pipeline);
  watchCoded();
  for (const auto& picture : uncoded_)
    feed(picture);
  if (inputEnded_) gst_app_src_end_of_stream(GST_APP_SRC(pipeline_->element("in")));
}

void FilmGStreamer::heard(int attempt, const Pipeline::Event& event) {
  if (attempt != attempt_ || !ended_) return;
  if (event.kind == Pipeline::Event::Kind::Ended) return end(because_, true);
  if (event.element == "file") return end(event.error, false); // no encoder mends a full disk
  useNextEncoder(event.error);
}

void FilmGStreamer::useNextEncoder(const Error& error) {
  if (encoders_.size() < 2) return end(error, false);
  std::unique_ptr<Pipeline> failed; // goes without the lock: its threads may want it
  {
    std::lock_guard lock(mutex_);
    failed.swap(pipeline_);
    input_.reset();
  }
  failed.reset();
  dropFilmEncoder(encoders_.front().element);
  encoders_.erase(encoders_.begin());
  launch();
}

void FilmGStreamer::discardAll() {
  for (auto* film : std::set(openFilms()))
    film->end(filmError(AVErrorOperationInterrupted, "The program ends."), false);
}

bool FilmGStreamer::frame(const CameraFrame& frame) {
  std::lock_guard lock(mutex_);
  if (stopped_) return false;
  if (frame.time < asked_) return true;
  if (!origin_) origin_ = frame.time - asked_ < startTolerance ? asked_ : frame.time;
  // The first picture also stands for the moment before it.
  const GstClockTime place = held_ ? frame.time - *origin_ : 0;
  if (held_) {
    if (place <= heldPlace_) return true;
    if (uncoded_.size() >= mostUncoded) return true; // the one before shows for longer
    push(place - heldPlace_);
  }
  held_ = frame;
  heldPlace_ = place;
  return true;
}

void FilmGStreamer::push(GstClockTime duration) {
  const auto held = std::exchange(held_, std::nullopt);
  auto* sample = held->sample.get();
  GstMini<GstBuffer> buffer(gst_buffer_copy(gst_sample_get_buffer(sample))); // shares the pixels
  GST_BUFFER_PTS(buffer.get()) = heldPlace_;
  GST_BUFFER_DTS(buffer.get()) = GST_CLOCK_TIME_NONE;
  GST_BUFFER_DURATION(buffer.get()) = duration;
  uncoded_.emplace_back(
      gst_sample_new(buffer.get(), gst_sample_get_caps(sample), nullptr, nullptr));
  if (pipeline_) feed(uncoded_.back());
}

void FilmGStreamer::feed(const GstMini<GstSample>& picture) {
  auto* in = GST_APP_SRC(pipeline_->element("in"));
  if (input_) {
    gst_app_src_push_sample(in, picture.get());
    return;
  }
  auto* caps = gst_sample_get_caps(picture.get());
  input_ = encoderInput(encoders_.front(), caps);
  g_object_set(pipeline_->element("raw"), "caps", input_.get(), nullptr);
  gst_app_src_set_caps(in, caps);
  // A film begins at its zero, whoever encodes it.
  auto* first = gst_buffer_copy(gst_sample_get_buffer(picture.get()));
  GST_BUFFER_DURATION(first) += GST_BUFFER_PTS(first);
  GST_BUFFER_PTS(first) = 0;
  gst_app_src_push_buffer(in, first);
}

void FilmGStreamer::watchCoded() {
  GstRef<GstPad> pad(gst_element_get_static_pad(pipeline_->element("coded"), "sink"));
  gst_pad_add_probe(
      pad.get(), GstPadProbeType(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM),
      [](GstPad* probed, GstPadProbeInfo* info, gpointer data) {
        // Encoders move the times of pictures, and say so in their segment.
        const GstMini<GstEvent> told(gst_pad_get_sticky_event(probed, GST_EVENT_SEGMENT, 0));
        const GstSegment* segment = nullptr;
        if (told) gst_event_parse_segment(told.get(), &segment);
        // An encoder that failed at once also tells its end, which the muxer does not expect yet.
        if (GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM)
          return GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_EOS &&
                         !(segment && gst_pad_has_current_caps(probed))
                     ? GST_PAD_PROBE_DROP
                     : GST_PAD_PROBE_OK;
        const auto* buffer = GST_PAD_PROBE_INFO_BUFFER(info);
        const auto self = static_cast<std::weak_ptr<FilmGStreamer>*>(data)->lock();
        if (self && segment)
          self->coded(
              gst_segment_to_running_time(segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer)));
        return GST_PAD_PROBE_OK;
      },
      new std::weak_ptr<FilmGStreamer>(weak_from_this()),
      [](gpointer data) { delete static_cast<std::weak_ptr<FilmGStreamer>*>(data); });
}

void FilmGStreamer::coded(GstClockTime place) {
  std::lock_guard lock(mutex_);
  coded_++;
  while (!uncoded_.empty() &&
         GST_BUFFER_PTS(gst_sample_get_buffer(uncoded_.front().get())) <= place)
    uncoded_.pop_front();
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
      inputEnded_ = true;
      gst_app_src_end_of_stream(GST_APP_SRC(pipeline_->element("in")));
      return waitForEnd(coded_);
    }
  }
  end(because_ ? because_ : filmError(AVErrorNoDataCaptured, "The film has no picture."), false);
}

void FilmGStreamer::waitForEnd(std::uint64_t seen) {
  SerialQueue::film().asyncAfter(closePatience, [self = shared_from_this(), seen] {
    if (!self->ended_) return;
    std::unique_lock lock(self->mutex_);
    if (const auto now = self->coded_; now != seen) return self->waitForEnd(now);
    lock.unlock();
    self->end(filmError(AVErrorDiskFull, "The film cannot be completed in time."), false);
  });
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
    uncoded_.clear();
    pipeline.swap(pipeline_);
  }
  if (keepFile)
    pipeline.reset(); // the file is whole only now
  else
    file_->discard();
  // A disk that hangs may hold up what is left of the pipeline, but not the answer.
  ended(std::move(error));
}

} // namespace zuvi
