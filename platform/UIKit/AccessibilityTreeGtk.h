#pragma once

// What the desktop's assistive technology sees of the screen; only for the widget that shows it.

#include <ZuviSDK/UIKit/UIAccessibility.h>

#include <map>
#include <memory>
#include <string>

#include <gtk/gtk.h>

namespace zuvi {

/// Widgets that bear role, name, state and place of the elements on the screen and nothing else:
/// they draw nothing and take no pointer, but the one of the view with the focus has the toolkit's
/// focus. Brought up to date a moment after the screen changed.
class AccessibilityTree {
public:
  explicit AccessibilityTree(GtkWidget* screen);
  ~AccessibilityTree();
  AccessibilityTree(const AccessibilityTree&) = delete;
  AccessibilityTree& operator=(const AccessibilityTree&) = delete;

  /// May come many times before one.
  void setNeedsUpdate();
  /// Another widget shows the screen now.
  void clear();
  /// In the toolkit's layout phase.
  void placeAll();
  /// Whether the toolkit's focus is with the screen or one of these widgets, so that keys come to
  /// our views.
  bool hasFocus() const;
  void announce(const std::string& text);

private:
  struct Entry;
  using Items = std::vector<UIAccessibility::Item>;

  void update();
  void arrange(const Items& items);
  void refresh(Entry& entry, const UIAccessibility::Item& item);
  void follow(bool hadFocus);
  void speak(const std::string& text);
  void silence();

  GtkWidget* screen_;
  std::map<const UIView*, std::unique_ptr<Entry>> entries_;
  GtkWidget* alert_ = nullptr;  ///< bears what was announced last
  GtkWidget* spoken_ = nullptr; ///< the focused one, which bears it too
  std::string title_;           ///< of the screen
  std::string pending_;         ///< still to be announced
  guint update_ = 0, silence_ = 0;
};

} // namespace zuvi
