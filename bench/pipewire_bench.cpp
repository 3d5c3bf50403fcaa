// A camera of the media server: processor time of the preview against the bare pipeline, and the
// longest time without a frame while a camera screen is pushed, the first time and again. Films are
// compared by camera_bench.

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "bench/Measure.h"
#include "kit/Helper/ZVExtensions.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/ZVKYCCameraViewController.h"
#include "kit/UI/ViewControllers/ZVLiveCameraViewController.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "platform/AVFoundation/AVCaptureDeviceInput.h"
#include "platform/AVFoundation/AVCaptureMovieFileOutput.h"
#include "platform/AVFoundation/AVCaptureSession.h"
#include "platform/AVFoundation/AVCaptureVideoPreviewLayer.h"
#include "platform/AVFoundation/PipelineGStreamer.h"
#include "platform/UIKit/OffscreenSurface.h"
#include "testing/mediaserver/MediaServer.h"

#include <cmath>
#include <functional>

using namespace zuvi;
using namespace zuvi::bench;

namespace {

constexpr int rounds = 5;
constexpr double seconds = 3;
constexpr double frame = 1.0 / 60;

void turnMainQueue(double duration) {
  const double end = wallSeconds() + duration;
  for (double left = duration; left > 0; left = end - wallSeconds()) {
    DispatchQueue::main().runDue();
    DispatchQueue::main().waitForWork(left);
  }
}

/// Processor seconds of one second.
double cost() {
  turnMainQueue(0.5);
  const double before = processorSeconds();
  turnMainQueue(seconds);
  return (processorSeconds() - before) / seconds;
}

/// A camera that has just come: one that was let go of may give nothing to the next program.
struct FreshCamera {
  FreshCamera() {
    while (AVCaptureDevice::devices().empty())
      turnMainQueue(0.05);
  }
  ~FreshCamera() {
    camera.unplug();
    while (!AVCaptureDevice::devices().empty())
      turnMainQueue(0.05);
  }
  test::VirtualCamera camera{"Webcam", {}};
};

double bare() {
  const FreshCamera camera;
  auto made = Pipeline::launch("pipewiresrc target-object=Webcam ! videoconvert ! "
                               "video/x-raw,format=BGRA ! fakesink sync=false",
                               [](const Pipeline::Event&) {});
  std::get<std::unique_ptr<Pipeline>>(made)->play();
  return cost();
}

struct Surface : LayerHost {
  void setNeedsFrame() override {}
  void addDamage(const CGRect&) override {}
};

double ours() {
  const FreshCamera camera;
  const auto session = make<AVCaptureSession>();
  session->addInput(AVCaptureDeviceInput::withDevice(AVCaptureDevice::devices().at(0)));
  session->addOutput(make<AVCaptureMovieFileOutput>()); // so the camera is taken as for a film
  Surface surface;
  const auto layer = make<AVCaptureVideoPreviewLayer>(session);
  layer->setHost(&surface);
  session->startRunning();
  const double used = cost();
  layer->setHost(nullptr);
  return used;
}

/// Does something and then draws for that long whenever a display would show a frame; the longest
/// time from one frame to the next.
double longestGap(OffscreenSurface& surface, double duration, const std::function<void()>& first) {
  const double start = wallSeconds();
  double longest = 0, last = start;
  first();
  while (last < start + duration) {
    const double due = start + (std::floor((wallSeconds() - start) / frame) + 1) * frame;
    turnMainQueue(due - wallSeconds());
    surface.drawFrame();
    const double now = wallSeconds();
    longest = std::max(longest, now - last);
    last = now;
  }
  return longest;
}

void push(const char* name, OffscreenSurface& surface, std::shared_ptr<UIViewController> screen) {
  const auto& stack = ZVKYCHelper::instance().rootVC->mainNC();
  const double rest = longestGap(surface, 1, [] {});
  const double gap =
      longestGap(surface, 2, [&] { stack->pushViewController(std::move(screen), true); });
  std::printf("%-44s longest %5.1f ms (%.2f frames); before %5.1f ms\n", name, gap * 1e3,
              gap / frame, rest * 1e3);
  longestGap(surface, 1, [&] { stack->popViewController(true); });
}

std::shared_ptr<UIViewController> documentScreen() {
  auto screen = make<ZVKYCCameraViewController>();
  screen->type = ZVKYCCameraType::ineFront;
  screen->objectId = "1";
  return screen;
}

} // namespace

int main() {
  test::MediaServer::instance();
  registerZVFonts();
  {
    const test::VirtualCamera camera("Webcam", {});
    OffscreenSurface surface({375, 812}, 2);
    const auto shell = make<ZVRootViewController>();
    ZVKYCHelper::instance().rootVC = shell;
    const auto window = make<UIWindow>();
    window->setRootViewController(shell);
    window->makeKeyAndVisible();
    push("push of the recorder, the first time", surface, make<ZVLiveCameraViewController>());
    push("push of the recorder, again", surface, make<ZVLiveCameraViewController>());
    push("push of the document camera, the first time", surface, documentScreen());
    push("push of the document camera, again", surface, documentScreen());
    window->setVisible(false);
    shell->mainNC()->setViewControllers({}, false);
  }
  while (!AVCaptureDevice::devices().empty())
    turnMainQueue(0.05);
  std::vector<double> baseline, measured;
  for (int i = 0; i < rounds; i++) {
    baseline.push_back(bare());
    measured.push_back(ours());
  }
  const auto figures = figuresOf(baseline);
  report("preview, bare", figures);
  report("preview", figuresOf(measured), &figures);
}
