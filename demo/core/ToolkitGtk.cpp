#include "demo/core/Toolkit.h"

#include <gtk/gtk.h>

namespace zuvi::demo {

bool startToolkit(const std::string& name, std::optional<double> textScale) {
  g_set_prgname(name.c_str());
  if (!gtk_init_check()) return false;
  if (textScale)
    g_object_set(gtk_settings_get_default(), "gtk-xft-dpi", int(*textScale * 96 * 1024), nullptr);
  return true;
}

} // namespace zuvi::demo
