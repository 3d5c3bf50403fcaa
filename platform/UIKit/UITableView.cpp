#include "platform/UIKit/UITableView.h"

#include <ZuviSDK/Foundation/Print.h>
#include <ZuviSDK/UIKit/KeyPress.h>
#include <ZuviSDK/UIKit/UIApplication.h>

#include <algorithm>

namespace zuvi {

void UITableView::registerNib(UINib nib, const std::string& reuseIdentifier) {
  nibs_.insert_or_assign(reuseIdentifier, std::move(nib));
}

std::shared_ptr<UITableViewCell>
UITableView::dequeueReusableCell(const std::string& reuseIdentifier) {
  if (const auto used = spare_.find(reuseIdentifier); used != spare_.end()) {
    auto cell = used->second;
    spare_.erase(used);
    return cell;
  }
  const auto nib = nibs_.find(reuseIdentifier);
  if (nib == nibs_.end()) return nullptr;
  const auto [view, error] = nib->second.instantiate();
  if (!view) print(error);
  auto cell = std::dynamic_pointer_cast<UITableViewCell>(view);
  if (cell) cell->reuseIdentifier = reuseIdentifier;
  return cell;
}

void UITableView::recycle(std::size_t row) {
  const auto found = visible_.find(row);
  if (found == visible_.end()) return;
  const auto cell = found->second;
  visible_.erase(found);
  cell->removeFromSuperview();
  spare_.emplace(cell->reuseIdentifier, cell);
}

void UITableView::reloadData() {
  while (!visible_.empty())
    recycle(visible_.begin()->first);
  bottoms_.clear();
  const auto source = dataSource.lock();
  const auto sizes = delegate.lock();
  double bottom = 0;
  const std::size_t count = source ? source->numberOfRows(*this) : 0;
  for (std::size_t row = 0; row < count; row++) {
    bottom += sizes ? sizes->heightForRow(*this, row) : 44;
    bottoms_.push_back(bottom);
  }
  setContentSize({bounds().width, bottom});
  setNeedsLayout();
}

std::shared_ptr<UITableViewCell> UITableView::cellForRow(std::size_t row) const {
  const auto found = visible_.find(row);
  return found == visible_.end() ? nullptr : found->second;
}

void UITableView::layoutSubviews() {
  setContentSize({bounds().width, bottoms_.empty() ? 0 : bottoms_.back()});
  UIScrollView::layoutSubviews();
  const auto source = dataSource.lock();
  if (!source) return;
  const CGRect seen = bounds();
  const auto first = static_cast<std::size_t>(
      std::upper_bound(bottoms_.begin(), bottoms_.end(), seen.minY()) - bottoms_.begin());
  std::size_t end = first;
  while (end < bottoms_.size() && (end == 0 ? 0 : bottoms_[end - 1]) < seen.maxY())
    end++;
  std::vector<std::size_t> gone;
  for (const auto& [row, cell] : visible_)
    if (row < first || row >= end) gone.push_back(row);
  for (const std::size_t row : gone)
    recycle(row);
  for (std::size_t row = first; row < end; row++) {
    auto cell = cellForRow(row);
    if (!cell) cell = source->cellForRow(*this, row);
    if (row >= bottoms_.size()) return; // the source has reloaded; another layout is due
    if (!cell) continue;
    visible_[row] = cell;
    const double top = row == 0 ? 0 : bottoms_[row - 1];
    cell->setFrame({0, top, seen.width, bottoms_[row] - top});
    if (cell->superview() != this) addSubview(cell);
  }
}

bool UITableView::keyPressed(const KeyPress& key) {
  if (key.name != "Up" && key.name != "Down") return UIScrollView::keyPressed(key);
  const UIView* focused = UIApplication::shared().firstResponder();
  const auto now = std::find_if(visible_.begin(), visible_.end(), [&](const auto& entry) {
    return focused && focused->isDescendantOf(*entry.second);
  });
  std::size_t row = 0; // where the focus is outside, it enters at the first one
  if (now != visible_.end()) {
    if (key.name == "Up" ? now->first == 0 : now->first + 1 >= bottoms_.size()) return true;
    row = key.name == "Up" ? now->first - 1 : now->first + 1;
  }
  if (row >= bottoms_.size()) return false;
  const double top = row == 0 ? 0 : bottoms_[row - 1];
  scrollRectToVisible({0, top, 1, bottoms_[row] - top});
  layoutIfNeeded(); // which makes the row
  const auto cell = cellForRow(row);
  return cell && UIApplication::shared().focusFirstIn(*cell);
}

void UITableView::describe(Value::Dictionary& description) const {
  UIScrollView::describe(description);
  description["rows"] = bottoms_.size();
}

} // namespace zuvi
