// Cameras at 30 pictures a second: processor time of preview and film against the bare pipeline of
// the same elements, and the gaps between the drawn camera's pictures, alone and while filming.

#include <ZuviSDK/AVFoundation/HostCameraProvider.h>
#include <ZuviSDK/Foundation/Make.h>
#include "bench/Measure.h"
#include "platform/AVFoundation/AVCaptureDeviceInput.h"
#include "platform/AVFoundation/AVCaptureMovieFileOutput.h"
#include "platform/AVFoundation/AVCaptureSession.h"
#include "platform/AVFoundation/AVCaptureVideoPreviewLayer.h"
#include "platform/AVFoundation/FilmEncoderGStreamer.h"
#include "platform/AVFoundation/SourceRecipesGStreamer.h"
#include "testing/AVFoundation/RecipeProvider.h"

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

std::shared_ptr<CameraProvider> drawnCamera() {
  HostCameras cameras;
  cameras.back.kind = CameraSourceDescription::Kind::Simulated;
  return make<HostCameraProvider>(cameras);
}

struct Preview {
  explicit Preview(std::shared_ptr<CameraProvider> cameras = drawnCamera()) {
    AVCaptureDevice::setProvider(std::move(cameras));
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
  auto made = Pipeline::launch(recipe.launch(CameraUse::Film) +
                                   " ! videoconvert ! video/x-raw,format=BGRA ! "
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

/// A camera that gives one picture again and again, which costs it nothing.
struct Mode {
  const char* name;
  const char* size;
};
constexpr Mode modes[] = {{"1280 x 720", "width=1280,height=720"},
                          {"1920 x 1080", "width=1920,height=1080"},
                          {"3840 x 2160", "width=3840,height=2160"}};

std::string still(const Mode& mode) {
  return std::string("videotestsrc num-buffers=1 ! video/x-raw,format=YUY2,") + mode.size +
         " ! imagefreeze is-live=true ! video/x-raw,framerate=30/1";
}

/// What is shown and filmed of larger pictures as well.
constexpr const char* smaller = " ! videoscale ! videoconvert ! video/x-raw,width=1280,height=720,";

double bare(const Mode& mode, const std::string& film) {
  auto text = still(mode) + " ! tee name=all ! queue max-size-buffers=2" + smaller +
              "format=BGRA ! fakesink sync=true";
  if (!film.empty())
    text += std::string(" all. ! queue max-size-buffers=8") + smaller + "format=I420 ! " +
            filmEncoders().front().launch + " ! qtmux ! filesink name=file async=false";
  auto made = Pipeline::launch(text, [](const Pipeline::Event&) {});
  auto& pipeline = std::get<std::unique_ptr<Pipeline>>(made);
  if (!film.empty()) g_object_set(pipeline->element("file"), "location", film.c_str(), nullptr);
  pipeline->play();
  run(0.5);
  return run(seconds);
}

double ours(const Mode& mode, const std::string& film) {
  Preview preview(make<RecipeProvider>(still(mode)));
  preview.layer->setHost(&preview.surface);
  if (!film.empty()) preview.film->startRecording(film, {});
  run(0.5);
  return run(seconds);
}

void compare(const Mode& mode, const std::string& film) {
  std::vector<double> baseline, measured;
  for (int i = 0; i < rounds; i++) {
    baseline.push_back(bare(mode, film));
    measured.push_back(ours(mode, film));
  }
  const auto figures = figuresOf(baseline);
  const std::string what = film.empty() ? ": preview" : ": preview and film";
  report((std::string(mode.name) + what + ", bare").c_str(), figures);
  report((std::string(mode.name) + what).c_str(), figuresOf(measured), &figures);
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
  for (const auto& mode : modes) {
    compare(mode, "");
    compare(mode, film);
  }
  std::filesystem::remove_all(folder);
}
