#include "NQ_EException.h"

#include <cstring>
#include <new>
#include <ostream>
#include <string>
#include <typeinfo>

NQ_TClass::TInterfaceNames NQ_TThrowable::NQ_Interfaces() {
  static constexpr const char* kNames[] = {NQ_IThrowable::NQ_ClassName(), NQ_IPackable::NQ_ClassName(),
                                           NQ_IPrintable::NQ_ClassName()};
  return kNames;
}

const void* NQ_TThrowable::NQ_DynamicInfo(const char* name) const {
  if (name == nullptr) return NQ_TObject::NQ_DynamicInfo(name);
  if (std::strcmp(name, NQ_IThrowable::NQ_ClassName()) == 0) return static_cast<const NQ_IThrowable*>(this);
  if (std::strcmp(name, NQ_IPackable::NQ_ClassName()) == 0) return static_cast<const NQ_IPackable*>(this);
  if (std::strcmp(name, NQ_IPrintable::NQ_ClassName()) == 0) return static_cast<const NQ_IPrintable*>(this);
  return NQ_TObject::NQ_DynamicInfo(name);
}

void NQ_EException::__PREPARE_FOR_THROW__(std::uint32_t line, const char* file) {
  line_ = line;
  file_ = file;
  trace_.Add(NQ_TString(std::string(file) + ':' + std::to_string(line)));
}

const char* NQ_EException::what() const noexcept {
  try {
    return message_.c_str();
  } catch (const std::bad_alloc&) {
    return "NQ_EException";
  }
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
