#include "Private/WireValue.h"

#include <google/protobuf/io/coded_stream.h>
#include <google/protobuf/wire_format_lite.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <iterator>

#include "Middleware.pb.h"
#include "NQ_EException.h"
#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "NQ_TList.h"
#include "NQ_TPacker.h"
#include "NQ_TTime.h"
#include "NQ_TTree.h"
#include "NQ_TURL.h"
#include "Private/WireText.h"

namespace nq::wire {

namespace {

namespace io = google::protobuf::io;
using google::protobuf::internal::WireFormatLite;
using vexonames::wire::Value;

[[noreturn]] void Refuse(const char* reason) { nq::Throw(NQ_EException(reason)); }

void CheckDepth(int depth) {
  if (depth > kMaxDepth) Refuse("values nest more than 200 deep");
}

// A message that does not fit its kind.
void Require(bool fits) {
  if (!fits) Refuse("a value is malformed");
}

void Write(const NQ_TAny& any, int depth, Value& out);
NQ_TAny Read(const Value& in, std::size_t& items);

/// How values of one class are written and read.
struct TForm {
  const char* className;
  void (*write)(const NQ_TAny& any, int depth, Value& out);
  NQ_TAny (*read)(const Value& in, std::size_t& items);  // items: as many may still be in packed objects
};

template <class T>
const T& Held(const NQ_TAny& any) {
  return *any.As<T>();
}

template <class T>
void WriteMilliseconds(const NQ_TAny& any, int, Value& out) {
  out.set_number(Held<T>(any).Milliseconds());
}

void WriteURL(const NQ_TAny& any, int, Value& out) {
  const auto& url = Held<NQ_TURL>(any);
  for (const NQ_TString& part : {url.Scheme(), url.Host(), url.Path()}) out.add_texts(FromText(part));
}

NQ_TAny ReadURL(const Value& in, std::size_t&) {
  Require(in.texts_size() == 3);
  NQ_TURL url;
  url.SetScheme(ToText(in.texts(0)));
  url.SetHost(ToText(in.texts(1)));
  url.SetPath(ToText(in.texts(2)));
  return NQ_TAny(std::move(url));
}

template <class T>
void WriteKeyed(const NQ_TAny& any, int depth, Value& out) {
  for (NQ_TConstIterator i(Held<T>(any)); !i.IsDone(); i.Next()) {
    out.add_texts(FromText(i.Key()));
    Write(i.Value(), depth + 1, *out.add_values());
  }
}

template <class T>
NQ_TAny ReadKeyed(const Value& in, std::size_t& items) {
  Require(in.texts_size() == in.values_size());
  T keyed;
  for (int i = 0; i < in.values_size(); ++i) keyed.Add(ToText(in.texts(i)), Read(in.values(i), items));
  return NQ_TAny(std::move(keyed));
}

template <class T>
void WriteSequence(const NQ_TAny& any, int depth, Value& out) {
  for (NQ_TConstIterator i(Held<T>(any)); !i.IsDone(); i.Next()) Write(i.Value(), depth + 1, *out.add_values());
}

template <class T>
NQ_TAny ReadSequence(const Value& in, std::size_t& items) {
  T sequence;
  for (const Value& value : in.values()) sequence.Add(Read(value, items));
  return NQ_TAny(std::move(sequence));
}

void WriteObject(const NQ_TAny& any, int, Value& out) {
  NQ_TPacker packer;
  packer.PackAny(any);
  out.set_text(packer.Bytes());
}

NQ_TAny ReadObject(const Value& in, std::size_t& items) {
  NQ_TUnpacker unpacker(in.text(), items);
  NQ_TAny any = unpacker.UnpackAny();
  items = unpacker.ItemsLeft();
  Require(unpacker.AtEnd());
  return any;
}

// By kind. Null and illegal have no class; the last row takes every class that has none of its own.
constexpr TForm kForms[] = {
    {"", [](const NQ_TAny&, int, Value&) {}, [](const Value&, std::size_t&) { return NQ_TAny(); }},
    {"", [](const NQ_TAny&, int, Value&) {}, [](const Value&, std::size_t&) { return NQ_TAny::Illegal(); }},
    {"NQ_TBool", [](const NQ_TAny& any, int, Value& out) { out.set_integer(Held<NQ_TBool>(any).Value() ? 1 : 0); },
     [](const Value& in, std::size_t&) { return NQ_TAny(in.integer() != 0); }},
    {"NQ_TInt32", [](const NQ_TAny& any, int, Value& out) { out.set_integer(any.AsInt32()); },
     [](const Value& in, std::size_t&) { return NQ_TAny(in.integer()); }},
    {"NQ_TDouble", [](const NQ_TAny& any, int, Value& out) { out.set_number(Held<NQ_TDouble>(any).Value()); },
     [](const Value& in, std::size_t&) { return NQ_TAny(in.number()); }},
    {"NQ_TString", [](const NQ_TAny& any, int, Value& out) { out.set_text(FromText(Held<NQ_TString>(any))); },
     [](const Value& in, std::size_t&) { return NQ_TAny(ToText(in.text())); }},
    {"NQ_TTime", WriteMilliseconds<NQ_TTime>,
     [](const Value& in, std::size_t&) { return NQ_TAny(NQ_TTime::FromMilliseconds(in.number())); }},
    {"NQ_TInterval", WriteMilliseconds<NQ_TInterval>,
     [](const Value& in, std::size_t&) { return NQ_TAny(NQ_TInterval(in.number())); }},
    {"NQ_TURL", WriteURL, ReadURL},
    {"NQ_TDict", WriteKeyed<NQ_TDict>, ReadKeyed<NQ_TDict>},
    {"NQ_TTree", WriteKeyed<NQ_TTree>, ReadKeyed<NQ_TTree>},
    {"NQ_TArray", WriteSequence<NQ_TArray>, ReadSequence<NQ_TArray>},
    {"NQ_TList", WriteSequence<NQ_TList>, ReadSequence<NQ_TList>},
    {"", WriteObject, ReadObject},
};
static_assert(std::size(kForms) == Value::Kind_ARRAYSIZE);

Value::Kind KindOf(const NQ_TAny& any) {
  if (any.IsNull()) return Value::NONE;
  if (any.IsIllegal()) return Value::ILLEGAL;
  const char* const name = any.ClassName();
  int kind = Value::BOOL;
  while (kind != Value::OBJECT && std::strcmp(kForms[kind].className, name) != 0) ++kind;
  return static_cast<Value::Kind>(kind);
}

void Write(const NQ_TAny& any, int depth, Value& out) {
  CheckDepth(depth);
  out.set_kind(KindOf(any));
  kForms[out.kind()].write(any, depth, out);
}

// How deep the message nests has been looked at before.
NQ_TAny Read(const Value& in, std::size_t& items) {
  Require(Value::Kind_IsValid(in.kind()));
  return kForms[in.kind()].read(in, items);
}

/// Looks at how deep a message nests, and counts its values and texts, without taking it apart.
class TScan {
 public:
  explicit TScan(std::size_t maxValues) : left_(maxValues) {}

