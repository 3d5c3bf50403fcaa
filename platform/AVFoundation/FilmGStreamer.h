#pragma once

#include "platform/AVFoundation/CameraStream.h"
#include "platform/AVFoundation/FilmEncoderGStreamer.h"
#include "platform/AVFoundation/FilmFile.h"
#include "platform/AVFoundation/PipelineGStreamer.h"

#include <deque>
#include <mutex>
#include <vector>

namespace zuvi {

/// A QuickTime file in the making. It has a pipeline of its own, so a full disk ends the film and
/// nothing else. An encoder that fails is followed by the next one, which gets the pictures that
/// the first one still had; the earliest of them stands for those that are lost. Any thread.
class FilmGStreamer final : public CameraFilm, public std::enable_shared_from_this<FilmGStreamer> {
public:
  /// `encoders` in the order in which they are tried; none: those of this machine.
  FilmGStreamer(std::shared_ptr<FilmFile> file, CameraStream::FilmHandler ended,
                std::vector<FilmEncoder> encoders = {});

  void begin();
  /// Adds a picture, whose pixels must be its own; never waits. False when the film takes no more.
  bool frame(const CameraFrame& frame);
  void stop() override { finishInput(std::nullopt); }
  void discard() override;
  /// Completes what was filmed and reports `error` beside it.
  void stopBecause(Error error) { finishInput(std::move(error)); }

private:
  static void discardAll();
  void build();
  void launch();
  void heard(int attempt, const Pipeline::Event& event);
  void useNextEncoder(const Error& error);
  void finishInput(std::optional<Error> because);
  void close();
  void waitForEnd(std::uint64_t seen);
  void end(std::optional<Error> error, bool keepFile);
  void push(GstClockTime duration);
  void feed(const GstMini<GstSample>& picture);
  void watchCoded();
  void coded(GstClockTime place);

  const std::shared_ptr<FilmFile> file_;
  const GstClockTime asked_;

  // Film queue only
  CameraStream::FilmHandler ended_;   // empty once the film has ended
  std::vector<FilmEncoder> encoders_; // the first one is at work
  int attempt_ = 0;

  std::mutex mutex_; // guards what follows
  std::unique_ptr<Pipeline> pipeline_;
  GstMini<GstCaps> input_; // what the encoder is given; null before the pipeline's first picture
  bool stopped_ = false;
  bool inputEnded_ = false;
  std::optional<Error> because_;
  std::optional<GstClockTime> origin_; // the film's zero
  std::optional<GstClockTime> stopTime_;
  // A picture waits here until the next one, or the end, tells how long it shows.
  std::optional<CameraFrame> held_;
  GstClockTime heldPlace_ = 0;
  std::deque<GstMini<GstSample>> uncoded_; // given to the encoder and not seen behind it
  std::uint64_t coded_ = 0;
};

} // namespace zuvi
