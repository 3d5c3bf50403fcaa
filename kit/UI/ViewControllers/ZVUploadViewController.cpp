#include "kit/UI/ViewControllers/ZVUploadViewController.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include "kit/Helper/ZVDocument+Presentation.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/Manager/ZVKYCManager.h"
#include "kit/UI/ViewControllers/DocumentStep.h"
#include "kit/UI/ViewControllers/ZVCardVerifyViewController.h"
#include "kit/UI/ViewControllers/ZVDocumentListViewController.h"
#include "kit/UI/ViewControllers/ZVKYCCameraViewController.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "kit/UI/ViewControllers/ZVVerifiedViewController.h"

#include <utility>

namespace zuvi {

ZVUploadViewController::ZVUploadViewController()
    : ZVScreen(name), merchant(ZVKYCHelper::instance().merchant) {}

std::shared_ptr<ZVUploadViewController> ZVUploadViewController::self() {
  return std::static_pointer_cast<ZVUploadViewController>(shared_from_this());
}

std::optional<ZVDocument> ZVUploadViewController::document() const {
  return merchant->document(isRequired, documentIndex);
}

void ZVUploadViewController::declareNib(NibDeclaration& nib) {
  nib.outlet("textLabel", textLabel);
  nib.outlet("retakeButton", retakeButton);
  nib.outlet("activityIndicator", activityIndicator);
  nib.action("retakeButtonTap", [this] { retakeButtonTap(); });
}

void ZVUploadViewController::viewDidLoad() {
  ZVScreen::viewDidLoad();
  if (const auto label = textLabel.lock()) label->setText(localized("uploadText"));
  if (const auto button = retakeButton.lock()) button->setTitle(localized("retake"));
  if (const auto spinner = activityIndicator.lock()) spinner->setColor(merchant->color);

  // The request holds the screen until the answer. The screen drops it if the person has left.
  if (video) {
    ZVKYCManager::shared().createNewIdentity(*video, [self = self()](const auto& id, const auto&) {
      self->act([screen = self.get(), id] { screen->identityResult(id); });
    });
  } else if (const auto kind = document()) {
    ZVKYCManager::shared().submitDocument(
        identityId, rawValue(*kind), frontData, [self = self()](const auto& id, const auto&) {
          self->act([screen = self.get(), id] { screen->documentResult(id); });
        });
  } else { // the merchant no longer asks for the document
    DispatchQueue::main().async(
        [self = self()] { self->act([screen = self.get()] { screen->showNext(); }); });
  }
}

void ZVUploadViewController::viewWillAppear(bool animated) {
  ZVScreen::viewWillAppear(animated);
  ZVRootViewController& shell = ZVScreen::shell();
  shell.showBackButton = true;
  shell.titleText = video ? localized("livenessTitle") : documentTitle(document());
  shell.desc = std::nullopt;
  shell.currentPage = -1;
  shell.bottomButtonTitle = std::nullopt;
  shell.showLiveView = false;
  isAppeared = true;
}

void ZVUploadViewController::viewDidAppear(bool animated) {
  ZVScreen::viewDidAppear(animated);
  if (const auto result = std::exchange(waiting_, nullptr)) result();
}

void ZVUploadViewController::viewWillDisappear(bool animated) {
  ZVScreen::viewWillDisappear(animated);
  isAppeared = false;
}

std::string ZVUploadViewController::announcement() const {
  return localized("uploadText");
}

// Results

void ZVUploadViewController::act(std::function<void()> onResult) {
  if (isAppeared) return onResult();
  waiting_ = std::move(onResult); // dropped with the screen if the person has left it
}

void ZVUploadViewController::identityResult(const std::optional<std::string>& id) {
  if (!id) { // the recorder itself shows no error
    UIAccessibility::post(UIAccessibility::Notification::Announcement, localized("filmRefused"));
    return returnToCapture(Failure::Hide);
  }
  ZVKYCHelper::instance().tempIdentity = *id;
  if (!merchant->requiredDocuments.empty())
    showCamera(0, *id);
  else if (!merchant->optionalDocuments.empty())
    showList(*id);
  else
    show(make<ZVVerifiedViewController>());
}

void ZVUploadViewController::documentResult(const std::optional<std::string>& id) {
  if (!id) return showError();
  const auto kind = document();
  if (!backData || !kind) return showNext();
  ZVKYCManager::shared().uploadNewPhoto(*id, rawValue(*kind), *backData,
                                        [self = self()](const auto& results, const auto&) {
                                          self->act([screen = self.get(), stored = !!results] {
                                            stored ? screen->showNext() : screen->showError();
                                          });
                                        });
}

// What comes next

void ZVUploadViewController::showNext() {
  const int next = documentIndex + 1;
  if (isRequired && static_cast<int>(merchant->requiredDocuments.size()) > next)
    showCamera(next, identityId);
  else if (isRequired && !merchant->optionalDocuments.empty())
    showList(identityId);
  else
    show(make<ZVVerifiedViewController>());
}

void ZVUploadViewController::showCamera(int index, const std::string& identity) {
  show(frontCamera({isRequired, index, identity}));
}

void ZVUploadViewController::showList(const std::string& identity) {
  const auto list = make<ZVDocumentListViewController>();
  list->identityId = identity;
  // The list takes the merchant of now, who may ask for none: without a row it leads nowhere.
  if (list->merchant->optionalDocuments.empty())
    show(make<ZVVerifiedViewController>());
  else
    show(list);
}

// The way back

void ZVUploadViewController::showError() {
  returnToCapture(Failure::Show);
}

void ZVUploadViewController::retakeButtonTap() {
  returnToCapture(Failure::Hide);
}

void ZVUploadViewController::returnToCapture(Failure failure) {
  UINavigationController* navigation = navigationController();
  if (!navigation) return;
  auto stack = navigation->viewControllers();
  if ((video || backData) && stack.size() >= 2) stack.erase(stack.end() - 2);
  if (failure == Failure::Show && stack.size() >= 2) {
    const auto& below = stack[stack.size() - 2];
    if (const auto camera = std::dynamic_pointer_cast<ZVKYCCameraViewController>(below))
      camera->showError(true);
    else if (const auto review = std::dynamic_pointer_cast<ZVCardVerifyViewController>(below))
      review->showError();
  }
  navigation->setViewControllers(stack, false);
  navigation->popViewController(true);
}

} // namespace zuvi
