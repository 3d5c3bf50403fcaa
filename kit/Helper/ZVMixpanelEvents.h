#pragma once

namespace zuvi {

/// The user actions that are reported, with their names at the tracking service.
struct MixpanelEvent {
  static constexpr const char* zuviButtonClicked = "zuvi_mobilesdk_button_initscreen_clicked";
  static constexpr const char* livenessRecordClicked = "zuvi_liveness_record_clicked";
  static constexpr const char* livenessUploadConfirmClicked =
      "zuvi_liveness_upload_confirm_clicked";
  static constexpr const char* livenessUploadCancelRetake = "zuvi_liveness_upload_cancel_retake";
  static constexpr const char* nationalIdFrontTakePhotoClicked =
      "zuvi_nationalid_front_takephoto_clicked";
  static constexpr const char* nationalIdBackTakePhotoClicked =
      "zuvi_nationalid_back_takephoto_clicked";
  static constexpr const char* passportTakePhotoClicked = "zuvi_passport_takephoto_clicked";
  static constexpr const char* driverLicenseFrontTakePhotoClicked =
      "zuvi_driverlicense_front_takephoto_clicked";
  static constexpr const char* driverLicenseBackTakePhotoClicked =
      "zuvi_driverlicense_back_takephoto_clicked";
  static constexpr const char* proofOfResidencyTakePhotoClicked =
      "zuvi_proofofresidency_takephoto_clicked";
  static constexpr const char* finishButtonClicked = "zuvi_finish_button_clicked";
  static constexpr const char* zuviCancelButtonClicked = "zuvi_cancel_button_clicked";
  static constexpr const char* zuviCancelConfirmClicked = "zuvi_cancel_confirm";
  static constexpr const char* zuviCancelCancelClicked = "zuvi_cancel_canceled";
};

} // namespace zuvi
