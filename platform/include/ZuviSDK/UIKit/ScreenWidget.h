#pragma once

// The one public header that names the toolkit: a program that has windows of its own places the
// screen among its widgets with it.

#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/Export.h>

#include <gtk/gtk.h>

namespace zuvi {

/// A widget that shows `UIScreen::main()`, fits it to its own size and passes touches and keys on.
/// One at a time. Call after `gtk_init`; the main queue is attached to the event loop by it.
/// `safeArea` is kept free of controls, as under a phone's notch.
ZUVI_API GtkWidget* screenWidgetNew(UIEdgeInsets safeArea = {});

} // namespace zuvi
