#pragma once

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include "platform/AVFoundation/CameraStream.h"
#include "platform/AVFoundation/PipelineGStreamer.h"

#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace zuvi {

/// How the pictures of one camera are got.
struct SourceRecipe {
  /// Equal for equal cameras: sessions on one camera share its pipeline.
  std::string key;
  /// The elements that give raw pictures; none when the camera has no pictures that can be used.
  /// Asked on the camera queue: it may look at the device.
  std::function<std::string(CameraUse)> launch;
  /// Sets what the text does not carry, such as paths.
  std::function<void(const Pipeline&)> configure = [](const Pipeline&) {};
  /// Pictures come as fast as they are taken and are to be spaced by their times.
  bool paced = false;
  /// Begins again at its end.
  bool loops = false;
};

/// How a session gets at its camera, asked at each start.
struct CameraOpening {
  /// The camera opens once this says so, and not at all if it is refused.
  std::function<AVAuthorizationStatus()> permission = [] {
    return AVAuthorizationStatus::Authorized;
  };
  /// Asked on the camera queue; absent when the camera is gone.
  std::function<std::optional<SourceRecipe>()> recipe;
};

/// Somebody who looks through a camera.
class CameraViewer {
public:
  virtual ~CameraViewer() = default;
  virtual CameraUse use() const = 0;
  virtual bool isFilming() const = 0;
  /// On the camera's thread, which must not be held up.
  virtual void frame(const CameraFrame& frame) = 0;
  /// The camera stopped by itself, and has let this viewer go. On the camera queue.
  virtual void cameraEnded(const Error& error) = 0;
};

/// An open camera: one pipeline, however many look through it. It runs from the first `attach` to
/// the last `detach` or its failure. Camera queue only.
///
/// It gives pictures in the form that suits the viewer who came last. Where that differs from the
/// one before, the camera is opened anew, but not while somebody films.
///
/// Previews and films hang on it as pipelines of their own: a film whose disk is full, or a preview
/// that is not looked at, cannot hold up or end the camera.
class CameraSource : public std::enable_shared_from_this<CameraSource> {
public:
  /// The source of that camera; an open one is shared.
  static std::shared_ptr<CameraSource> forRecipe(const SourceRecipe& recipe);
  /// Ends the camera of that key, if it is open, as if it had failed.
  static void endFor(const std::string& key, const Error& error);

  explicit CameraSource(SourceRecipe recipe);
  ~CameraSource();
  CameraSource(const CameraSource&) = delete;
  CameraSource& operator=(const CameraSource&) = delete;

  void attach(const std::shared_ptr<CameraViewer>& viewer);
  /// No picture reaches the viewer after this call.
  void detach(const CameraViewer* viewer);

  /// For the pipeline's thread.
  void deliver(const CameraFrame& frame);

private:
  static void closeAll();
  void open();
  void openAgainUnlessSeen(int attempt);
  void suitLastViewer();
  void heard(int attempt, const Pipeline::Event& event);
  void rewind();
  void fail(const Error& error);

  const SourceRecipe recipe_;
  std::unique_ptr<Pipeline> pipeline_;
  int attempt_ = 0;                 ///< counts the pipelines: one that was replaced may report late
  CameraUse use_ = CameraUse::Film; ///< that the pipeline was made for
  std::string elements_;            ///< that it was made of
  double patience_ = 0;             ///< seconds that the open pipeline has for its first picture
  std::mutex mutex_;                // guards what follows against the pipeline's thread
  std::vector<std::shared_ptr<CameraViewer>> viewers_;
  int framesSinceRewind_ = 0;
  bool seen_ = false; ///< the open pipeline has given a picture
};

} // namespace zuvi
