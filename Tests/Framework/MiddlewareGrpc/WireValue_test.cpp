#include "Private/WireValue.h"

#include <gtest/gtest.h>

#include "Middleware.pb.h"
#include "MiddlewareGrpc/Support.h"
#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "Private/WireReply.h"
#include "Private/WireText.h"

namespace grpc_test {
namespace {

using nq::wire::FromText;
using nq::wire::FromValue;
using nq::wire::ToText;
using nq::wire::ToValue;
using vexonames::wire::Value;

TEST(WireText, UnpairedSurrogatesStay) {
  base_test::TRandom random(1);
  const std::u16string alphabet = {u'a', 0xE9, 0xD7FF, 0xE000, 0xFFFF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0};
  for (int round = 0; round < 20'000; ++round) {
    const NQ_TString text(random.Word(alphabet, 6));
    ASSERT_EQ(ToText(FromText(text)), text) << text;
  }
  const struct {
    const char* name;
    std::string bytes;
    std::u16string text;
  } rows[] = {
      {"cut short", "a\xED\xA0", u"a\xFFFD\xFFFD"},  // two pieces, as for UTF-8
      {"no surrogate", "\xED\x9F\xBF\xED\xED", u"\xD7FF\xFFFD\xFFFD"},
      {"no UTF-8", "\xFFz", u"\xFFFDz"},
      {"pair in two pieces", "\xED\xA0\xBD\xED\xB8\x80", u"\xD83D\xDE00"},
  };
  for (const auto& row : rows) EXPECT_EQ(ToText(row.bytes), NQ_TString(row.text)) << row.name;
}

TEST(WireValue, EveryKindComesBackUnchanged) {
  for (const NQ_TAny& value : Values()) {
    const std::string bytes = FromValue(value);
    const NQ_TAny again = ToValue(bytes, {});
    EXPECT_EQ(Packed(again), Packed(value)) << value;
    EXPECT_EQ(FromValue(again), bytes) << value;
    EXPECT_STREQ(again.ClassName(), value.ClassName());
  }
  const NQ_TString referred("x");
  EXPECT_EQ(ToValue(FromValue(NQ_TAny(static_cast<const NQ_IInterface*>(&referred))), {}), NQ_TAny(referred));
}

TEST(WireValue, WhatCannotTravelIsRefused) {
  EXPECT_EQ(ToValue(FromValue(Nested(200)), {}), Nested(200));
  EXPECT_EQ(Thrown([] { FromValue(Nested(201)); }), "NQ_EException: values nest more than 200 deep");
  EXPECT_EQ(Thrown([] { FromValue(NQ_TPointer()); }), "NQ_EException: A pointer cannot be packed");
  const NQM_TClient client;
  NQ_TAny address;
  address = const_cast<NQM_TClient*>(&client);
  EXPECT_EQ(Thrown([&] { FromValue(address); }), "NQ_EException: A pointer cannot be packed");
}

/// Messages in each other.
std::string Deep(int depth) {
  Value value;
  for (; depth > 1; --depth) {
    Value outer;
    outer.set_kind(Value::ARRAY);
    outer.add_values()->Swap(&value);
    value.Swap(&outer);
  }
  return value.SerializeAsString();
}

std::string Bytes(Value::Kind kind, int texts, int values, const std::string& text = {}) {
  Value value;
  value.set_kind(kind);
  value.set_text(text);
  while (texts-- > 0) value.add_texts("t");
  while (values-- > 0) value.add_values();
  return value.SerializeAsString();
}

TEST(WireValue, MalformedMessagesAreRefused) {
  const std::string groups(300, '\x0B');  // field 1 begins a group, and so on
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "\x32\xFF\xFF\xFF\x7F";  // each claims to hold all that follows
  const std::string packed = Packed(NQ_TAny(1));
  const struct {
    const char* name;
    std::string bytes;
    const char* reason;
  } rows[] = {
      {"no message", "\xFF\xFF\xFF", "a value is malformed"},
      {"length past the end", "\x32\x05", "a value is malformed"},
      {"unknown kind", Bytes(static_cast<Value::Kind>(14), 0, 0), "a value is malformed"},
      {"negative kind", Bytes(static_cast<Value::Kind>(-1), 0, 0), "a value is malformed"},
      {"keys without values", Bytes(Value::DICT, 2, 1), "a value is malformed"},
      {"values without keys", Bytes(Value::TREE, 1, 2), "a value is malformed"},
      {"half a URL", Bytes(Value::URL, 2, 0), "a value is malformed"},
      {"object and more", Bytes(Value::OBJECT, 0, 0, packed + "x"), "a value is malformed"},
      {"no object", Bytes(Value::OBJECT, 0, 0), "Malformed packed data: it ends too early"},
      {"groups in groups", groups, "a value is malformed"},
      {"too deep", Deep(201), "values nest more than 200 deep"},
      {"without an end", deep, "values nest more than 200 deep"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(Thrown([&] { ToValue(row.bytes, {}); }), std::string("NQ_EException: ") + row.reason) << row.name;
}

TEST(WireValue, ValuesAndTextsAreCounted) {
  NQM_TGrpcLimits limits;
  limits.maxValues = 10;
  EXPECT_EQ(Thrown([&] { ToValue(Bytes(Value::DICT, 5, 5), limits); }), "");
  for (const std::string& bytes : {Bytes(Value::DICT, 6, 5), Bytes(Value::ARRAY, 0, 11), Bytes(Value::STRING, 11, 0)})
    EXPECT_EQ(Thrown([&] { ToValue(bytes, limits); }), "NQ_EException: there are more values than allowed");
  NQ_TArray many;  // in a packed object too
  for (int i = 0; i < 10; ++i) many.Add(NQ_TAny());
  EXPECT_EQ(Thrown([&] { ToValue(Bytes(Value::OBJECT, 0, 0, Packed(many)), limits); }),
            "NQ_EException: Malformed packed data: there are more items than allowed");
}

// Whatever happens to the bytes: an exception, or a value that travels.
TEST(WireValue, DamagedMessagesDoNoHarm) {
  base_test::TRandom random(2);
  for (const NQ_TAny& value : Values()) {
    const std::string whole = FromValue(value);
    if (whole.empty()) continue;
    for (int round = 0; round < 300; ++round) {
      std::string damaged = whole.substr(0, 1 + random.Below(static_cast<unsigned>(whole.size())));
      damaged[random.Below(static_cast<unsigned>(damaged.size()))] ^= static_cast<char>(1U << random.Below(8));
      try {
        const std::string again = FromValue(ToValue(damaged, {}));
        ASSERT_EQ(FromValue(ToValue(again, {})), again);
      } catch (const NQ_EException&) {
        continue;  // refused, which is as good
      }
    }
  }
}

/// The outcome of reading a reply: what it prints, or "class: message" of what is thrown.
std::string Outcome(const vexonames::wire::Reply& reply, const NQM_TGrpcLimits& limits = {}) {
  try {
    return Printed(nq::wire::ReadReply(reply, limits));
  } catch (const NQ_EException& exception) {
    return std::string(exception.ClassName()) + ": " + exception.NQ_Message().c_str();
  } catch (const nq::wire::TUnfit& unfit) {
    return "unfit: " + Printed(unfit.reason);
  } catch (const nq::wire::TFailed& failed) {
    return "failed: " + Printed(failed.reason);
  }
}

TEST(WireReply, CompressesWhatIsAskedFor) {
  const NQ_TAny text(NQ_TString(std::string(100'000, 'x')));
  vexonames::wire::Reply reply;
  nq::wire::WriteReply([&] { return text; }, true, reply);
  EXPECT_LT(reply.ByteSizeLong(), 1000U);
  EXPECT_EQ(nq::wire::ReadReply(reply, {}), text);
  NQM_TGrpcLimits limits;
  limits.maxMessageBytes = 50'000;
  EXPECT_EQ(Outcome(reply, limits), "unfit: the reply is malformed: it is larger than allowed");
  for (const int wrong : {-1, 1}) {
    auto lying = reply;
    lying.mutable_zipped_value()->set_size(
        static_cast<unsigned>(static_cast<int>(reply.zipped_value().size()) + wrong));
    EXPECT_EQ(Outcome(lying), "unfit: the reply is malformed: its compressed form is malformed");
  }
  reply.mutable_zipped_value()->mutable_zlib()->resize(20);
  EXPECT_EQ(Outcome(reply), "unfit: the reply is malformed: its compressed form is malformed");
}

TEST(WireReply, ExceptionsArriveAsWhatTheyAre) {
  vexonames::wire::Reply reply;
  nq::wire::RegisterExceptions();
  nq::wire::WriteReply([]() -> NQ_TAny { nq::Throw(NQ_ENoMatchingTreeKey("no key", 5), "There.cpp", 7); }, true, reply);
  try {
    nq::wire::ReadReply(reply, {});
    FAIL();
  } catch (const NQ_ENoMatchingTreeKey& exception) {
    EXPECT_EQ(Printed(exception), "NQ_ENoMatchingTreeKey: no key [5] (There.cpp:7)");
  }
  // A class that is not known, one that is no exception, none, one that cannot be made.
  for (const char* name : {"X_EForeign", "NQ_TDict", "", "NQ_TObject"}) {
    reply.mutable_exception()->set_class_name(name);
    EXPECT_EQ(Outcome(reply), "NQ_EException: no key") << name;
  }
  reply.mutable_exception()->set_data("\xFF");
  EXPECT_EQ(Outcome(reply), "unfit: the reply is malformed: a value is malformed");
  EXPECT_EQ(Outcome({}), "unfit: the reply is empty");
  vexonames::wire::Reply addressed;
  nq::wire::WriteReply([]() -> NQ_TAny { nq::Throw(NQ_EException("text", NQ_TPointer())); }, false, addressed);
  EXPECT_EQ(Outcome(addressed), "NQ_EException: text");
  nq::wire::WriteReply([] { return NQ_TAny(NQ_TPointer()); }, false, addressed);
  EXPECT_EQ(Outcome(addressed), "failed: the service's reply cannot travel: A pointer cannot be packed");
}

}  // namespace
}  // namespace grpc_test
