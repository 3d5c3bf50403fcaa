#pragma once

// The toolkit's own declarations, for headers that name its types but need not include all of it.

using GtkWidget = struct _GtkWidget; // NOLINT(readability-identifier-naming)
using GtkWindow = struct _GtkWindow; // NOLINT(readability-identifier-naming)
