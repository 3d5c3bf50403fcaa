#pragma once

#include "platform/WebKitGtk/PointerGtk.h"

#include <webkit/webkit.h>

namespace zuvi {

/// The settings of every page.
ObjectPointer<WebKitSettings> makeSettings();

/// Refuses whatever a page may ask of the machine or of the window around it.
void refuseRights(WebKitWebView* page);

} // namespace zuvi
