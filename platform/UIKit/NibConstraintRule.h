#pragma once

#include <ZuviSDK/UIKit/NSLayoutConstraint.h>

#include <optional>
#include <string>
#include <vector>

namespace zuvi {

/// A constraint as a nib writes it, "left = title.right * 0.5 + 8", with the items by name. An edge
/// without a name is the view's own.
struct NibConstraintRule {
  std::string firstItem, secondItem; ///< empty: the view itself; "super", "safe", or a name
  LayoutAttribute first = LayoutAttribute::Left, second = LayoutAttribute::Left;
  bool hasSecond = false;
  double multiplier = 1, constant = 0;

  /// Absent when the text is malformed.
  static std::optional<NibConstraintRule> parse(const std::string& text);
  /// The rules of a list parted by semicolons; absent when one is malformed.
  static std::optional<std::vector<NibConstraintRule>> parseList(const std::string& text);
};

} // namespace zuvi
