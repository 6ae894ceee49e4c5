#include "NQ_TPacker.h"

#include <bit>
#include <memory>

#include "NQ_EException.h"
#include "NQ_Initialization.h"
#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "NQ_TList.h"
#include "NQ_TTime.h"
#include "NQ_TTree.h"
#include "NQ_TURL.h"

namespace {

constexpr int kMaxDepth = 200;  // objects in objects; bounds the stack that unpacking takes

[[noreturn]] void Malformed(const char* what) {
  nq::Throw(NQ_EException(NQ_TString("Malformed packed data: ") + what));
}

}  // namespace

// Classes register lazily; those that travel in variants must be known before the first one arrives.
bool __NQ_INITIALIZATION_FUNCTION_NQ_Base__() {  // NOLINT(bugprone-reserved-identifier)
  static const bool done = [] {
    NQ_TString::NQ_ClassObject(), NQ_TInt32::NQ_ClassObject(), NQ_TBool::NQ_ClassObject();
    NQ_TDouble::NQ_ClassObject(), NQ_TTime::NQ_ClassObject(), NQ_TInterval::NQ_ClassObject();
    NQ_TURL::NQ_ClassObject(), NQ_TDict::NQ_ClassObject(), NQ_TTree::NQ_ClassObject();
    NQ_TArray::NQ_ClassObject(), NQ_TList::NQ_ClassObject(), NQ_EException::NQ_ClassObject();
    NQ_EIllegalCastFromAny::NQ_ClassObject(), NQ_ENoMatchingTreeKey::NQ_ClassObject();
    NQ_EEntryIsNotASubtree::NQ_ClassObject(), NQ_EOutOfMemory::NQ_ClassObject();
    return true;
  }();
  return done;
}

void NQ_TPacker::Put(char tag, std::uint64_t value, unsigned size) {
  bytes_.push_back(tag);
  for (unsigned i = 0; i < size; ++i) bytes_.push_back(static_cast<char>(value >> (8 * i)));
}

void NQ_TPacker::BeginClass(const char* name) {
  bytes_.push_back('{');
  PackString(name);
}

void NQ_TPacker::EndClass(const char* name) {
  bytes_.push_back('}');
  PackString(name);
}

void NQ_TPacker::PackBool(bool value) { Put('b', value ? 1 : 0, 1); }

void NQ_TPacker::PackInt32(std::int32_t value) { Put('i', static_cast<std::uint32_t>(value), 4); }

void NQ_TPacker::PackDouble(double value) { Put('d', std::bit_cast<std::uint64_t>(value), 8); }

void NQ_TPacker::PackString(const NQ_TString& value) {
  Put('s', value.Length(), 4);
  for (const char16_t unit : value.StringView()) {
    bytes_.push_back(static_cast<char>(unit & 0xFF));
    bytes_.push_back(static_cast<char>(unit >> 8));
  }
}

void NQ_TPacker::PackAny(const NQ_TAny& value) {
  if (value.IsNull() || value.IsIllegal()) {
    bytes_.push_back(value.IsNull() ? '0' : '-');
    return;
  }
  const auto* const object = value.As<NQ_IPackable>();
  if (object == nullptr) nq::Throw(NQ_EException("The object held by reference cannot be packed"));
  bytes_.push_back('*');
  BeginClass(value.ClassName());
  object->NQ_Pack(*this);
  EndClass(value.ClassName());
}

NQ_TUnpacker::NQ_TUnpacker(std::string_view bytes, std::size_t maxItems) : rest_(bytes), itemsLeft_(maxItems) {
  __NQ_INITIALIZATION_FUNCTION_NQ_Base__();
}

void NQ_TUnpacker::CountItem() {
  if (itemsLeft_ == 0) Malformed("there are more items than allowed");
  --itemsLeft_;
}

std::string_view NQ_TUnpacker::Take(std::size_t count) {
  if (count > rest_.size()) Malformed("it ends too early");
  const std::string_view taken = rest_.substr(0, count);
  rest_.remove_prefix(count);
  return taken;
}

char NQ_TUnpacker::TakeTag() { return Take(1).front(); }

void NQ_TUnpacker::Expect(char tag) {
  if (TakeTag() != tag) Malformed("an item is of another kind");
}

std::uint64_t NQ_TUnpacker::Number(char tag, unsigned size) {
  Expect(tag);
  const std::string_view bytes = Take(size);
  std::uint64_t value = 0;
  for (unsigned i = 0; i < size; ++i) value |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
  return value;
}

void NQ_TUnpacker::BeginClass(const char* name) {
  Expect('{');
  if (!(UnpackString() == name)) Malformed("a section begins under another name");
}

void NQ_TUnpacker::EndClass(const char* name) {
  Expect('}');
  if (!(UnpackString() == name)) Malformed("a section ends under another name");
}

bool NQ_TUnpacker::UnpackBool() { return Number('b', 1) != 0; }

std::int32_t NQ_TUnpacker::UnpackInt32() { return static_cast<std::int32_t>(Number('i', 4)); }

double NQ_TUnpacker::UnpackDouble() { return std::bit_cast<double>(Number('d', 8)); }

NQ_TString NQ_TUnpacker::UnpackString() {
  CountItem();
  const std::size_t length = Number('s', 4);
  const std::string_view bytes = Take(length * 2);
  if (length == 0) return {};
  NQ_TString text;
  char16_t* const out = text.AppendUninitialized(static_cast<unsigned int>(length));
  for (std::size_t i = 0; i < length; ++i) {
    const unsigned low = static_cast<unsigned char>(bytes[2 * i]);
    const unsigned high = static_cast<unsigned char>(bytes[2 * i + 1]);
    out[i] = static_cast<char16_t>(low | high << 8);
  }
  return text;
}

NQ_TAny NQ_TUnpacker::UnpackAny() {
  CountItem();
  const char tag = TakeTag();
  if (tag == '0') return {};
  if (tag == '-') return NQ_TAny::Illegal();
  if (tag != '*') Malformed("a variant begins with an unknown tag");
  if (depth_ >= kMaxDepth) Malformed("objects nest too deep");
  Expect('{');
  const NQ_TString name = UnpackString();
  const NQ_TClass* const classObject = NQ_TClass::Find(name.Narrow());
  if (classObject == nullptr || classObject->Factory() == nullptr) Malformed("an object is of an unknown class");
  const std::unique_ptr<NQ_TObject> object(classObject->Factory()());
  auto* const packable = dynamic_cast<NQ_IPackable*>(object.get());
  if (packable == nullptr) Malformed("an object is of a class that cannot be unpacked");
  ++depth_;
  packable->NQ_Unpack(*this);
  --depth_;
  EndClass(name.c_str());
  return NQ_TAny(std::move(*packable));
}
