// What the sanitizers are to know of libraries that are not built with them. Without sanitizers nobody asks.

/// gRPC orders its threads by atomics, which the thread sanitizer does not see in a library that it has not built: its
/// reports of what such libraries do by themselves are wrong. What our code does with memory is watched all the same.
extern "C" const char* __tsan_default_options();   // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __tsan_default_options() {  // NOLINT(bugprone-reserved-identifier)
  return "ignore_noninstrumented_modules=1";
}

/// libcares loses ten bytes, the name "localhost", at each look-up that the hosts file answers.
extern "C" const char* __lsan_default_suppressions();   // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return "leak:libcares.so";
}
