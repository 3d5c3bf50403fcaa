#pragma once

#include <ZuviSDK/AVFoundation/HostCameraProvider.h>
#include <ZuviSDK/Foundation/Make.h>
#include "platform/AVFoundation/AVCaptureDeviceInput.h"
#include "platform/AVFoundation/AVCaptureMovieFileOutput.h"
#include "platform/AVFoundation/AVCaptureSession.h"
#include "platform/AVFoundation/AVCaptureStillImageOutput.h"
#include "platform/AVFoundation/AVCaptureVideoPreviewLayer.h"
#include "testing/Dispatch/VirtualTime.h"
#include "testing/support/TemporaryFolder.h"

#include <chrono>
#include <mutex>
#include <vector>

#include <gtest/gtest.h>

namespace zuvi {

/// Keeps what a film's end told.
class FilmListener : public AVCaptureFileOutputRecordingDelegate {
public:
  struct End {
    std::string path;
    std::optional<Error> error;
    bool onMain;
  };
  void fileOutputDidFinishRecording(const std::string& path, std::optional<Error> error) override {
    std::lock_guard lock(mutex_);
    ends_.push_back({path, std::move(error), DispatchQueue::main().isCurrent()});
  }
  std::vector<End> ends() const {
    std::lock_guard lock(mutex_);
    return ends_;
  }

private:
  mutable std::mutex mutex_;
  std::vector<End> ends_;
};

/// A still that was asked for; safe to read once `done`.
struct AskedStill {
  std::atomic<int> answers = 0;
  std::optional<Data> jpeg;
  std::optional<Error> error;
  bool onMain = false;
  bool done() const { return answers > 0; }
};

/// A surface that shows one layer.
struct Surface : LayerHost {
  explicit Surface(std::shared_ptr<CALayer> root) : layer(std::move(root)) { layer->setHost(this); }
  ~Surface() override { layer->setHost(nullptr); }
  void setNeedsFrame() override {}
  void addDamage(const CGRect&) override {}
  std::shared_ptr<CALayer> layer;
};

/// A session with all outputs, or for stills alone, as that of a document.
struct Rig {
  explicit Rig(const std::shared_ptr<AVCaptureDevice>& device, bool films = true) {
    input = AVCaptureDeviceInput::withDevice(device);
    session->addInput(input);
    session->addOutput(stills);
    if (films) session->addOutput(film);
  }

  std::shared_ptr<AskedStill> askStill() const {
    auto asked = std::make_shared<AskedStill>();
    stills->captureStillImageAsynchronously(
        stills->connections().at(0),
        [asked](const std::optional<CMSampleBuffer>& buffer, std::optional<Error> error) {
          asked->jpeg = AVCaptureStillImageOutput::jpegStillImageNSDataRepresentation(buffer);
          asked->error = std::move(error);
          asked->onMain = DispatchQueue::main().isCurrent();
          asked->answers++;
        });
    return asked;
  }

  std::shared_ptr<AVCaptureDeviceInput> input;
  std::shared_ptr<AVCaptureSession> session = make<AVCaptureSession>();
  std::shared_ptr<AVCaptureStillImageOutput> stills = make<AVCaptureStillImageOutput>();
  std::shared_ptr<AVCaptureMovieFileOutput> film = make<AVCaptureMovieFileOutput>();
};

class CameraTest : public ::testing::Test {
protected:
  ~CameraTest() override { AVCaptureDevice::setProvider(nullptr); }

  static void useHost(const HostCameras& cameras) {
    AVCaptureDevice::setProvider(make<HostCameraProvider>(cameras));
  }
  static HostCameras simulated() {
    HostCameras cameras;
    cameras.front.kind = cameras.back.kind = CameraSourceDescription::Kind::Simulated;
    return cameras;
  }
  /// What is parsed from `text` as the back camera.
  static HostCameras backFrom(const std::string& text) {
    HostCameras cameras;
    std::string problem;
    cameras.back = parseCameraSource(text, problem).value();
    return cameras;
  }
  static std::shared_ptr<AVCaptureDevice> device(AVCaptureDevicePosition position) {
    for (const auto& one : AVCaptureDevice::devices())
      if (one->position() == position) return one;
    return nullptr;
  }
  static std::shared_ptr<AVCaptureDevice> back() { return device(AVCaptureDevicePosition::Back); }

  /// Lets the camera run for that long; films have no other clock.
  void film(double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    time.waitUntil([end] { return std::chrono::steady_clock::now() >= end; }, seconds + 1);
  }
  /// A film of that length, complete; false when no end was told.
  bool shoot(const Rig& rig, const std::string& path, double seconds,
             const std::shared_ptr<FilmListener>& listener) {
    const auto before = listener->ends().size();
    rig.film->startRecording(path, listener);
    film(seconds);
    rig.film->stopRecording();
    return time.waitUntil([&] { return listener->ends().size() > before; });
  }
  /// Waits for the next picture of a running session.
  std::shared_ptr<AskedStill> take(const Rig& rig) {
    auto asked = rig.askStill();
    EXPECT_TRUE(time.waitUntil([&] { return asked->done(); }));
    return asked;
  }
  bool warm(const Rig& rig) { return take(rig)->jpeg.has_value(); }
  /// Starts the back camera and waits for its first picture.
  std::unique_ptr<Rig> running() {
    auto rig = std::make_unique<Rig>(back());
    rig->session->startRunning();
    EXPECT_TRUE(warm(*rig));
    return rig;
  }

  VirtualTime time;
  test::TemporaryFolder folder;
};

} // namespace zuvi
