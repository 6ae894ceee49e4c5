// The memory of one XML file.
#pragma once

#include <xercesc/framework/MemoryManager.hpp>

#include <cstddef>

namespace xmlvalues {

/// Gives memory to one parser and its document, and takes all of it back: where a file ends amid a declaration, the XML
/// library forgets some of what it had. Lives on the heap. One thread at a time.
class TMemory : public xercesc::MemoryManager {
 public:
  static TMemory& Make() { return *new TMemory; }

  void* allocate(XMLSize_t size) override;
  void deallocate(void* block) override;
  xercesc::MemoryManager* getExceptionMemoryManager() override;

  /// Frees everything, and itself. What the parser has thrown lies there too.
  void FreeAll();
  /// Goes by itself when the last block is given back: to be called once the parser is gone and a document is left.
  void LeaveToDocument() { ownsItself_ = true; }

 private:
  /// Stands before each block, in a ring; the ring's own place holds no block.
  struct alignas(std::max_align_t) TLink {
    TLink* before;
    TLink* after;
  };

  TMemory() = default;
  ~TMemory() override = default;

  TLink ring_{&ring_, &ring_};
  bool ownsItself_ = false;
};

struct TFreeAll {
  void operator()(TMemory* memory) const { memory->FreeAll(); }
};

}  // namespace xmlvalues
