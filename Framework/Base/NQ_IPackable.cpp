#include "NQ_IPackable.h"

#include "NQ_EException.h"

NQ_IPacking::~NQ_IPacking() = default;
NQ_IUnpacking::~NQ_IUnpacking() = default;

std::uint32_t NQ_IUnpacking::UnpackCount() {
  const std::int32_t count = UnpackInt32();
  if (count < 0) nq::Throw(NQ_EException("Malformed packed data: a negative number of elements"));
  return static_cast<std::uint32_t>(count);
}

void NQ_IPackable::NQ_PackTypeID(NQ_IPacking& packing) const { NQ_PackClassObject(packing); }

NQ_IPackable& NQ_IPackable::operator=(NQ_IUnpacking& unpacking) {
  NQ_Unpack(unpacking);
  return *this;
}
