#include "platform/WebKitGtk/PageWidgetGtk.h"

using namespace zuvi;

namespace {

struct PageWidget {
  WebKitWebView parent;
  const ForeignWidget* place;
};

struct PageWidgetClass {
  WebKitWebViewClass parent;
};

G_DEFINE_TYPE(PageWidget, page_widget, WEBKIT_TYPE_WEB_VIEW) // NOLINT: the macro's own code

gboolean contains(GtkWidget* widget, double x, double y) {
  const ForeignWidget* place = reinterpret_cast<PageWidget*>(widget)->place;
  return GTK_WIDGET_CLASS(page_widget_parent_class)->contains(widget, x, y) &&
         (!place || place->isTouchedAt({x, y}));
}

void page_widget_class_init(PageWidgetClass* type) { // NOLINT: named by the macro
  GTK_WIDGET_CLASS(type)->contains = contains;
}

void page_widget_init(PageWidget*) {} // NOLINT: named by the macro

} // namespace

GType zuvi::pageWidgetType() {
  return page_widget_get_type();
}

void zuvi::setPlace(WebKitWebView* page, const ForeignWidget* place) {
  reinterpret_cast<PageWidget*>(page)->place = place;
}
