#pragma once

#include <ZuviSDK/Foundation/Error.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace zuvi {

class AVCaptureDeviceInput;
class AVCaptureOutput;
class CameraPreview;
class CameraStream;

/// How large and how often pictures come. `High` is 1280 x 720 at 30 a second, or what the camera
/// has nearest to it. In a session that has outputs for stills alone it is the camera's largest
/// size, up to 3840 x 2160, of which at least ten pictures come a second.
enum class AVCaptureSessionPreset { High };
inline constexpr auto AVCaptureSessionPresetHigh = AVCaptureSessionPreset::High;

/// What a session's observer hears.
enum class AVCaptureSessionEvent { FirstPicture, Failed };

/// Joins a camera with outputs. Several sessions may run on one camera. Main queue only; none of
/// its calls waits for the camera.
class AVCaptureSession : public std::enable_shared_from_this<AVCaptureSession> {
public:
  AVCaptureSession() = default;
  /// Stops; a film under way is given up and its file removed.
  ~AVCaptureSession();
  AVCaptureSession(const AVCaptureSession&) = delete;
  AVCaptureSession& operator=(const AVCaptureSession&) = delete;

  AVCaptureSessionPreset sessionPreset = AVCaptureSessionPreset::High;

  /// A session takes one input, and an input or output one session: any further one changes
  /// nothing and gives false.
  bool addInput(const std::shared_ptr<AVCaptureDeviceInput>& input);
  bool addOutput(const std::shared_ptr<AVCaptureOutput>& output);
  const std::shared_ptr<AVCaptureDeviceInput>& input() const { return input_; }
  const std::vector<std::shared_ptr<AVCaptureOutput>>& outputs() const { return outputs_; }

  /// Lets go of the input, which stops the session; another may be added then.
  void removeInput();

  /// Hears on the main queue what happens to a run by itself: the camera gives its first picture,
  /// or has gone or failed, which ended the run and is told with its error.
  std::function<void(AVCaptureSessionEvent, const std::optional<Error>& error)> observer;

  /// Without an input, or while running, without effect. A camera that fails ends the run; the next
  /// start tries again. Sessions that share a camera get its pictures as the one that started last
  /// wants them, unless a film is under way.
  void startRunning();
  /// Frees the camera soon after. Stills that wait get no picture; a film under way ends as if it
  /// had been stopped.
  void stopRunning();
  bool isRunning() const;

  /// For the preview layer.
  void addPreview(const std::shared_ptr<CameraPreview>& preview);
  /// Null without an input.
  std::shared_ptr<CameraStream> stream() const;

private:
  std::shared_ptr<AVCaptureDeviceInput> input_;
  std::vector<std::shared_ptr<AVCaptureOutput>> outputs_;
  std::vector<std::weak_ptr<CameraPreview>> previews_;
};

} // namespace zuvi
