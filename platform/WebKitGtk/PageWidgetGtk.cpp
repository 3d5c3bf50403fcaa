#include "platform/WebKitGtk/PageWidgetGtk.h"

using namespace zuvi;

namespace {

struct ZuviPageWidget {
  WebKitWebView parent;
  const ForeignWidget* place;
};

struct ZuviPageWidgetClass {
  WebKitWebViewClass parent;
};

G_DEFINE_TYPE(ZuviPageWidget, zuvi_page_widget,
              WEBKIT_TYPE_WEB_VIEW) // NOLINT: the macro's own code

gboolean contains(GtkWidget* widget, double x, double y) {
  const ForeignWidget* place = reinterpret_cast<ZuviPageWidget*>(widget)->place;
  return GTK_WIDGET_CLASS(zuvi_page_widget_parent_class)->contains(widget, x, y) &&
         (!place || place->isTouchedAt({x, y}));
}

void zuvi_page_widget_class_init(ZuviPageWidgetClass* type) { // NOLINT: named by the macro
  GTK_WIDGET_CLASS(type)->contains = contains;
}

void zuvi_page_widget_init(ZuviPageWidget*) {} // NOLINT: named by the macro

} // namespace

GType zuvi::pageWidgetType() {
  return zuvi_page_widget_get_type();
}

void zuvi::setPlace(WebKitWebView* page, const ForeignWidget* place) {
  reinterpret_cast<ZuviPageWidget*>(page)->place = place;
}
