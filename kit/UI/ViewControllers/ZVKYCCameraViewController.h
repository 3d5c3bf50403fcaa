#pragma once

#include <ZuviSDK/Foundation/Data.h>
#include <ZuviSDK/UIKit/UIActivityIndicatorView.h>
#include <ZuviSDK/UIKit/UIImageView.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include "kit/UI/ViewControllers/ZVScreen.h"

#include <functional>
#include <optional>
#include <string>

namespace zuvi {

class AVCaptureSession;
class AVCaptureStillImageOutput;
class AVCaptureVideoPreviewLayer;
class CameraKeeper;
class ZVKYCMerchant;
enum class ZVDocument;

/// The side of any document; a document with one side has a front.
enum class ZVKYCCameraType { ineFront, ineBack };

/// The document camera: photographs one side of one document. The creator sets index, list, side
/// and identity first.
class ZVKYCCameraViewController final : public ZVScreen {
public:
  static constexpr const char* name = "ZVKYCCameraViewController";
  ZVKYCCameraViewController();
  ~ZVKYCCameraViewController() override;

  std::weak_ptr<UIView> cameraView;
  std::weak_ptr<UIImageView> backgroundImageView;
  std::weak_ptr<UIView> cardView;
  std::weak_ptr<UIImageView> cardImageView;
  std::weak_ptr<UILabel> cardTitleLabel, cardLabel1, cardLabel2;
  std::weak_ptr<UIView> errorView;
  std::weak_ptr<UIImageView> errorImageView;
  std::weak_ptr<UILabel> errorTitleLabel, errorMessageLabel;
  std::weak_ptr<UIView> snapshotEffectView;
  std::weak_ptr<UIActivityIndicatorView> indicator;
  std::weak_ptr<UIView> cameraNotice; ///< shows `cameraNoticeLabel` while there is no camera
  std::weak_ptr<UILabel> cameraNoticeLabel;

  bool isRequired = true; ///< whether the index is one of the required documents
  int index = 0;
  std::optional<ZVKYCCameraType> type;
  std::optional<std::string> objectId; ///< the identity to which the pictures belong
  std::optional<Data> frontIneImage;   ///< for a back side: the picture of the front
  std::shared_ptr<const ZVKYCMerchant> merchant;
  bool isErrorShown = false;

  /// Shows or hides the panel about a failed upload.
  void showError(bool show);

  void declareNib(NibDeclaration& nib) override;
  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;
  void viewWillDisappear(bool animated) override;
  void viewDidLayoutSubviews() override;

private:
  std::string announcement() const override;
  std::optional<ZVDocument> document() const;
  bool hasBackSide() const;
  void configure();
  void refreshSubviews(bool isVideoPermissionGranted);
  void makeCamera();
  void bottomButtonAction();
  void takePhoto(std::function<void(std::optional<Data>)> completion);
  void trackPhoto() const;
  void startRequest(const Data& data);
  std::weak_ptr<ZVKYCCameraViewController> weakSelf();

  std::shared_ptr<AVCaptureSession> captureSession_;
  std::shared_ptr<AVCaptureStillImageOutput> imageOutput_;
  std::shared_ptr<AVCaptureVideoPreviewLayer> previewLayer_;
  std::unique_ptr<CameraKeeper> cameraKeeper_;
  bool cameraPermissionAccess_ = false;
};

} // namespace zuvi
