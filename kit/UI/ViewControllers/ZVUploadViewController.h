#pragma once

#include <ZuviSDK/Foundation/Data.h>
#include <ZuviSDK/UIKit/UIActivityIndicatorView.h>
#include <ZuviSDK/UIKit/UIButton.h>
#include "kit/UI/ViewControllers/ZVScreen.h"

#include <functional>
#include <optional>
#include <string>

namespace zuvi {

class ZVKYCMerchant;
enum class ZVDocument;

/// The upload: sends the film or one document to the back end, and chooses the next step.
class ZVUploadViewController final : public ZVScreen {
public:
  static constexpr const char* name = "ZVUploadViewController";
  ZVUploadViewController();

  bool isRequired = true; ///< whether the index is one of the required documents
  int documentIndex = 0;
  std::string identityId;       ///< for a document: the identity to which it belongs
  Data frontData;               ///< for a document
  std::optional<Data> backData; ///< for a document with two sides
  std::optional<Data> video;    ///< present: the film is sent, not a document
  bool isAppeared = false;      ///< while it is false, results are kept, not acted on
  std::shared_ptr<const ZVKYCMerchant> merchant;

  std::weak_ptr<UILabel> textLabel;
  std::weak_ptr<UIButton> retakeButton;
  std::weak_ptr<UIActivityIndicatorView> activityIndicator;

  void declareNib(NibDeclaration& nib) override;
  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;
  void viewDidAppear(bool animated) override;
  void viewWillDisappear(bool animated) override;

private:
  std::string announcement() const override;
  std::optional<ZVDocument> document() const;
  void identityResult(const std::optional<std::string>& id);
  void documentResult(const std::optional<std::string>& id);
  void showNext();
  void showError();
  void retakeButtonTap();
  void showCamera(int index, const std::string& identity);
  void showList(const std::string& identity);
  enum class Failure { Hide, Show };
  /// Removes the review or the back's document camera from the stack and goes back to the recorder
  /// or to the front's document camera.
  void returnToCapture(Failure failure);
  /// Acts on a result: at once, or when the flow becomes visible again with this step on top. Never
  /// after the person left the step.
  void act(std::function<void()> onResult);
  std::shared_ptr<ZVUploadViewController> self();

  std::function<void()> waiting_; ///< a result that came while the flow was hidden
};

} // namespace zuvi
