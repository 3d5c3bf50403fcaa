#include "kit/UI/ViewControllers/ZVDocumentListViewController.h"

#include "kit/Helper/ZVLocalization.h"
#include "kit/Helper/ZVNibs.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/DocumentStep.h"
#include "kit/UI/ViewControllers/ZVKYCCameraViewController.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "platform/CoreText/TextLayout.h"

#include <algorithm>
#include <utility>

namespace zuvi {

ZVDocumentListViewController::ZVDocumentListViewController()
    : ZVScreen(name), merchant(ZVKYCHelper::instance().merchant) {}

std::shared_ptr<ZVDocumentListViewController> ZVDocumentListViewController::self() {
  return std::static_pointer_cast<ZVDocumentListViewController>(shared_from_this());
}

void ZVDocumentListViewController::declareNib(NibDeclaration& nib) {
  nib.outlet("tableView", tableView);
}

void ZVDocumentListViewController::viewDidLoad() {
  ZVScreen::viewDidLoad();
  const auto table = tableView.lock();
  if (!table) return;
  // A row's button must show its highlight at once.
  table->setDelaysContentTouches(false);
  for (const auto& subview : table->subviews())
    if (const auto scroller = std::dynamic_pointer_cast<UIScrollView>(subview))
      scroller->setDelaysContentTouches(false);
  table->registerNib(UINib(ZVDocumentTableViewCell::name, zvNibBundle()),
                     ZVDocumentTableViewCell::id);
  table->dataSource = self();
  table->delegate = self();
}

void ZVDocumentListViewController::viewWillAppear(bool animated) {
  ZVScreen::viewWillAppear(animated);
  if (const auto table = tableView.lock()) {
    table->reloadData();
    table->accessibilityLabel = localized("documentsTitle");
  }

  ZVRootViewController& shell = ZVScreen::shell();
  shell.showBackButton = true;
  shell.titleText = localized("documentsTitle");
  shell.desc = std::nullopt;
  shell.bottomButtonTitle = std::nullopt;
  shell.currentPage = 2;
}

void ZVDocumentListViewController::viewWillLayoutSubviews() {
  ZVScreen::viewWillLayoutSubviews();
  const auto table = tableView.lock();
  if (table && std::exchange(rowScale_, textScale()) != textScale()) table->reloadData();
}

UIView* ZVDocumentListViewController::preferredFocusView() {
  const auto table = tableView.lock();
  const auto cell =
      table ? std::dynamic_pointer_cast<ZVDocumentTableViewCell>(table->cellForRow(0)) : nullptr;
  return cell ? cell->documentButton.lock().get() : nullptr;
}

std::size_t ZVDocumentListViewController::numberOfRows(UITableView&) {
  return merchant->optionalDocuments.size();
}

double ZVDocumentListViewController::heightForRow(UITableView&, std::size_t) {
  return ZVDocumentTableViewCell::height * textScale();
}

std::shared_ptr<UITableViewCell> ZVDocumentListViewController::cellForRow(UITableView& table,
                                                                          std::size_t row) {
  const auto cell = std::dynamic_pointer_cast<ZVDocumentTableViewCell>(
      table.dequeueReusableCell(ZVDocumentTableViewCell::id));
  if (!cell) return nullptr;
  cell->document = merchant->optionalDocuments[row];
  cell->delegate = self();
  return cell;
}

void ZVDocumentListViewController::tapAction(ZVDocument document) {
  const auto& documents = merchant->optionalDocuments;
  const auto found = std::find(documents.begin(), documents.end(), document);
  const int index = found == documents.end() ? 0 : static_cast<int>(found - documents.begin());
  show(frontCamera({.isRequired = false, .index = index, .identity = identityId}));
}

} // namespace zuvi
