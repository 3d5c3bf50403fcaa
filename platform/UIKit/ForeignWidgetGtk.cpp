#include "platform/UIKit/ForeignWidgetGtk.h"

#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIImage.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/QuartzCore/DrawingContextGsk.h"
#include "platform/UIKit/NodePictureGsk.h"
#include "platform/UIKit/UIScreen.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zuvi {

namespace {

using NodePointer = std::shared_ptr<GskRenderNode>;

NodePointer adopt(GskRenderNode* node) {
  if (!node) return nullptr;
  return {node, gsk_render_node_unref};
}

/// Whether a drawing holds more than plain colour.
bool hasPixels(GskRenderNode* node) {
  switch (gsk_render_node_get_node_type(node)) {
  case GSK_TEXTURE_NODE:
  case GSK_CAIRO_NODE:
    return true;
  case GSK_CONTAINER_NODE:
    for (guint i = 0; i < gsk_container_node_get_n_children(node); i++)
      if (hasPixels(gsk_container_node_get_child(node, i))) return true;
    return false;
  case GSK_TRANSFORM_NODE:
    return hasPixels(gsk_transform_node_get_child(node));
  case GSK_CLIP_NODE:
    return hasPixels(gsk_clip_node_get_child(node));
  case GSK_ROUNDED_CLIP_NODE:
    return hasPixels(gsk_rounded_clip_node_get_child(node));
  case GSK_OPACITY_NODE:
    return hasPixels(gsk_opacity_node_get_child(node));
  case GSK_DEBUG_NODE:
    return hasPixels(gsk_debug_node_get_child(node));
  default:
    return false;
  }
}

/// Shows what the widget drew last.
class WidgetLayer final : public CALayer {
public:
  NodePointer node;
  void draw(DrawingContext& context) override {
    if (node) gtk_snapshot_append_node(context.native().snapshot, node.get());
  }
};

class PlacedWidget;
GtkWidget* screenWidget = nullptr;
std::vector<PlacedWidget*> placed;

class PlacedWidget final : public ForeignWidget {
public:
  PlacedWidget(UIView& view, GtkWidget* widget)
      : view_(view), widget_(GTK_WIDGET(g_object_ref_sink(widget))),
        layer_(std::make_shared<WidgetLayer>()), focus_(gtk_event_controller_focus_new()) {
    layer_->setMasksToBounds(true); // until it has heard of a new size it draws the old one
    view_.layer()->insertSublayer(layer_, 0);
    g_signal_connect(focus_, "enter", G_CALLBACK(onFocus), this);
    g_signal_connect(focus_, "leave", G_CALLBACK(onBlur), this);
    gtk_widget_add_controller(widget_, focus_);
    placed.push_back(this);
    enter();
  }

  ~PlacedWidget() override {
    std::erase(placed, this);
    g_signal_handlers_disconnect_by_data(focus_, this);
    leave();
    g_object_unref(widget_);
    layer_->removeFromSuperlayer();
  }

  bool isTouchedAt(CGPoint point) const override {
    const UIApplication& application = UIApplication::shared();
    return isOnShow() && !application.isIgnoringInteractionEvents() &&
           application.hitTest(transformToScreen().apply(point)) == &view_;
  }

  void setFocused(bool focused) override {
    if (!gtk_widget_get_parent(widget_) || focused == gtk_widget_is_focus(widget_)) return;
    if (!focused && losesFocus_) return; // to somebody who has it already
    gtk_widget_grab_focus(focused ? widget_ : screenWidget);
  }

  void setCoveredBottom(double height) override {
    if (std::exchange(covered_, height) == height) return;
    if (screenWidget) gtk_widget_queue_allocate(screenWidget);
  }

  std::shared_ptr<const UIImage> picture(CGSize size, double scale) override {
    takeDrawing();
    if (!layer_->node) return nullptr;
    return UIImage::fromCGImage(pictureOfNode(layer_->node.get(), size, scale), scale);
  }

  void enter() {
    if (!screenWidget) return;
    gtk_widget_set_child_visible(widget_, FALSE); // until it has its place
    gtk_widget_set_parent(widget_, screenWidget);
  }

  void leave() {
    if (gtk_widget_get_parent(widget_)) gtk_widget_unparent(widget_);
  }

