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

/// Sends one item to the back end, the film or one document, and decides what comes next.
class ZVUploadViewController final : public ZVScreen {
public:
  static constexpr const char* name = "ZVUploadViewController";
  ZVUploadViewController();

  bool isRequired = true; ///< whether the index counts in the required documents
  int documentIndex = 0;
  std::string identityId;       ///< of a document: whose it is
  Data frontData;               ///< of a document
  std::optional<Data> backData; ///< of a document with two sides
  std::optional<Data> video;    ///< present: the item is the film
  bool isAppeared = false;      ///< a result that comes while it is false is not acted on
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
  /// Takes the film's review or the back's camera out of the stack and goes back to the capture.
  void returnToCapture(Failure failure);
  /// Acts on a result: now, or once the flow, of which this is the step on show, is in sight again;
  /// never once the person has left the step.
  void act(std::function<void()> onResult);
  std::shared_ptr<ZVUploadViewController> self();

  std::function<void()> waiting_; ///< came while the flow was out of sight
};

} // namespace zuvi
