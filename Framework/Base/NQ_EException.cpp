#include "NQ_EException.h"

#include <cstring>
#include <ostream>
#include <string>
#include <typeinfo>

NQ_TClass::TInterfaceNames NQ_TThrowable::NQ_Interfaces() {
  static constexpr const char* kNames[] = {"NQ_IThrowable", "NQ_IPackable", "NQ_IPrintable"};
  return kNames;
}

const void* NQ_TThrowable::NQ_DynamicInfo(const char* name) const {
  if (name != nullptr && std::strcmp(name, "NQ_IThrowable") == 0) return static_cast<const NQ_IThrowable*>(this);
  if (name != nullptr && std::strcmp(name, "NQ_IPackable") == 0) return static_cast<const NQ_IPackable*>(this);
  if (name != nullptr && std::strcmp(name, "NQ_IPrintable") == 0) return static_cast<const NQ_IPrintable*>(this);
  return NQ_TObject::NQ_DynamicInfo(name);
}

void NQ_EException::__PREPARE_FOR_THROW__(std::uint32_t line, const char* file) {
  line_ = line;
  file_ = file;
  trace_.Add(NQ_TString(std::string(file) + ':' + std::to_string(line)));
}

void NQ_EException::NQ_Throw() const { throw NQ_EException(*this); }

void NQ_EException::PrintOn(std::ostream& out) const {
  out << ClassName() << ": " << message_;
  if (!data_.IsNull()) out << " [" << data_ << ']';
  if (!file_.Empty()) out << " (" << file_ << ':' << std::to_string(line_) << ')';
}

void NQ_EException::NQ_Pack(NQ_IPacking& packing) const {
  packing.PackString(message_);
  packing.PackAny(data_);
  packing.PackString(file_);
  packing.PackInt32(static_cast<std::int32_t>(line_));
  trace_.NQ_Pack(packing);
}

void NQ_EException::NQ_Unpack(NQ_IUnpacking& unpacking) {
  message_ = unpacking.UnpackString();
  data_ = unpacking.UnpackAny();
  file_ = unpacking.UnpackString();
  line_ = static_cast<std::uint32_t>(unpacking.UnpackInt32());
  trace_.NQ_Unpack(unpacking);
}

bool NQ_EException::operator==(const NQ_EException& other) const {
  return message_ == other.message_ && data_ == other.data_ && file_ == other.file_ && line_ == other.line_;
}
