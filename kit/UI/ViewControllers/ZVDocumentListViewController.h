#pragma once

#include "kit/UI/ViewControllers/ZVScreen.h"
#include "kit/UI/Views/ZVDocumentTableViewCell.h"
#include "platform/UIKit/UITableView.h"

#include <optional>
#include <string>

namespace zuvi {

class ZVKYCMerchant;

/// The document list: offers the merchant's optional documents. The run ends after one of them.
class ZVDocumentListViewController final : public ZVScreen,
                                           public ZVDocumentTableViewCellDelegate,
                                           public UITableViewDataSource,
                                           public UITableViewDelegate {
public:
  static constexpr const char* name = "ZVDocumentListViewController";
  ZVDocumentListViewController();

  std::weak_ptr<UITableView> tableView;
  std::shared_ptr<const ZVKYCMerchant> merchant;
  std::optional<std::string> identityId; ///< set by the creator

  void declareNib(NibDeclaration& nib) override;
  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;
  void viewWillLayoutSubviews() override;
  UIView* preferredFocusView() override;

  std::size_t numberOfRows(UITableView& table) override;
  double heightForRow(UITableView& table, std::size_t row) override;
  std::shared_ptr<UITableViewCell> cellForRow(UITableView& table, std::size_t row) override;
  void tapAction(ZVDocument document) override;

private:
  std::shared_ptr<ZVDocumentListViewController> self();

  double rowScale_ = 1; ///< the text scale of the rows
};

} // namespace zuvi
