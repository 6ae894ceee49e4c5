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

// Pairs and unpaired ones are among the values that travel both ways.
TEST(WireText, BytesOfSurrogatesAreReadAsTheyAre) {
  const std::pair<std::string, std::u16string> rows[] = {
      {"a\xED\xA0", u"a\xFFFD\xFFFD"},  // cut short: two pieces, as for UTF-8
      {"\xED\x9F\xBF\xED\xED", u"\xD7FF\xFFFD\xFFFD"},
      {"\xFFz", u"\xFFFDz"},
      {"\xED\xA0\xBD\xED\xB8\x80", u"\xD83D\xDE00"},  // a pair in two pieces
  };
  for (const auto& [bytes, text] : rows) EXPECT_EQ(ToText(bytes), NQ_TString(text)) << text.size();
}

TEST(WireValue, WhatCannotTravelIsRefused) {
  EXPECT_EQ(ToValue(FromValue(Nested(200)), {}), Nested(200));
  EXPECT_EQ(Thrown([] { FromValue(Nested(201)); }), "NQ_EException: values nest more than 200 deep");
  NQM_TClient client;
  NQ_TAny address;
  address = &client;
  for (const NQ_TAny& pointer : {address, NQ_TAny(NQ_TPointer())})
    EXPECT_EQ(Thrown([&] { FromValue(pointer); }), "NQ_EException: A pointer cannot be packed");
  const NQ_TString referred("x");
  EXPECT_EQ(ToValue(FromValue(NQ_TAny(static_cast<const NQ_IInterface*>(&referred))), {}), NQ_TAny(referred));
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

std::string Bytes(int kind, int texts, int values, const std::string& text = {}) {
  Value value;
  value.set_kind(static_cast<Value::Kind>(kind));
  value.set_text(text);
  while (texts-- > 0) value.add_texts("t");
  while (values-- > 0) value.add_values();
  return value.SerializeAsString();
}

TEST(WireValue, MalformedMessagesAreRefused) {
  std::string endless;
  for (int i = 0; i < 100'000; ++i) endless += "\x32\xFF\xFF\xFF\x7F";  // each claims to hold all that follows
  const std::pair<const char*, std::vector<std::string>> rows[] = {
      {"a value is malformed",
       {"\xFF\xFF\xFF",            // no message
        "\x32\x05",                // a length past the end
        std::string(300, '\x0B'),  // groups in groups
        Bytes(14, 0, 0),           // an unknown kind
        Bytes(-1, 0, 0),           //
        Bytes(Value::DICT, 2, 1),  // keys without values
        Bytes(Value::TREE, 1, 2),  // values without keys
        Bytes(Value::URL, 2, 0),   // half a URL
        Bytes(Value::OBJECT, 0, 0, Packed(NQ_TAny(1)) + "x")}},
      {"Malformed packed data: it ends too early", {Bytes(Value::OBJECT, 0, 0)}},
      {"values nest more than 200 deep", {Deep(201), endless}},
  };
  for (const auto& row : rows)
    for (const std::string& bytes : row.second)
      EXPECT_EQ(Thrown([&] { ToValue(bytes, {}); }), std::string("NQ_EException: ") + row.first) << bytes.substr(0, 20);
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

/// The outcome of reading a reply: what it prints, or "class: message" of what is thrown.
std::string Outcome(const vexonames::wire::Reply& reply, const NQM_TGrpcLimits& limits = {}) {
  try {
    return Printed(nq::wire::ReadReply(reply, limits));
  } catch (const NQ_EException& exception) {
    return Printed(exception);
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
  const std::string malformed = "unfit: the reply is malformed: its compressed form is malformed";
  for (const unsigned wrong : {0U, 2U}) {
    auto lying = reply;
    lying.mutable_zipped_value()->set_size(reply.zipped_value().size() - 1 + wrong);
    EXPECT_EQ(Outcome(lying), malformed);
  }
  reply.mutable_zipped_value()->mutable_zlib()->resize(20);
  EXPECT_EQ(Outcome(reply), malformed);
}

TEST(WireReply, ExceptionsArriveAsWhatTheyAre) {
  vexonames::wire::Reply reply;
  nq::wire::RegisterExceptions();
  nq::wire::WriteReply([]() -> NQ_TAny { nq::Throw(NQ_ENoMatchingTreeKey("no key", 5), "There.cpp", 7); }, true, reply);
  EXPECT_EQ(Outcome(reply), "NQ_ENoMatchingTreeKey: no key [5] (There.cpp:7)");
  EXPECT_THROW(nq::wire::ReadReply(reply, {}), NQ_ENoMatchingTreeKey);
  // A class that is not known, one that is no exception, none, one that cannot be made.
  for (const char* name : {"X_EForeign", "NQ_TDict", "", "NQ_TObject"}) {
    reply.mutable_exception()->set_class_name(name);
    EXPECT_EQ(Outcome(reply), "NQ_EException: no key [5] (There.cpp:7)") << name;
  }
  reply.mutable_exception()->set_data("\xFF");
  EXPECT_EQ(Outcome(reply), "unfit: the reply is malformed: a value is malformed");
  EXPECT_EQ(Outcome({}), "unfit: the reply is empty");
  const auto addressed = []() -> NQ_TAny { nq::Throw(NQ_EException("text", NQ_TPointer()), "There.cpp", 8); };
  reply.Clear();
  nq::wire::WriteReply(addressed, false, reply);
  EXPECT_EQ(Outcome(reply), "NQ_EException: text (There.cpp:8)");  // what cannot travel stays behind
}

}  // namespace
}  // namespace grpc_test
