#include "NQ_IPackable.h"

NQ_IPacking::~NQ_IPacking() = default;
NQ_IUnpacking::~NQ_IUnpacking() = default;

void NQ_IPackable::NQ_PackTypeID(NQ_IPacking& packing) const { NQ_PackClassObject(packing); }

NQ_IPackable& NQ_IPackable::operator=(NQ_IUnpacking& unpacking) {
  NQ_Unpack(unpacking);
  return *this;
}
