// NQ_TArray and NQ_TList, with what they share.
#include <ostream>

#include "NQ_TArray.h"
#include "NQ_TList.h"

namespace {

bool SameElements(const NQ_IIteratable& a, const NQ_IIteratable& b) {
  NQ_TConstIterator i(a);
  NQ_TConstIterator j(b);
  for (; !i.IsDone() && !j.IsDone(); i.Next(), j.Next())
    if (!(i.Value() == j.Value())) return false;
  return i.IsDone() && j.IsDone();
}

void PrintElements(const NQ_IIteratable& container, char open, char close, std::ostream& out) {
  out << open;
  const char* separator = "";
  for (NQ_TConstIterator i(container); !i.IsDone(); i.Next(), separator = ", ") out << separator << i.Value();
  out << close;
}

void PackElements(const NQ_IIteratable& container, unsigned int count, NQ_IPacking& packing) {
  packing.PackInt32(static_cast<std::int32_t>(count));
  for (NQ_TConstIterator i(container); !i.IsDone(); i.Next()) packing.PackAny(i.Value());
}

}  // namespace

NQ_TArray::NQ_TArray(std::initializer_list<NQ_TItemOf<NQ_TArray>> elements) {
  for (const auto& element : elements) Add(element.value);
}

NQ_TAny* NQ_TArray::At(unsigned int index) {
  auto& elements = shared_.Lend();
  if (index >= elements.size()) elements.resize(std::size_t{index} + 1);
  return &elements[index];
}

bool NQ_TArray::operator==(const NQ_TArray& other) const { return SameElements(*this, other); }

void NQ_TArray::PrintOn(std::ostream& out) const { PrintElements(*this, '[', ']', out); }

void NQ_TArray::NQ_Pack(NQ_IPacking& packing) const { PackElements(*this, Count(), packing); }

void NQ_TArray::NQ_Unpack(NQ_IUnpacking& unpacking) {
  shared_.Reset();
  for (std::uint32_t left = unpacking.UnpackCount(); left > 0; --left) Add(unpacking.UnpackAny());
}

NQ_TList::NQ_TList(std::initializer_list<NQ_TItemOf<NQ_TList>> values) {
  for (const auto& item : values) Add(item.value);
}

NQ_TListKey* NQ_TList::Add(NQ_TAny&& value) {
  auto& elements = shared_.Lend();
  elements.push_back({std::move(value)});
  return &elements.back();
}

bool NQ_TList::Contains(const NQ_TAny& value) const {
  for (NQ_TConstIterator i(*this); !i.IsDone(); i.Next())
    if (i.Value() == value) return true;
  return false;
}

bool NQ_TList::operator==(const NQ_TList& other) const { return SameElements(*this, other); }

void NQ_TList::PrintOn(std::ostream& out) const { PrintElements(*this, '(', ')', out); }

void NQ_TList::NQ_Pack(NQ_IPacking& packing) const { PackElements(*this, Count(), packing); }

void NQ_TList::NQ_Unpack(NQ_IUnpacking& unpacking) {
  shared_.Reset();
  for (std::uint32_t left = unpacking.UnpackCount(); left > 0; --left) Add(unpacking.UnpackAny());
}
