// Packed values from any bytes: an exception of the framework, or a value that travels.
#include <cstdint>

#include "Fuzz.h"
#include "NQ_EException.h"
#include "NQ_TPacker.h"

namespace {

std::string Packed(const NQ_TAny& value) {
  NQ_TPacker packer;
  packer.PackAny(value);
  return packer.Bytes();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  NQ_TAny value;
  try {
    NQ_TUnpacker unpacker({reinterpret_cast<const char*>(data), size});
    value = unpacker.UnpackAny();
  } catch (const NQ_EException&) {
    return 0;
  }
  const std::string packed = Packed(value);
  NQ_TUnpacker unpacker(packed);
  const NQ_TAny again = unpacker.UnpackAny();
  // By its bytes: a number that is none does not equal itself.
  fuzz::Check(Packed(again) == packed && unpacker.AtEnd(), "what was unpacked packs to the same bytes twice");
  fuzz::Check(again.ClassName() == std::string_view(value.ClassName()), "the class stays");
  NQ_TAny copy = value;
  copy.DynamicCast("NQ_IPackable");  // as for writing: the copy is a deep one
  fuzz::Check(Packed(copy) == packed, "a deep copy packs to the same bytes");
  return 0;
}
