#pragma once

#include <ZuviSDK/Foundation/Bundle.h>
#include <ZuviSDK/UIKit/UINib.h>
#include "platform/UIKit/UIScrollView.h"

#include <map>
#include <string>
#include <vector>

namespace zuvi {

class UITableView;

/// One row. It is laid out anew and given new contents each time it is used.
class UITableViewCell : public UIView {
public:
  /// Empty; rows are usually made from a nib whose topmost view is a subclass.
  UITableViewCell() { accessibilityRole = UIAccessibilityRole::ListItem; }

  std::string reuseIdentifier; ///< for which rows it is used again
};

/// Who knows what a table shows. Main queue.
class UITableViewDataSource {
public:
  virtual ~UITableViewDataSource() = default;
  /// Asked once at each `UITableView::reloadData`.
  virtual std::size_t numberOfRows(UITableView& table) = 0;
  /// The row with its contents, best from `UITableView::dequeueReusableCell`; asked when it comes
  /// in sight. Null leaves its place empty.
  virtual std::shared_ptr<UITableViewCell> cellForRow(UITableView& table, std::size_t row) = 0;
};

/// Who knows how a table looks. Main queue.
class UITableViewDelegate {
public:
  virtual ~UITableViewDelegate() = default;
  /// In points; asked for every row at each `UITableView::reloadData`.
  virtual double heightForRow(UITableView&, std::size_t) { return 44; }
};

/// Rows below one another. Only those in sight are made; rows that leave are used again.
class UITableView : public UIScrollView {
public:
  /// Shows nothing before `reloadData`.
  UITableView() { accessibilityRole = UIAccessibilityRole::List; }

  std::weak_ptr<UITableViewDataSource> dataSource; ///< absent: there are no rows
  std::weak_ptr<UITableViewDelegate> delegate;     ///< absent: rows are 44 points high

  /// Which nib makes the rows of that identifier; it replaces an earlier one.
  void registerNib(UINib nib, const std::string& reuseIdentifier);
  /// A row of that kind, used or new; null when the nib was refused or none is registered.
  std::shared_ptr<UITableViewCell> dequeueReusableCell(const std::string& reuseIdentifier);
  /// Asks the data source for everything anew.
  void reloadData();
  /// The row if it is in sight, else null.
  std::shared_ptr<UITableViewCell> cellForRow(std::size_t row) const;

  void layoutSubviews() override;
  /// Up and Down move the focus from row to row.
  bool keyPressed(const KeyPress& key) override;
  void describe(Value::Dictionary& description) const override;

private:
  void recycle(std::size_t row);

  std::map<std::string, UINib> nibs_;
  std::multimap<std::string, std::shared_ptr<UITableViewCell>> spare_;
  std::map<std::size_t, std::shared_ptr<UITableViewCell>> visible_;
  std::vector<double> bottoms_; ///< of each row, from the top of the contents
};

} // namespace zuvi
