#pragma once

#include <memory>

#include <glib-object.h>

namespace zuvi {

struct ObjectUnref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
/// A reference to a toolkit object, adopted.
template <class T> using ObjectPointer = std::unique_ptr<T, ObjectUnref>;

struct Free {
  void operator()(gpointer memory) const { g_free(memory); }
};
using TextPointer = std::unique_ptr<char, Free>;

struct ErrorFree {
  void operator()(GError* error) const { g_error_free(error); }
};
using ErrorPointer = std::unique_ptr<GError, ErrorFree>;

} // namespace zuvi
