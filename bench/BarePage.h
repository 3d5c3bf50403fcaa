#pragma once

#include <gtk/gtk.h>

namespace zuvi::bench {

/// The module's one symbol, `bareBrowser`: shows the page in the window with nothing of ours
/// between, measures it, and prints its figures. `start`: when it was asked for.
using BareBrowser = int(GtkWindow* window, const char* address, double start);

} // namespace zuvi::bench
