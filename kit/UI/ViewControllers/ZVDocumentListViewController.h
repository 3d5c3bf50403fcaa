#pragma once

#include "kit/UI/ViewControllers/ZVScreen.h"
#include "kit/UI/Views/ZVDocumentTableViewCell.h"
#include "platform/UIKit/UITableView.h"

#include <optional>
#include <string>

namespace zuvi {

class ZVKYCMerchant;

/// Offers the merchant's optional documents; taking one ends the run.
class ZVDocumentListViewController final : public ZVScreen,
                                           public ZVDocumentTableViewCellDelegate,
                                           public UITableViewDataSource,
                                           public UITableViewDelegate {
public:
  static constexpr const char* name = "ZVDocumentListViewController";
  ZVDocumentListViewController();

  std::weak_ptr<UITableView> tableView;
  std::shared_ptr<const ZVKYCMerchant> merchant;
  std::optional<std::string> identityId; ///< the creator sets it

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

  double rowScale_ = 1; ///< of the text in the rows
};

} // namespace zuvi
