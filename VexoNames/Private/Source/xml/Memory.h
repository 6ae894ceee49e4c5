// The memory of one XML file.
#pragma once

#include <xercesc/framework/MemoryManager.hpp>

#include <cstddef>

namespace xmlvalues {

/// Asked before each block is given out.
class IMemoryGuard {
 public:
  /// False refuses the block: then memory has run out for the XML library, which is prepared for that anywhere. So many
  /// bytes are in use besides.
  virtual bool Allows(std::size_t size, std::size_t inUse) = 0;

 protected:
  ~IMemoryGuard() = default;
};

/// Gives memory to one parser and its document, and takes all of it back: the XML library forgets some of what it had,
/// as where a file ends amid a declaration. Lives on the heap. One thread at a time.
class TMemory : public xercesc::MemoryManager {
 public:
  static TMemory& Make() { return *new TMemory; }

  /// Null asks nobody. The guard must live until another is set, or LeaveTo or FreeAll called.
  void SetGuard(IMemoryGuard* guard) { guard_ = guard; }

  void* allocate(XMLSize_t size) override;
  void deallocate(void* block) override;
  xercesc::MemoryManager* getExceptionMemoryManager() override;

  /// Frees everything, and itself. What the parser has thrown lies there too.
  void FreeAll();
  /// To be called once the parser is gone and a document is left: frees everything when that gives itself back.
  void LeaveTo(const void* document);

 private:
  /// Stands before each block, in a ring; the ring's own place holds no block.
  struct alignas(std::max_align_t) TLink {
    TLink* before;
    TLink* after;
    std::size_t size = 0;  // of the block
  };

  TMemory() = default;
  ~TMemory() override = default;

  static bool Holds(const TLink& link, const void* address);

  TLink ring_{&ring_, &ring_};
  std::size_t inUse_ = 0;  // with what stands before the blocks
  IMemoryGuard* guard_ = nullptr;
  const void* document_ = nullptr;
};

struct TFreeAll {
  void operator()(TMemory* memory) const { memory->FreeAll(); }
};

}  // namespace xmlvalues
