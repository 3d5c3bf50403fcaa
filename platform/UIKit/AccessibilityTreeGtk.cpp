#include "platform/UIKit/AccessibilityTreeGtk.h"

#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIView.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace zuvi {

namespace {

using Role = UIAccessibilityRole;

constexpr guint updateAfter = 50; // milliseconds, in which changes gather
[[maybe_unused]] constexpr guint silenceAfter =
    10000; // milliseconds for which an announcement can be looked up

// A widget with nothing of its own. The toolkit shows assistive technology an action for each that
// the class has: hence a second class, for what can be clicked.

struct ZuviElementWidget {
  GtkWidget parent;
  std::weak_ptr<UIView>* view; ///< made and deleted with the widget
};
struct ZuviElementWidgetClass {
  GtkWidgetClass parent;
};
struct ZuviClickableWidget {
  ZuviElementWidget parent;
};
struct ZuviClickableWidgetClass {
  ZuviElementWidgetClass parent;
};

G_DEFINE_TYPE(ZuviElementWidget, zuvi_element_widget, GTK_TYPE_WIDGET)                    // NOLINT
G_DEFINE_TYPE(ZuviClickableWidget, zuvi_clickable_widget, zuvi_element_widget_get_type()) // NOLINT

void dispose(GObject* object) {
  while (GtkWidget* child = gtk_widget_get_first_child(GTK_WIDGET(object)))
    gtk_widget_unparent(child);
  G_OBJECT_CLASS(zuvi_element_widget_parent_class)->dispose(object);
}

void zuvi_element_widget_init(ZuviElementWidget* me) { // NOLINT: named by the macro
  me->view = new std::weak_ptr<UIView>;
}

void finalize(GObject* object) {
  delete reinterpret_cast<ZuviElementWidget*>(object)->view;
  G_OBJECT_CLASS(zuvi_element_widget_parent_class)->finalize(object);
}

void zuvi_element_widget_class_init(ZuviElementWidgetClass* type) { // NOLINT: named by the macro
  gtk_widget_class_set_css_name(GTK_WIDGET_CLASS(type), "zuvi-element"); // no theme's margins
  G_OBJECT_CLASS(type)->dispose = dispose;
  G_OBJECT_CLASS(type)->finalize = finalize;
}

void click(GtkWidget* widget, const char*, GVariant*) {
  UIApplication& application = UIApplication::shared();
  if (application.isIgnoringInteractionEvents()) return;
  const auto view = reinterpret_cast<ZuviElementWidget*>(widget)->view->lock();
  if (!view) return;
  application.setKeyboardInUse(true); // the focus is to follow the screens
  view->accessibilityActivate();
}

void zuvi_clickable_widget_class_init(
    ZuviClickableWidgetClass* type) { // NOLINT: named by the macro
  gtk_widget_class_install_action(GTK_WIDGET_CLASS(type), "click", nullptr, click);
}

void zuvi_clickable_widget_init(ZuviClickableWidget*) {} // NOLINT: named by the macro

GtkAccessibleRole toolkitRole(Role role) {
  switch (role) {
  case Role::None:
    return GTK_ACCESSIBLE_ROLE_NONE;
  case Role::StaticText:
    return GTK_ACCESSIBLE_ROLE_LABEL;
  case Role::Header:
    return GTK_ACCESSIBLE_ROLE_HEADING;
  case Role::Image:
    return GTK_ACCESSIBLE_ROLE_IMG;
  case Role::Button:
    return GTK_ACCESSIBLE_ROLE_BUTTON;
  case Role::TextField:
    return GTK_ACCESSIBLE_ROLE_TEXT_BOX;
  case Role::PageControl:
  case Role::Progress:
    return GTK_ACCESSIBLE_ROLE_PROGRESS_BAR;
  case Role::List:
    return GTK_ACCESSIBLE_ROLE_LIST;
  case Role::ListItem:
    return GTK_ACCESSIBLE_ROLE_LIST_ITEM;
  case Role::Dialog:
    return GTK_ACCESSIBLE_ROLE_DIALOG;
  }
  return GTK_ACCESSIBLE_ROLE_NONE;
}

bool takesFocus(Role role) {
  return role == Role::Button || role == Role::TextField;
}

GType typeOf(Role role) {
  if (takesFocus(role)) return zuvi_clickable_widget_get_type();
  // What has a value must be of a class that has one.
  return role == Role::PageControl ? GTK_TYPE_LEVEL_BAR : zuvi_element_widget_get_type();
}

/// Hidden, and the caller's own.
GtkWidget* makeWidget(GtkAccessibleRole role, GType type) {
  return GTK_WIDGET(g_object_ref_sink(
      g_object_new(type, "accessible-role", role, "visible", FALSE, "can-target", FALSE, nullptr)));
}

void insert(GtkWidget* widget, GtkWidget* parent, GtkWidget* after) {
  gtk_widget_insert_after(widget, parent, after);
  // The toolkit tells of a new child only when that is known to assistive technology by itself,
  // which comes with a change of this property, and when it is shown after that.
  const gboolean focusable = gtk_widget_get_focusable(widget);
  gtk_widget_set_focusable(widget, !focusable);
  gtk_widget_set_focusable(widget, focusable);
  gtk_widget_set_visible(widget, TRUE);
}

void place(GtkWidget* widget, const CGRect& frame) {
  // The toolkit wants to be asked before it is told.
  gtk_widget_measure(widget, GTK_ORIENTATION_HORIZONTAL, -1, nullptr, nullptr, nullptr, nullptr);
  const graphene_point_t at{float(std::round(frame.x)), float(std::round(frame.y))};
  gtk_widget_allocate(widget, std::max(1, int(std::lround(frame.width))),
                      std::max(1, int(std::lround(frame.height))), -1,
                      gsk_transform_translate(nullptr, &at));
}

void setText(GtkWidget* widget, GtkAccessibleProperty property, const std::string& text) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget), property, text.c_str(), -1);
}

} // namespace

