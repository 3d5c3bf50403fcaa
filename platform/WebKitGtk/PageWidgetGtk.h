#pragma once

#include "platform/UIKit/ForeignWidgetGtk.h"

#include <webkit/webkit.h>

namespace zuvi {

/// The type of a page's widget, which leaves touches to views that lie over it.
GType pageWidgetType();
/// Who knows what lies over it; null: nothing does.
void setPlace(WebKitWebView* page, const ForeignWidget* place);

} // namespace zuvi
