// Compiled into each test program, where the sanitizers' runtimes look for it.
#ifdef __SANITIZE_ADDRESS__

// It keeps offsets in place of pointers, which the leak check can't follow.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\n";
}

#endif
#ifdef __SANITIZE_THREAD__

// The toolkit's locks are not instrumented, so its own threads seem to race with each other.
extern "C" const char* __tsan_default_suppressions() {
  return "called_from_lib:libglib-2.0.so.0\n"
         "called_from_lib:libgio-2.0.so.0\n"
         "called_from_lib:libgobject-2.0.so.0\n";
}

#endif
