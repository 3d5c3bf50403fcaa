#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/Export.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zuvi {

class UIView;

/// What a view is to people who don't see it. Lists, rows and dialogs hold other elements; all
/// others are one thing, whatever they are made of.
enum class UIAccessibilityRole {
  None,
  StaticText,
  Header,
  Image,
  Button,
  TextField,
  PageControl,
  Progress,
  List,
  ListItem,
  Dialog
};

/// A view in words.
struct UIAccessibilityElement {
  UIAccessibilityRole role = UIAccessibilityRole::None; ///< `None`: it is left out
  std::string name;                                     ///< what is spoken first; empty: nothing
  std::string value;                                    ///< what it holds or how it stands
  bool enabled = true;                                  ///< whether it can be used now
  bool busy = false;                                    ///< something is under way in it
  /// From 1, for what counts; no count: nothing to count.
  /// @{
  int position = 0, count = 0;
  /// @}

  /// Equal when all fields are.
  bool operator==(const UIAccessibilityElement&) const = default;
};

/// Between the views and the screen readers of the desktop. Main queue only.
class UIAccessibility {
public:
  /// What is to be told.
  enum class Notification {
    Announcement, ///< the text is to be spoken
    LayoutChanged ///< something changed that can't be seen, such as a label
  };
  /// Tells assistive technology; `text` is what is spoken. Nothing happens where none listens.
  ZUVI_API static void post(Notification notification, const std::string& text = {});

  /// An element on the screen.
  struct Item {
    UIView* view;                      ///< valid until the views change
    UIAccessibilityElement element;    ///< as the view gave it
    CGRect frame;                      ///< on the screen
    std::optional<std::size_t> parent; ///< its place in the list; absent: the screen
  };
  /// What can be found on the screen now, in the order in which it is read, parents first: the
  /// sheet on top, without what is hidden, transparent or covered. What is merely scrolled out of
  /// sight counts as there.
  static std::vector<Item> items();
};

/// Whether the middle of the view lies beyond the edge of contents that scroll.
bool isScrolledOut(const UIView& view);

} // namespace zuvi
