#include "NQ_TShared.h"

namespace {

// Deep enough for all that people write, shallow enough for the stack of any thread.
constexpr int kDepthOnStack = 64;

/// The destructions of contents that are under way on a thread.
struct TDestruction {
  int depth = 0;
  NQ_TSharedHead* waiting = nullptr;
};

constinit thread_local TDestruction destruction;

}  // namespace

NQ_TSharedHead::~NQ_TSharedHead() = default;

void NQ_TSharedHead::Destroy(NQ_TSharedHead* head) noexcept {
  TDestruction& mine = destruction;
  if (mine.depth == kDepthOnStack) {
    head->next_ = std::exchange(mine.waiting, head);
    return;
  }
  ++mine.depth;
  delete head;
  while (mine.depth == 1 && mine.waiting != nullptr) delete std::exchange(mine.waiting, mine.waiting->next_);
  --mine.depth;
}
