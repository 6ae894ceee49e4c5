#include "SimpleXMLValueLookupMemory.h"

#include <cstdlib>
#include <limits>
#include <xercesc/util/OutOfMemoryException.hpp>

namespace xmlvalues {

void* TMemory::allocate(XMLSize_t size) {
  const bool fits = size < std::numeric_limits<XMLSize_t>::max() - sizeof(TLink);
  auto* const link = fits ? static_cast<TLink*>(std::malloc(sizeof(TLink) + size)) : nullptr;
  if (link == nullptr) throw xercesc::OutOfMemoryException();
  *link = {&ring_, ring_.after};
  ring_.after->before = link;
  ring_.after = link;
  return link + 1;
}

void TMemory::deallocate(void* block) {
  if (block == nullptr) return;
  TLink* const link = static_cast<TLink*>(block) - 1;
  link->before->after = link->after;
  link->after->before = link->before;
  std::free(link);
  if (ownsItself_ && ring_.after == &ring_) delete this;
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

}  // namespace xmlvalues
