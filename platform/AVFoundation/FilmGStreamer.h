#pragma once

#include "platform/AVFoundation/CameraStream.h"
#include "platform/AVFoundation/FilmEncoderGStreamer.h"
#include "platform/AVFoundation/PipelineGStreamer.h"

#include <mutex>

namespace zuvi {

/// A QuickTime file in the making. It has a pipeline of its own, so a full disk ends the film and
/// nothing else. Any thread.
class FilmGStreamer final : public CameraFilm, public std::enable_shared_from_this<FilmGStreamer> {
public:
  /// `encoder` null: the best one of this machine.
  FilmGStreamer(std::string path, std::optional<double> maxDuration,
                CameraStream::FilmHandler ended, const FilmEncoder* encoder = nullptr);

  void begin();
  /// Adds a picture; never waits. False when the film takes no more.
  bool frame(const CameraFrame& frame);
  void stop() override { finishInput(std::nullopt); }
  void discard() override;
  /// Completes what was filmed and reports `error` beside it.
  void stopBecause(Error error) { finishInput(std::move(error)); }

private:
  static void discardAll();
  void build();
  void finishInput(std::optional<Error> because);
  void close();
  void end(std::optional<Error> error, bool keepFile);
  void setFormat(GstCaps* caps);
  void push(GstClockTime duration);

  const std::string path_;
  const std::optional<double> maxDuration_;
  const GstClockTime asked_;

  // Film queue only
  CameraStream::FilmHandler ended_; // empty once the film has ended
  bool fileMade_ = false;

  std::mutex mutex_; // guards what follows
  const FilmEncoder* encoder_;
  std::unique_ptr<Pipeline> pipeline_;
  bool stopped_ = false;
  std::optional<Error> because_;
  std::optional<GstClockTime> firstSeen_; // when the first picture came, taken or not
  std::optional<GstClockTime> origin_;    // the film's zero
  std::optional<GstClockTime> stopTime_;
  // A picture waits here until the next one, or the end, tells how long it shows.
  std::optional<CameraFrame> held_;
  GstClockTime heldPlace_ = 0;
};

} // namespace zuvi
