#pragma once

// How a widget of another library takes part in the screen; only for files that speak the
// toolkit's language.

#include <ZuviSDK/CoreGraphics/CGGeometry.h>

#include <memory>

#include <gtk/gtk.h>

namespace zuvi {

class UIImage;
class UIView;

/// A widget that stands in a view's place: its pixels are drawn among our layers, above the view's
/// background and below its subviews, and follow the view's transform, opacity and clip. It lives
/// on while the view is hidden or on no window, and then is not drawn. All members are virtual, so
/// that code which is loaded later can call them.
class ForeignWidget {
public:
  virtual ~ForeignWidget() = default;
  /// Whether a touch at a point of the widget belongs to its view rather than to one that lies
  /// over it: what the widget's class answers to `contains`.
  virtual bool isTouchedAt(CGPoint point) const = 0;
  /// Gives it the keyboard, or takes it away. When a person moves the keyboard to the widget, the
  /// view becomes first responder.
  virtual void setFocused(bool focused) = 0;
  /// How much of the view's bottom the widget leaves free, in points.
  virtual void setCoveredBottom(double height) = 0;
  /// What it shows from its top left corner, as a picture of that size in points. Null when it has
  /// shown nothing yet.
  virtual std::shared_ptr<const UIImage> picture(CGSize size, double scale) = 0;

  /// Whether the screen is shown by a widget, which others can be placed in.
  static bool canBeShown();
  /// Takes over the widget (a floating reference is sunk). The view outlives what is returned.
  static std::unique_ptr<ForeignWidget> place(UIView& view, GtkWidget* widget);

  // For the widget that shows the screen.
  /// The parent of all of them; null: none.
  static void setScreen(GtkWidget* screen);
  static bool exist();
  /// Puts each where its view is; in the toolkit's layout phase.
  static void placeAll();
  /// Hands what each has drawn to the layers; before those are drawn.
  static void drawAll();
};

} // namespace zuvi
