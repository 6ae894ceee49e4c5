#include "xml/Memory.h"

#include <cstdlib>
#include <functional>
#include <limits>
#include <xercesc/util/OutOfMemoryException.hpp>

namespace xmlvalues {

void* TMemory::allocate(XMLSize_t size) {
  const bool fits = size < std::numeric_limits<XMLSize_t>::max() - sizeof(TLink) &&
                    (guard_ == nullptr || guard_->Allows(size, inUse_ + sizeof(TLink)));
  auto* const link = fits ? static_cast<TLink*>(std::malloc(sizeof(TLink) + size)) : nullptr;
  if (link == nullptr) throw xercesc::OutOfMemoryException();
  *link = {&ring_, ring_.after, size};
  ring_.after->before = link;
  ring_.after = link;
  inUse_ += sizeof(TLink) + size;
  return link + 1;
}

void TMemory::deallocate(void* block) {
  if (block == nullptr) return;
  TLink* const link = static_cast<TLink*>(block) - 1;
  if (Holds(*link, document_)) return FreeAll();
  inUse_ -= sizeof(TLink) + link->size;
  link->before->after = link->after;
  link->after->before = link->before;
  std::free(link);
}

bool TMemory::Holds(const TLink& link, const void* address) {
  const auto* const begin = reinterpret_cast<const std::byte*>(&link + 1);
  const std::less<> before;
  return !before(address, begin) && before(address, begin + link.size);
}

xercesc::MemoryManager* TMemory::getExceptionMemoryManager() { return this; }

void TMemory::FreeAll() {
  while (ring_.after != &ring_) {
    TLink* const link = ring_.after;
    ring_.after = link->after;
    std::free(link);
  }
  delete this;
}

void TMemory::LeaveTo(const void* document) {
  guard_ = nullptr;
  document_ = document;
}

}  // namespace xmlvalues
