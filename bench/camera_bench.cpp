// The preview of the simulated camera, 1280 x 720 at 30 a second: its processor time against the
// bare pipeline of the same elements, and the gaps between its pictures, alone and while filming.

#include "bench/Measure.h"
#include "platform/AVFoundation/AVCaptureDeviceInput.h"
#include "platform/AVFoundation/AVCaptureMovieFileOutput.h"
#include "platform/AVFoundation/AVCaptureSession.h"
#include "platform/AVFoundation/AVCaptureVideoPreviewLayer.h"
#include "platform/AVFoundation/FilmEncoderGStreamer.h"
#include "platform/AVFoundation/HostCameraProvider.h"
#include "platform/AVFoundation/SourceRecipesGStreamer.h"
#include "platform/Foundation/Make.h"

#include <filesystem>
#include <string>
#include <unistd.h>

using namespace zuvi;
using namespace zuvi::bench;

namespace {

constexpr int rounds = 5;
constexpr double seconds = 3;
constexpr double interval = 1.0 / 30;

/// Drives the main queue for that long; gives the processor seconds of one second.
double run(double duration) {
  const double end = wallSeconds() + duration, before = processorSeconds();
  for (double left = duration; left > 0; left = end - wallSeconds()) {
    DispatchQueue::main().runDue();
    DispatchQueue::main().waitForWork(left);
  }
  return (processorSeconds() - before) / duration;
}

/// Notes when pictures reach the layer.
struct Surface : LayerHost {
  void setNeedsFrame() override { times.push_back(wallSeconds()); }
  void addDamage(const CGRect&) override {}
  std::vector<double> times;
};

struct Preview {
  Preview() {
    HostCameras cameras;
    cameras.back.kind = CameraSourceDescription::Kind::Simulated;
    AVCaptureDevice::setProvider(make<HostCameraProvider>(cameras));
    session->addInput(AVCaptureDeviceInput::withDevice(AVCaptureDevice::devices().at(0)));
    session->addOutput(film);
    layer = make<AVCaptureVideoPreviewLayer>(session);
    session->startRunning();
  }
  ~Preview() { layer->setHost(nullptr); }

  std::shared_ptr<AVCaptureSession> session = make<AVCaptureSession>();
  std::shared_ptr<AVCaptureMovieFileOutput> film = make<AVCaptureMovieFileOutput>();
  std::shared_ptr<AVCaptureVideoPreviewLayer> layer;
  Surface surface;
};

double bare() {
  const auto recipe = simulatedRecipe(AVCaptureDevicePosition::Back);
  auto made = Pipeline::launch(recipe.launch(CameraUse::Film) + " ! videoconvert ! video/x-raw,format=BGRA ! "
                                                 "fakesink sync=true",
                               [](const Pipeline::Event&) {});
  auto& pipeline = std::get<std::unique_ptr<Pipeline>>(made);
  recipe.configure(*pipeline);
  pipeline->play();
  run(0.5);
  return run(seconds);
}

double preview(bool shown) {
  Preview preview;
  if (shown) preview.layer->setHost(&preview.surface);
  run(0.5);
  return run(seconds);
}

void gaps(const char* name, const std::vector<double>& times) {
  double largest = 0;
  int late = 0;
  for (std::size_t i = 1; i < times.size(); i++) {
    const double gap = times[i] - times[i - 1];
    largest = std::max(largest, gap);
    late += gap > 2 * interval;
  }
  std::printf("%-44s %4zu pictures  largest gap %.1f ms (%.2f intervals)  more than one late %d\n",
              name, times.size(), largest * 1e3, largest / interval, late);
}

} // namespace

int main() {
  // In turns, so that a busy machine weighs on all alike.
  std::vector<double> baseline, shown, unseen, filming;
  std::vector<double> gapsAlone, gapsFilming;
  const auto folder =
      std::filesystem::temp_directory_path() / ("zuvi-camera-bench-" + std::to_string(::getpid()));
  std::filesystem::create_directory(folder);
  for (int i = 0; i < rounds; i++) {
    baseline.push_back(bare());
    shown.push_back(preview(true));
    unseen.push_back(preview(false));
  }
  const auto figures = figuresOf(baseline);
  report("bare pipeline, one second", figures);
  report("preview, one second", figuresOf(shown), &figures);
  report("preview of a layer that nobody sees", figuresOf(unseen), &figures);

  Preview preview;
  preview.layer->setHost(&preview.surface);
  run(1);
  preview.surface.times.clear();
  run(7);
  gaps("preview alone", preview.surface.times);
  for (int i = 0; i < 3; i++) {
    preview.surface.times.clear();
    preview.film->startRecording(folder / "film.mov", {});
    filming.push_back(run(7));
    preview.film->stopRecording();
    run(0.5);
    gaps("preview while a film starts, runs and ends", preview.surface.times);
  }
  const auto film = folder / "film.mov";
  std::printf("%s: %.1f MB for 7 s\n",
              filmEncoders().empty() ? "no encoder" : filmEncoders().front().element,
              double(std::filesystem::file_size(film)) / 1e6);
  report("preview and film, one second", figuresOf(filming), &figures);
  std::filesystem::remove_all(folder);
}