  void Message(io::CodedInputStream& in, int depth) {
    constexpr auto kLengthDelimited = WireFormatLite::WIRETYPE_LENGTH_DELIMITED;
    CheckDepth(depth);
    while (const std::uint32_t tag = in.ReadTag()) {
      if (WireFormatLite::GetTagWireType(tag) == kLengthDelimited && left_-- == 0)
        Refuse("there are more values than allowed");
      if (tag == WireFormatLite::MakeTag(Value::kValuesFieldNumber, kLengthDelimited)) {
        const auto limit = in.ReadLengthAndPushLimit();
        Message(in, depth + 1);
        in.PopLimit(limit);
      } else {
        Require(WireFormatLite::SkipField(&in, tag));
      }
    }
    Require(in.ConsumedEntireMessage());
  }

 private:
  std::size_t left_;
};

int Size(std::string_view bytes) {
  if (bytes.size() > std::size_t{INT_MAX}) Refuse("a message is larger than 2 GiB");
  return static_cast<int>(bytes.size());
}

const std::uint8_t* Data(std::string_view bytes) { return reinterpret_cast<const std::uint8_t*>(bytes.data()); }

}  // namespace

std::string FromValue(const NQ_TAny& value) {
  Value message;
  Write(value, 1, message);
  std::string bytes;
  if (!message.SerializeToString(&bytes)) Refuse("a message is larger than 2 GiB");
  return bytes;
}

NQ_TAny ToValue(std::string_view bytes, const NQM_TGrpcLimits& limits) {
  io::CodedInputStream scanned(Data(bytes), Size(bytes));
  TScan(limits.maxValues).Message(scanned, 1);
  io::CodedInputStream in(Data(bytes), Size(bytes));
  in.SetRecursionLimit(kMaxDepth + 1);
  Value message;
  Require(message.ParseFromCodedStream(&in) && in.ConsumedEntireMessage());
  std::size_t items = limits.maxValues;
  return Read(message, items);
}

int MessageLimit(const NQM_TGrpcLimits& limits) {
  constexpr std::size_t kAround = 4096;
  return static_cast<int>(std::min<std::size_t>(limits.maxMessageBytes, INT_MAX - kAround) + kAround);
}

}  // namespace nq::wire
