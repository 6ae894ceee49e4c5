// The recursive lock.
#pragma once

#include <mutex>

/// The thread that holds it may lock it again and must unlock it as often. Works with std::lock_guard too.
class NQ_TMutex {
 public:
  NQ_TMutex& Lock() {
    mutex_.lock();
    return *this;
  }
  NQ_TMutex& Unlock() {
    mutex_.unlock();
    return *this;
  }
  void lock() { mutex_.lock(); }
  void unlock() { mutex_.unlock(); }

 private:
  std::recursive_mutex mutex_;
};
