#include "regex/LargeStack.h"

#include <pthread.h>

#include <cstdint>

#include "text/ThreadKept.h"

namespace templatenames {
namespace {

// Where the running thread's stack ends. Asked once per thread: for the first thread the system reads a file.
class TStackEnd {
 public:
  TStackEnd() {
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) return;
    void* low = nullptr;
    std::size_t size = 0;
    if (pthread_attr_getstack(&attributes, &low, &size) == 0) low_ = reinterpret_cast<std::uintptr_t>(low);
    pthread_attr_destroy(&attributes);
  }

  std::uintptr_t Low() const { return low_; }  // 0: unknown

 private:
  std::uintptr_t low_ = 0;
};

void* Call(void* function) {
  (*static_cast<const std::function<void()>*>(function))();
  return nullptr;
}

}  // namespace

std::size_t StackLeft() {
  constexpr std::size_t kUnknown = 64 * 1024;
  const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  const std::uintptr_t low = TThreadKept<TStackEnd>::Mine().Low();
  return low == 0 || here < low ? kUnknown : here - low;
}

bool CallOnStack(std::size_t bytes, const std::function<void()>& function) {
  pthread_attr_t attributes;
  if (pthread_attr_init(&attributes) != 0) return false;
  pthread_t thread{};
  void* const argument = const_cast<std::function<void()>*>(&function);
  const bool started =
      pthread_attr_setstacksize(&attributes, bytes) == 0 && pthread_create(&thread, &attributes, &Call, argument) == 0;
  pthread_attr_destroy(&attributes);
  return started && pthread_join(thread, nullptr) == 0;
}

}  // namespace templatenames
