// Objects that a thread makes once and uses again and again.
#pragma once

namespace templatenames {

/// The running thread's T, made on first use and destroyed with the thread. A plain pointer stands in front of it:
/// looking at an object that is constructed at first use costs a check of its own. A destructor that runs after the
/// thread's T is gone gets another one, which is never freed.
template <class T>
class TThreadKept {
 public:
  static T& Mine() {
    T* const mine = mine_;
    return mine != nullptr ? *mine : New();
  }

 private:
  struct TOwner {
    TOwner() = default;
    TOwner(const TOwner&) = delete;
    TOwner& operator=(const TOwner&) = delete;
    ~TOwner() {
      mine_ = nullptr;
      gone_ = true;
    }
    T kept;
  };

  static T& New() {
    if (gone_) return *(mine_ = new T);
    thread_local TOwner owner;
    return *(mine_ = &owner.kept);
  }

  static inline thread_local constinit T* mine_ = nullptr;
  static inline thread_local constinit bool gone_ = false;
};

}  // namespace templatenames
