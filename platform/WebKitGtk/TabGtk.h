#pragma once

#include <webkit/webkit.h>

namespace zuvi {

/// Lets Tab lead out of a page after its last element, and out of one without any: the engine only
/// begins anew.
void letTabLeave(WebKitWebView* page);

} // namespace zuvi
