// Compiled into each test program, where the sanitizers' runtimes look for it, so nothing is
// hidden.
#pragma GCC visibility push(default)

#ifdef __SANITIZE_ADDRESS__

// Fontconfig keeps offsets in place of pointers, which the leak check can't follow; GLib lets go of
// a table that it made when it was loaded, as others may still read it. Without frame pointers it
// takes whole stacks to tell that table from others, which is too slow to film.
#ifdef ZUVI_REALTIME_TESTS
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\n"
         "leak:libglib-2.0\n";
}
#else
extern "C" const char* __asan_default_options() {
  return "fast_unwind_on_malloc=0:malloc_context_size=12";
}
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\n"
         "leak:call_init\n";
}
#endif

// What an unloaded library kept would look leaked.
extern "C" int dlclose(void*) {
  return 0;
}

#endif
#ifdef __SANITIZE_THREAD__

// The toolkit's locks are not instrumented, so its own threads seem to race with each other.
extern "C" const char* __tsan_default_suppressions() {
  return "called_from_lib:libglib-2.0.so.0\n"
         "called_from_lib:libgio-2.0.so.0\n"
         "called_from_lib:libgobject-2.0.so.0\n"
         "called_from_lib:libgtk-4.so.1\n";
}

#endif
