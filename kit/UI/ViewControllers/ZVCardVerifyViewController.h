#pragma once

#include <ZuviSDK/Foundation/Data.h>
#include <ZuviSDK/UIKit/UIButton.h>
#include <ZuviSDK/UIKit/UIImageView.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include "kit/UI/ViewControllers/ZVScreen.h"

#include <string>

namespace zuvi {

class ZVKYCMerchant;
enum class ZVDocument;

/// The card review: shows the picture of a document's front, to be accepted or taken again. The
/// flow does not use it. Set picture, identity, list and index before it goes on the flow's stack.
class ZVCardVerifyViewController final : public ZVScreen {
public:
  static constexpr const char* name = "ZVCardVerifyViewController";
  ZVCardVerifyViewController();

  bool isRequired = true; ///< whether the index is one of the required documents
  int documentIndex = 0;
  CGRect cropFrame; ///< set by the creator; not used
  Data imageData;   ///< the picture; other bytes leave the image view empty
  std::string identityId;
  std::shared_ptr<const ZVKYCMerchant> merchant;

  std::weak_ptr<UIImageView> imageView;
  std::weak_ptr<UIButton> retakeButton;
  std::weak_ptr<UILabel> titleLabel;

  /// Shows that the picture could not be sent, until the person sends it again.
  void showError();

  void declareNib(NibDeclaration& nib) override;
  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;
  void viewDidLayoutSubviews() override;

private:
  std::string announcement() const override;
  void setPrompt(const char* key);
  void goOn(ZVDocument document);
  void retakeButtonTap();
};

} // namespace zuvi