struct AccessibilityTree::Entry {
  GtkWidget* widget;
  UIAccessibilityElement element;
  CGRect frame; ///< within the parent

  explicit Entry(Role role) : widget(makeWidget(toolkitRole(role), typeOf(role))) {
    element.role = role;
    gtk_widget_set_focusable(widget, takesFocus(role));
  }
  ~Entry() {
    if (gtk_widget_get_parent(widget)) gtk_widget_unparent(widget);
    g_object_unref(widget);
  }
  Entry(const Entry&) = delete;
  Entry& operator=(const Entry&) = delete;
};

AccessibilityTree::AccessibilityTree(GtkWidget* screen) : screen_(screen) {}

AccessibilityTree::~AccessibilityTree() {
  clear();
  g_clear_object(&alert_);
}

void AccessibilityTree::clear() {
  if (update_) g_source_remove(std::exchange(update_, 0));
  silence();
  entries_.clear();
}

void AccessibilityTree::setNeedsUpdate() {
  if (update_) return;
  update_ = g_timeout_add(
      updateAfter,
      [](gpointer self) -> gboolean {
        auto* tree = static_cast<AccessibilityTree*>(self);
        tree->update_ = 0;
        tree->update();
        return G_SOURCE_REMOVE;
      },
      this);
}

void AccessibilityTree::update() {
  if (!gtk_widget_get_mapped(screen_)) return;
  // While screens change places nothing can be done with either.
  if (UIApplication::shared().isIgnoringInteractionEvents()) return setNeedsUpdate();
  const bool hadFocus = hasFocus();
  arrange(UIAccessibility::items());
  follow(hadFocus);
  if (!pending_.empty()) speak(std::exchange(pending_, {}));
}

void AccessibilityTree::arrange(const Items& items) {
  std::map<const UIView*, std::unique_ptr<Entry>> old = std::exchange(entries_, {});
  for (const auto& item : items)
    if (const auto known = old.find(item.view);
        known != old.end() && known->second->element.role == item.element.role)
      entries_.insert(old.extract(known));
  old.clear();

  std::map<GtkWidget*, GtkWidget*> last; // child of each parent
  bool moved = false;
  for (const auto& item : items) {
    GtkWidget* parent = item.parent ? entries_.at(items[*item.parent].view)->widget : screen_;
    GtkWidget* after = last[parent];
    auto& entry = entries_[item.view];
    if (entry && (gtk_widget_get_parent(entry->widget) != parent ||
                  gtk_widget_get_prev_sibling(entry->widget) != after))
      entry = nullptr; // a move would not be told
    const bool isNew = !entry;
    if (isNew) entry = std::make_unique<Entry>(item.element.role);
    refresh(*entry, item);
    if (isNew) insert(entry->widget, parent, after);
    CGRect frame = item.frame;
    if (item.parent) {
      const CGRect& outer = items[*item.parent].frame;
      frame = {frame.x - outer.x, frame.y - outer.y, frame.width, frame.height};
    }
    moved = moved || isNew || entry->frame != frame;
    entry->frame = frame;
    last[parent] = entry->widget;
  }
  if (moved) gtk_widget_queue_allocate(screen_);
  // The widget that shows the screen is named after it.
  const auto title = std::find_if(items.begin(), items.end(), [](const auto& item) {
    return item.element.role == Role::Header;
  });
  const std::string name = title == items.end() ? "" : title->element.name;
  if (std::exchange(title_, name) == name) return;
  setText(screen_, GTK_ACCESSIBLE_PROPERTY_LABEL, name);
  silence(); // what was said there is over
}

