// Copy-on-write storage of the containers.
#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

#include "NQ_Export.h"

/// What stands before a content that is shared.
struct NQ_EXPORT NQ_TSharedHead {
  NQ_TSharedHead() = default;
  NQ_TSharedHead(const NQ_TSharedHead&) = delete;
  NQ_TSharedHead& operator=(const NQ_TSharedHead&) = delete;
  virtual ~NQ_TSharedHead();

  /// Destroys a content that nobody owns any more. Contents nest as deep as their owners like: those far down wait
  /// until the stack is free again, and are then destroyed one after the other, on the same thread and before this
  /// returns to whoever is no destructor of a content.
  static void Destroy(NQ_TSharedHead* head) noexcept;

  std::atomic<std::uint32_t> owners{1};
  bool lent = false;
  std::uint64_t version = 0;

 private:
  NQ_TSharedHead* next_ = nullptr;  // of those that wait to be destroyed
};

/// A content that copies share until one of them is changed. Reading from several threads is safe; each owner may
/// change its own copy. Once a reference to write through has left the container (`Lend`), copies no longer share with
/// it, so that what is written later shows in one container only.
template <class Content>
class NQ_TShared {
 public:
  NQ_TShared() = default;
  NQ_TShared(const NQ_TShared& other) : head_(other.Share()) {}
  NQ_TShared(NQ_TShared&& other) noexcept : head_(std::exchange(other.head_, nullptr)) {}
  ~NQ_TShared() { Release(); }
  NQ_TShared& operator=(const NQ_TShared& other) {
    if (this != &other) {
      NQ_TSharedHead* const shared = other.Share();
      Release();
      head_ = shared;
    }
    return *this;
  }
  /// The other may lie inside this content: it is emptied before the content goes.
  NQ_TShared& operator=(NQ_TShared&& other) noexcept {
    NQ_TShared moved(std::move(other));
    std::swap(head_, moved.head_);
    return *this;
  }

  /// The content, or null when it was never written.
  const Content* Read() const { return head_ == nullptr ? nullptr : &Cell()->content; }
  /// The content, made this owner's own.
  Content& Write() {
    if (head_ == nullptr) {
      head_ = new TCell;
    } else if (head_->owners.load(std::memory_order_acquire) != 1) {
      auto* const own = new TCell(Cell()->content);
      Release();
      head_ = own;
    }
    return Cell()->content;
  }
  /// As Write, and gives the content a version.
  Content& Write(std::uint64_t version) {
    Content& content = Write();
    head_->version = version;
    return content;
  }
  /// As Write, when a reference into the content is given away.
  Content& Lend() {
    Content& content = Write();
    head_->lent = true;
    return content;
  }
  /// The version last given to the content; 0 when it has none, and once it is lent.
  std::uint64_t Version() const { return head_ == nullptr || head_->lent ? 0 : head_->version; }
  /// Without content, as if it had never been written.
  void Reset() { *this = NQ_TShared(); }
  bool Same(const NQ_TShared& other) const { return head_ == other.head_; }

 private:
  struct TCell final : NQ_TSharedHead {
    TCell() = default;
    explicit TCell(const Content& copied) : content(copied) {}
    Content content;
  };

  TCell* Cell() const { return static_cast<TCell*>(head_); }
  NQ_TSharedHead* Share() const {
    if (head_ == nullptr) return nullptr;
    if (head_->lent) return new TCell(Cell()->content);
    head_->owners.fetch_add(1, std::memory_order_relaxed);
    return head_;
  }
  void Release() noexcept {
    if (head_ != nullptr && head_->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) NQ_TSharedHead::Destroy(head_);
  }

  NQ_TSharedHead* head_ = nullptr;  // of a TCell
};
