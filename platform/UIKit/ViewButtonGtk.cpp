#include "platform/UIKit/ViewButton.h"

#include <ZuviSDK/Dispatch/MainLoop.h>
#include <ZuviSDK/UIKit/UIView.h>
#include "platform/CoreText/TextLayout.h"
#include "platform/QuartzCore/LayerRendererGsk.h"
#include "platform/UIKit/TextSizeGtk.h"
#include "platform/UIKit/UIScreen.h"

#include <utility>

namespace zuvi {

namespace {

constexpr float disabledOpacity = 0.5;

/// What the button shows, and the view's way to ask for a new drawing.
struct Face final : LayerHost {
  GtkWidget* widget = nullptr;
  std::shared_ptr<UIView> view;
  CGSize size;
  int scale = 0; // of the last drawing, as is textScale
  double textScale = 0;
  std::function<void(GtkWindow*)> clicked;

  void setNeedsFrame() override {
    GtkWidget* button = gtk_widget_get_parent(widget);
    const std::string name = view->accessibilityElement().name;
    if (button)
      gtk_accessible_update_property(GTK_ACCESSIBLE(button), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                     name.c_str(), -1);
    gtk_widget_queue_draw(widget);
  }
  void addDamage(const CGRect&) override {} // the toolkit finds out by itself
};

struct ZuviViewWidget {
  GtkWidget parent;
  Face* face;
};

struct ZuviViewWidgetClass {
  GtkWidgetClass parent;
};

G_DEFINE_TYPE(ZuviViewWidget, zuvi_view_widget, GTK_TYPE_WIDGET) // NOLINT: the macro's own code

Face& faceOf(GtkWidget* widget) {
  return *reinterpret_cast<ZuviViewWidget*>(widget)->face;
}

void measure(GtkWidget* widget, GtkOrientation orientation, int, int* minimum, int* natural, int*,
             int*) {
  const CGSize size = faceOf(widget).size;
  *minimum = *natural = int(orientation == GTK_ORIENTATION_HORIZONTAL ? size.width : size.height);
}

void snapshot(GtkWidget* widget, GtkSnapshot* snapshot) {
  UIView& view = *faceOf(widget).view;
  view.setFrame(
      {0, 0, double(gtk_widget_get_width(widget)), double(gtk_widget_get_height(widget))});
  const int scale = gtk_widget_get_scale_factor(widget);
  Face& face = faceOf(widget);
  if (std::exchange(face.scale, scale) != scale ||
      std::exchange(face.textScale, textScale()) != textScale()) {
    view.setNeedsLayout();
    redraw(*view.layer());
  }
  view.layoutIfNeeded();
  const auto frame = LayerRenderer::render(*view.layer(), scale, false);
  if (!frame.node) return;
  const bool dimmed = !gtk_widget_is_sensitive(widget);
  if (dimmed) gtk_snapshot_push_opacity(snapshot, disabledOpacity);
  gtk_snapshot_append_node(snapshot, frame.node);
  if (dimmed) gtk_snapshot_pop(snapshot);
}

void root(GtkWidget* widget) {
  GTK_WIDGET_CLASS(zuvi_view_widget_parent_class)->root(widget);
  followTextSize(widget);
}

void stateFlagsChanged(GtkWidget* widget, GtkStateFlags before) {
  GTK_WIDGET_CLASS(zuvi_view_widget_parent_class)->state_flags_changed(widget, before);
  gtk_widget_queue_draw(widget); // it may be dimmed now
}

void finalize(GObject* object) {
  Face* face = reinterpret_cast<ZuviViewWidget*>(object)->face;
  face->view->layer()->setHost(nullptr);
  delete face;
  G_OBJECT_CLASS(zuvi_view_widget_parent_class)->finalize(object);
}

void zuvi_view_widget_class_init(ZuviViewWidgetClass* type) { // NOLINT: named by the macro
  GtkWidgetClass* widget = GTK_WIDGET_CLASS(type);
  widget->measure = measure;
  widget->snapshot = snapshot;
  widget->root = root;
  widget->state_flags_changed = stateFlagsChanged;
  G_OBJECT_CLASS(type)->finalize = finalize;
}

void zuvi_view_widget_init(ZuviViewWidget* me) { // NOLINT: named by the macro
  me->face = new Face;
  me->face->widget = GTK_WIDGET(me);
}

void onClicked(GtkButton* button, gpointer) {
  const auto clicked = faceOf(gtk_button_get_child(button)).clicked; // the button may go with it
  GtkRoot* window = gtk_widget_get_root(GTK_WIDGET(button));
  clicked(GTK_IS_WINDOW(window) ? GTK_WINDOW(window) : nullptr);
}

} // namespace

GtkWidget* viewButtonNew(std::shared_ptr<UIView> view, CGSize size,
                         std::function<void(GtkWindow*)> clicked) {
  MainLoop::attach();
  auto* widget = GTK_WIDGET(g_object_new(zuvi_view_widget_get_type(), nullptr));
  Face& face = faceOf(widget);
  face.view = std::move(view);
  face.size = size;
  face.clicked = std::move(clicked);
  GtkWidget* button = gtk_button_new();
  gtk_button_set_has_frame(GTK_BUTTON(button), FALSE);
  gtk_button_set_child(GTK_BUTTON(button), widget);
  gtk_widget_set_halign(button, GTK_ALIGN_CENTER); // a box does not stretch it
  gtk_widget_set_valign(button, GTK_ALIGN_CENTER);
  g_signal_connect(button, "clicked", G_CALLBACK(onClicked), nullptr);
  face.view->layer()->setHost(&face);
  face.setNeedsFrame();
  return button;
}

} // namespace zuvi