  void putInPlace() {
    CGRect bounds = view_.bounds();
    bounds.height = std::max(0.0, bounds.height - covered_);
    layer_->setFrame(bounds);
    const bool shown = isOnShow();
    if (shown && !gtk_widget_get_child_visible(widget_)) awaitsPixels_ = true;
    gtk_widget_set_child_visible(widget_, shown);
    const int width = std::max(1, int(std::lround(bounds.width)));
    const int height = std::max(1, int(std::lround(bounds.height)));
    // The toolkit wants to be asked before it is told.
    gtk_widget_measure(widget_, GTK_ORIENTATION_HORIZONTAL, -1, nullptr, nullptr, nullptr, nullptr);
    gtk_widget_measure(widget_, GTK_ORIENTATION_VERTICAL, width, nullptr, nullptr, nullptr,
                       nullptr);
    // Drawing has no use for the transform; it lets pointers arrive at the right place.
    transform_ = shown ? transformToScreen() : CGAffineTransform{};
    gtk_widget_allocate(widget_, width, height, -1, makeTransform(transform_));
  }

  void takeDrawing() {
    if (!gtk_widget_get_parent(widget_) || !gtk_widget_get_mapped(widget_)) return;
    GtkSnapshot* snapshot = gtk_snapshot_new();
    GskTransform* there = makeTransform(transform_);
    GskTransform* back = gsk_transform_invert(gsk_transform_ref(there));
    gtk_snapshot_transform(snapshot, back);
    gtk_widget_snapshot_child(screenWidget, widget_, snapshot);
    gsk_transform_unref(back);
    gsk_transform_unref(there);
    const NodePointer drawn = adopt(gtk_snapshot_free_to_node(snapshot));
    // A widget that comes back may need a moment to draw; what it last drew stands in for it.
    if (awaitsPixels_ && layer_->node && !(drawn && hasPixels(drawn.get()))) return;
    awaitsPixels_ = false;
    if (drawn == layer_->node) return;
    layer_->node = drawn;
    layer_->setNeedsDisplay();
  }

private:
  bool isOnShow() const {
    const UIWindow* window = view_.window();
    if (!window || !window->isVisible()) return false;
    for (const UIView* view = &view_; view; view = view->superview())
      if (view->isHidden()) return false;
    return true;
  }

  CGAffineTransform transformToScreen() const {
    CGAffineTransform transform = layer_->presentedTransformToSuperlayer();
    for (const CALayer* layer = layer_->superlayer(); layer; layer = layer->superlayer())
      transform = transform.concatenating(layer->presentedTransformToSuperlayer());
    return transform;
  }

  static void onFocus(GtkEventControllerFocus*, gpointer self) {
    static_cast<PlacedWidget*>(self)->view_.becomeFirstResponder();
  }
  static void onBlur(GtkEventControllerFocus*, gpointer data) {
    auto* self = static_cast<PlacedWidget*>(data);
    GtkRoot* top = gtk_widget_get_root(self->widget_);
    if (GTK_IS_WINDOW(top) && !gtk_window_is_active(GTK_WINDOW(top))) return; // it comes back
    self->losesFocus_ = true;
    self->view_.resignFirstResponder();
    self->losesFocus_ = false;
  }

  UIView& view_;
  GtkWidget* widget_;
  std::shared_ptr<WidgetLayer> layer_;
  GtkEventController* focus_; ///< the widget's
  CGAffineTransform transform_;
  double covered_ = 0;
  bool awaitsPixels_ = false;
  bool losesFocus_ = false;
};

} // namespace

bool ForeignWidget::canBeShown() {
  return screenWidget != nullptr;
}

std::unique_ptr<ForeignWidget> ForeignWidget::place(UIView& view, GtkWidget* widget) {
  return std::make_unique<PlacedWidget>(view, widget);
}

void ForeignWidget::setScreen(GtkWidget* screen) {
  for (PlacedWidget* widget : placed)
    widget->leave();
  screenWidget = screen;
  for (PlacedWidget* widget : placed)
    widget->enter();
}

bool ForeignWidget::exist() {
  return !placed.empty();
}

void ForeignWidget::placeAll() {
  for (PlacedWidget* widget : placed)
    widget->putInPlace();
}

void ForeignWidget::drawAll() {
  for (PlacedWidget* widget : placed)
    widget->takeDrawing();
}

} // namespace zuvi
