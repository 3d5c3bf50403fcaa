#pragma once

#include <gtk/gtk.h>

namespace zuvi {

/// Gives the kit's texts the size that the person chose for the desktop, now and at each change
/// while the widget lives. Call it when the widget has been put into a window.
void followTextSize(GtkWidget* widget);

} // namespace zuvi