void AccessibilityTree::refresh(Entry& entry, const UIAccessibility::Item& item) {
  const UIAccessibilityElement& now = item.element;
  const UIAccessibilityElement before = std::exchange(entry.element, now);
  GtkWidget* widget = entry.widget;
  if (G_TYPE_CHECK_INSTANCE_TYPE(widget, zuvi_element_widget_get_type()))
    *reinterpret_cast<ZuviElementWidget*>(widget)->view = item.view->weak_from_this();
  if (now.name != before.name) setText(widget, GTK_ACCESSIBLE_PROPERTY_LABEL, now.name);
  if (now.value != before.value) setText(widget, GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, now.value);
  if (now.enabled != before.enabled) {
    gtk_accessible_update_state(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_STATE_DISABLED, !now.enabled,
                                -1);
    if (takesFocus(now.role)) gtk_widget_action_set_enabled(widget, "click", now.enabled);
  }
  if (now.busy != before.busy)
    gtk_accessible_update_state(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_STATE_BUSY, now.busy, -1);
  if (now.role == Role::Dialog && before.role != Role::Dialog)
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_MODAL, TRUE, -1);
  if (GTK_IS_LEVEL_BAR(widget)) {
    gtk_level_bar_set_max_value(GTK_LEVEL_BAR(widget), now.count);
    gtk_level_bar_set_value(GTK_LEVEL_BAR(widget), now.position);
  }
}

void AccessibilityTree::placeAll() {
  for (const auto& [view, entry] : entries_)
    if (gtk_widget_get_parent(entry->widget)) place(entry->widget, entry->frame);
  if (alert_ && gtk_widget_get_parent(alert_)) place(alert_, {0, 0, 1, 1});
}

// The focus

bool AccessibilityTree::hasFocus() const {
  GtkRoot* top = gtk_widget_get_root(screen_);
  GtkWidget* focus = top ? gtk_root_get_focus(top) : nullptr;
  return focus && (focus == screen_ ||
                   std::any_of(entries_.begin(), entries_.end(),
                               [&](const auto& entry) { return entry.second->widget == focus; }));
}

/// Nothing is taken from a widget of others.
void AccessibilityTree::follow(bool hadFocus) {
  if (!hadFocus) return;
  const auto focused = entries_.find(UIApplication::shared().firstResponder());
  GtkWidget* wanted = focused != entries_.end() && takesFocus(focused->second->element.role)
                          ? focused->second->widget
                          : screen_;
  GtkRoot* top = gtk_widget_get_root(screen_);
  if (top && gtk_root_get_focus(top) != wanted) gtk_widget_grab_focus(wanted);
}

// Announcements. Before 4.14 the toolkit had no call for them; screen readers spoke when the
// description of the focused widget changed, and some when an alert appeared.

void AccessibilityTree::announce(const std::string& text) {
  // Together with what else changes in this moment, and after the focus has moved.
  pending_ += (pending_.empty() ? "" : " ") + text;
  setNeedsUpdate();
}

void AccessibilityTree::speak(const std::string& text) {
#if GTK_CHECK_VERSION(4, 14, 0)
  GtkRoot* window = gtk_widget_get_root(screen_);
  GtkWidget* teller = window && hasFocus() ? gtk_root_get_focus(window) : screen_;
  gtk_accessible_announce(GTK_ACCESSIBLE(teller), text.c_str(),
                          GTK_ACCESSIBLE_ANNOUNCEMENT_PRIORITY_MEDIUM);
#else
  silence();
  if (!alert_) alert_ = makeWidget(GTK_ACCESSIBLE_ROLE_ALERT, zuvi_element_widget_get_type());
  setText(alert_, GTK_ACCESSIBLE_PROPERTY_LABEL, text);
  insert(alert_, screen_, gtk_widget_get_last_child(screen_));
  GtkRoot* top = gtk_widget_get_root(screen_);
  GtkWidget* focus = top && hasFocus() ? gtk_root_get_focus(top) : screen_;
  spoken_ = GTK_WIDGET(g_object_ref(focus));
  setText(spoken_, GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, text);
  silence_ = g_timeout_add(
      silenceAfter,
      [](gpointer self) -> gboolean {
        auto* tree = static_cast<AccessibilityTree*>(self);
        tree->silence_ = 0;
        tree->silence();
        return G_SOURCE_REMOVE;
      },
      this);
#endif
}

void AccessibilityTree::silence() {
  if (silence_) g_source_remove(std::exchange(silence_, 0));
  if (alert_ && gtk_widget_get_parent(alert_)) {
    gtk_widget_set_visible(alert_, FALSE); // which is told, as that it is gone is not
    gtk_widget_unparent(alert_);
  }
  if (!spoken_) return;
  std::string own;
  for (const auto& [view, entry] : entries_)
    if (entry->widget == spoken_) own = entry->element.value;
  setText(spoken_, GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, own);
  g_clear_object(&spoken_);
}

} // namespace zuvi
