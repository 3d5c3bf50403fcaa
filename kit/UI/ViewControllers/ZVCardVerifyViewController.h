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

/// Shows the picture of a document's front, to go on with or to take again. The flow does without
/// it; whoever puts it on the flow's stack sets picture, identity, list and index first.
class ZVCardVerifyViewController final : public ZVScreen {
public:
  static constexpr const char* name = "ZVCardVerifyViewController";
  ZVCardVerifyViewController();

  bool isRequired = true; ///< whether the index counts in the required documents
  int documentIndex = 0;
  CGRect cropFrame; ///< the creator's; nothing goes by it
  Data imageData;   ///< the picture; what is none shows an empty frame
  std::string identityId;
  std::shared_ptr<const ZVKYCMerchant> merchant;

  std::weak_ptr<UIImageView> imageView;
  std::weak_ptr<UIButton> retakeButton;
  std::weak_ptr<UILabel> titleLabel;

  /// Says that the picture could not be sent, until the person sends it once more.
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
