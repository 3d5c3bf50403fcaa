#include "platform/AVFoundation/CameraSourceGStreamer.h"

#include <ZuviSDK/Foundation/Make.h>
#include "platform/AVFoundation/AVError.h"
#include "platform/AVFoundation/SerialQueue.h"
#include "platform/Foundation/ProcessInfo.h"

#include <gst/app/gstappsink.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>

namespace zuvi {

namespace {

// Seconds. A media server may lose a camera that has just come: it runs and gives nothing. Each new
// attempt waits twice as long, so that a slow camera gets its time.
constexpr double firstPatience = 3, longestPatience = 60;
// Screens follow each other: one that goes makes way for one that comes, before the camera turns
// back to the one below.
constexpr double suitDelay = 1;

/// When the picture was taken. Its own time counts if it is plausible, else that of its arrival.
GstClockTime timeOf(GstElement* sink, GstSample* sample) {
  const auto now = monotonicTime();
  const auto* buffer = gst_sample_get_buffer(sample);
  const auto running = gst_segment_to_running_time(gst_sample_get_segment(sample), GST_FORMAT_TIME,
                                                   GST_BUFFER_PTS(buffer));
  if (!GST_CLOCK_TIME_IS_VALID(running)) return now;
  const auto taken = gst_element_get_base_time(sink) + running;
  const auto off = std::llabs(GstClockTimeDiff(now) - GstClockTimeDiff(taken));
  return off < GstClockTimeDiff(GST_SECOND / 2) ? std::min(taken, now) : now;
}

GstFlowReturn arrived(GstAppSink* sink, gpointer data) {
  auto* sample = gst_app_sink_pull_sample(sink);
  if (!sample) return GST_FLOW_EOS;
  const auto own = ownSample(sample);
  const auto& weak = *static_cast<std::weak_ptr<CameraSource>*>(data);
  if (auto source = weak.lock()) source->deliver({own, timeOf(GST_ELEMENT(sink), own.get())});
  return GST_FLOW_OK;
}

// Seconds until films and stills are done with the pictures of a camera that was closed, and a
// screen that moves stands still again.
constexpr double quietAfter = 1;

/// The sources by their recipe's key. Never destroyed: cameras are closed while the program ends.
std::map<std::string, std::weak_ptr<CameraSource>>& openSources() {
  static auto& sources = *new std::map<std::string, std::weak_ptr<CameraSource>>;
  return sources;
}

// Pictures are large, and each thread that had some keeps their memory.
void returnMemoryOfPictures() {
  SerialQueue::camera().asyncAfter(quietAfter, [] {
    for (const auto& [key, source] : openSources())
      if (!source.expired()) return; // in use again; its end comes here too
    ProcessInfo::returnFreedMemory();
  });
}

} // namespace

std::shared_ptr<CameraSource> CameraSource::forRecipe(const SourceRecipe& recipe) {
  static std::once_flag registered;
  std::call_once(registered, [] { SerialQueue::camera().whenProgramEnds(closeAll); });
  auto& known = openSources()[recipe.key];
  auto source = known.lock();
  if (!source) known = source = make<CameraSource>(recipe);
  return source;
}

void CameraSource::endFor(const std::string& key, const Error& error) {
  const auto found = openSources().find(key);
  if (found == openSources().end()) return;
  if (const auto source = found->second.lock()) source->fail(error);
}

void CameraSource::closeAll() {
  for (const auto& [key, weak] : openSources())
    if (auto source = weak.lock())
      source->fail({AVFoundationErrorDomain, AVErrorOperationInterrupted, "The program ends."});
}

CameraSource::CameraSource(SourceRecipe recipe) : recipe_(std::move(recipe)) {}

CameraSource::~CameraSource() {
  pipeline_.reset();
  returnMemoryOfPictures();
}

void CameraSource::attach(const std::shared_ptr<CameraViewer>& viewer) {
  {
    std::lock_guard lock(mutex_);
    viewers_.push_back(viewer);
  }
  suitLastViewer();
}

void CameraSource::detach(const CameraViewer* viewer) {
  bool last = false;
  std::vector<std::shared_ptr<CameraViewer>> kept; // the viewer may go, so not under the lock
  {
    std::lock_guard lock(mutex_);
    kept = viewers_;
    std::erase_if(viewers_, [viewer](const auto& one) { return one.get() == viewer; });
    last = viewers_.empty();
  }
  if (last) return pipeline_.reset();
  SerialQueue::camera().asyncAfter(suitDelay, [weak = weak_from_this()] {
    if (auto source = weak.lock()) source->suitLastViewer();
  });
}

void CameraSource::deliver(const CameraFrame& frame) {
  std::lock_guard lock(mutex_);
  framesSinceRewind_++;
  seen_ = true;
  for (const auto& viewer : viewers_)
    viewer->frame(frame);
}

void CameraSource::suitLastViewer() {
  {
    std::lock_guard lock(mutex_);
    if (viewers_.empty()) return;
    const auto wanted = viewers_.back()->use();
    const auto films = [](const auto& viewer) { return viewer->isFilming(); };
    if (pipeline_ && (wanted == use_ || std::ranges::any_of(viewers_, films))) return;
    use_ = wanted;
  }
  auto elements = recipe_.launch(use_);
  if (pipeline_ && elements == elements_) return;
  elements_ = std::move(elements);
  pipeline_.reset(); // before the next one, as some cameras open only once
  patience_ = firstPatience;
  open();
}

void CameraSource::open() {
  if (elements_.empty())
    return fail({AVFoundationErrorDomain, AVErrorInvalidSetting,
                 "The camera gives no pictures that can be used."});
  const int attempt = ++attempt_;
  auto made = Pipeline::launch(elements_ +
                                   " ! appsink name=frames max-buffers=2 drop=true "
                                   "enable-last-sample=false processing-deadline=0 "
                                   "qos=false sync=" +
                                   (recipe_.paced ? "true" : "false"),
                               [weak = weak_from_this(), attempt](const Pipeline::Event& event) {
                                 SerialQueue::camera().async([weak, attempt, event] {
                                   if (auto source = weak.lock()) source->heard(attempt, event);
                                 });
                               });
  if (auto* error = std::get_if<Error>(&made)) {
    return fail(*error);
  }
  pipeline_ = std::move(std::get<std::unique_ptr<Pipeline>>(made));
  recipe_.configure(*pipeline_);

  GstAppSinkCallbacks callbacks{};
  callbacks.new_sample = arrived;
  gst_app_sink_set_callbacks(GST_APP_SINK(pipeline_->element("frames")), &callbacks,
                             new std::weak_ptr<CameraSource>(weak_from_this()), [](gpointer data) {
                               delete static_cast<std::weak_ptr<CameraSource>*>(data);
                             });
  {
    const std::lock_guard lock(mutex_);
    framesSinceRewind_ = 0;
    seen_ = false;
  }
  if (pipeline_->play()) {
    SerialQueue::camera().asyncAfter(patience_, [weak = weak_from_this(), attempt] {
      if (const auto source = weak.lock()) source->openAgainUnlessSeen(attempt);
    });
    return;
  }
  // Usually the pipeline says why, a moment later; that report then finds it gone.
  fail({AVFoundationErrorDomain, AVErrorDeviceWasDisconnected, "The camera does not start."});
}

void CameraSource::openAgainUnlessSeen(int attempt) {
  if (!pipeline_ || attempt != attempt_) return;
  {
    const std::lock_guard lock(mutex_);
    if (seen_) return;
  }
  patience_ = std::min(2 * patience_, longestPatience);
  pipeline_.reset(); // before the next one, as some cameras open only once
  open();
}

void CameraSource::heard(int attempt, const Pipeline::Event& event) {
  if (!pipeline_ || attempt != attempt_) return;
  if (event.kind == Pipeline::Event::Kind::Failed)
    fail({AVFoundationErrorDomain, AVErrorDeviceWasDisconnected, event.error.description});
  else if (recipe_.loops)
    rewind();
  else
    fail({AVFoundationErrorDomain, AVErrorDeviceWasDisconnected, "The camera has ended."});
}

void CameraSource::rewind() {
  bool gavePictures = false;
  {
    std::lock_guard lock(mutex_);
    gavePictures = std::exchange(framesSinceRewind_, 0) > 0;
  }
  // A film without a picture would be rewound for ever.
  if (!gavePictures ||
      !gst_element_seek_simple(pipeline_->native(), GST_FORMAT_TIME, GST_SEEK_FLAG_FLUSH, 0))
    fail({AVFoundationErrorDomain, AVErrorDeviceWasDisconnected, "The film cannot be repeated."});
}

void CameraSource::fail(const Error& error) {
  pipeline_.reset();
  std::vector<std::shared_ptr<CameraViewer>> viewers;
  {
    std::lock_guard lock(mutex_);
    viewers.swap(viewers_);
  }
  for (const auto& viewer : viewers)
    viewer->cameraEnded(error);
}

} // namespace zuvi
