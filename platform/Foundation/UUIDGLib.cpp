#include "platform/Foundation/UUID.h"

#include <glib.h>

namespace zuvi {

std::string uuidString() {
  gchar* lower = g_uuid_string_random();
  gchar* upper = g_ascii_strup(lower, -1);
  std::string text = upper;
  g_free(upper);
  g_free(lower);
  return text;
}

} // namespace zuvi
