#pragma once

#include <ZuviSDK/QuartzCore/CALayer.h>

namespace zuvi {

class AVCaptureConnection;
class AVCaptureSession;
class PreviewFeed;

enum class AVLayerVideoGravity { ResizeAspect, ResizeAspectFill, Resize };
inline constexpr auto AVLayerVideoGravityResizeAspectFill = AVLayerVideoGravity::ResizeAspectFill;

/// Shows the newest picture of a session's camera; keeps the last one when the session stops. Takes
/// no pictures while no surface shows it. Does not keep the session alive.
class AVCaptureVideoPreviewLayer : public CALayer {
public:
  explicit AVCaptureVideoPreviewLayer(const std::shared_ptr<AVCaptureSession>& session);
  ~AVCaptureVideoPreviewLayer() override;
  void didMake();

  std::shared_ptr<AVCaptureSession> session() const { return session_.lock(); }
  AVLayerVideoGravity videoGravity() const { return videoGravity_; }
  void setVideoGravity(AVLayerVideoGravity gravity);

  /// Says whether the preview is a mirror; never null. Changes hold from the next picture on.
  const std::shared_ptr<AVCaptureConnection>& connection() const { return connection_; }

  /// @cond
  /// The session's newest picture.
  void show(std::shared_ptr<const CGImage> picture);
  /// @endcond

private:
  std::weak_ptr<AVCaptureSession> session_;
  std::shared_ptr<PreviewFeed> feed_;
  const std::shared_ptr<AVCaptureConnection> connection_;
  AVLayerVideoGravity videoGravity_ = AVLayerVideoGravity::ResizeAspect;
};

} // namespace zuvi
