// Copy-on-write storage of the containers.
#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

/// A content that copies share until one of them is changed. Reading from several threads is safe; each owner may
/// change its own copy. Once a reference to write through has left the container (`Lend`), copies no longer share with
/// it, so that what is written later shows in one container only.
template <class Content>
class NQ_TShared {
 public:
  NQ_TShared() = default;
  NQ_TShared(const NQ_TShared& other) : cell_(other.Share()) {}
  NQ_TShared(NQ_TShared&& other) noexcept : cell_(std::exchange(other.cell_, nullptr)) {}
  ~NQ_TShared() { Release(); }
  NQ_TShared& operator=(const NQ_TShared& other) {
    if (this != &other) {
      TCell* const shared = other.Share();
      Release();
      cell_ = shared;
    }
    return *this;
  }
  /// The other may lie inside this content: it is emptied before the content goes.
  NQ_TShared& operator=(NQ_TShared&& other) noexcept {
    NQ_TShared moved(std::move(other));
    std::swap(cell_, moved.cell_);
    return *this;
  }

  /// The content, or null when it was never written.
  const Content* Read() const { return cell_ == nullptr ? nullptr : &cell_->content; }
  /// The content, made this owner's own.
  Content& Write() {
    if (cell_ == nullptr) {
      cell_ = new TCell;
    } else if (cell_->owners.load(std::memory_order_acquire) != 1) {
      auto* const own = new TCell(cell_->content);
      Release();
      cell_ = own;
    }
    return cell_->content;
  }
  /// As Write, when a reference into the content is given away.
  Content& Lend() {
    Content& content = Write();
    cell_->lent = true;
    return content;
  }
  /// Without content, as if it had never been written.
  void Reset() { *this = NQ_TShared(); }
  bool Same(const NQ_TShared& other) const { return cell_ == other.cell_; }

 private:
  struct TCell {
    TCell() = default;
    explicit TCell(const Content& copied) : content(copied) {}
    std::atomic<std::uint32_t> owners{1};
    bool lent = false;
    Content content;
  };

  TCell* Share() const {
    if (cell_ == nullptr) return nullptr;
    if (cell_->lent) return new TCell(cell_->content);
    cell_->owners.fetch_add(1, std::memory_order_relaxed);
    return cell_;
  }
  void Release() noexcept {
    if (cell_ != nullptr && cell_->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) delete cell_;
  }

  TCell* cell_ = nullptr;
};
