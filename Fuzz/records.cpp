// Any records and trees of records: what is defined is defined as the record says, and what is not has said so.
//
// Input: bytes that choose keys, kinds of values and short texts; see TMaker.
#include <cstdint>
#include <sstream>

#include "Fuzz.h"
#include "NQM_TClient.h"
#include "NQ_TArray.h"
#include "TName.h"

namespace {

using fuzz::Check;

constexpr const char* kKeys[] = {"Type",
                                 "Type",
                                 "Value",
                                 "Value:",
                                 "Format",
                                 "Category",
                                 "Elem",
                                 "Extract",
                                 "RegEx",
                                 "Info",
                                 "Host",
                                 "UserInfo",
                                 "Description",
                                 "UserDescription",
                                 "LocalizationFile",
                                 "Server",
                                 "Method",
                                 "Params",
                                 "P1",
                                 "P2",
                                 "P3",
                                 "P4",
                                 "Definition",
                                 "Dependencies",
                                 "Cached",
                                 "Other",
                                 "FormattingOptions"};
constexpr const char* kTexts[] = {"Name",        "URL",  "Time",   "Number", "AutoNumber", "Nme", "",    "s",  "#80",
                                  "Conditional", "<a/>", "<<b/>>", "%s",     "_,1",        "0,2", "(.)", "%n", "x"};
constexpr const char* kNames[] = {"a", "b", "c", "d", ""};

/// Makes values out of bytes; when they are used up, of zeros.
class TMaker {
 public:
  explicit TMaker(fuzz::TInput& input) : input_(input) {}

  template <std::size_t kCount>
  NQ_TString Of(const char* const (&texts)[kCount]) {
    return texts[input_.Byte() % kCount];
  }

  NQ_TTree Record() {
    NQ_TTree record;
    // Most records have a type: those that do not end early.
    if (input_.Byte() % 8 != 0) record.Add("Type", NQ_TString(kTexts[input_.Byte() % 5]));
    for (unsigned count = input_.Byte() % 8; count > 0; --count) record.Add(Of(kKeys), Value(0));
    return record;
  }

  NQ_TTree Records() {
    NQ_TTree records;
    for (unsigned count = input_.Byte() % 5; count > 0; --count)
      records.Add(Of(kNames), input_.Byte() % 8 == 0 ? Value(0) : NQ_TAny(Record()));
    return records;
  }

  NQ_TAny Value(int depth) {
    constexpr int kDeepest = 4;
    switch (input_.Byte() % (depth < kDeepest ? 12 : 8)) {
      case 0:
        return static_cast<int>(input_.Byte()) - 128;
      case 1:
        return input_.Byte() % 2 == 0;
      case 2:
        return NQ_TURL("file://h/<a/>");
      case 3:
        return NQ_TTime::FromMilliseconds(1e9 * input_.Byte());
      case 4:
        return {};
      case 5:
        return 0.5 * input_.Byte();
      case 8:
        return Filled(NQ_TTree(), depth);
      case 9:
        return Filled(NQ_TDict(), depth);
      case 10: {
        NQ_TArray array;
        for (unsigned count = input_.Byte() % 4; count > 0; --count) array.Add(Value(depth + 1));
        return array;
      }
      default:
        return Of(kTexts);
    }
  }

 private:
  template <class Container>
  NQ_TAny Filled(Container container, int depth) {
    for (unsigned count = input_.Byte() % 4; count > 0; --count) container.Add(Of(kKeys), Value(depth + 1));
    return container;
  }

  fuzz::TInput& input_;
};

/// A configuration with one resource, "r"; every other request is answered as the input says.
class TReplies final : public NQM_ITransport {
 public:
  NQ_TAny Call(const NQM_TAddress&, const NQ_TDict& request, std::chrono::milliseconds) override {
    const NQ_TAny* const path = request.ValueOfKey("P1");
    if (request.At("M") != NQ_TAny("[]") || path == nullptr) return maker->Value(0);
    if (*path == NQ_TAny("/Resources/t/n/s")) return "r";
    if (*path == NQ_TAny("/Resources/t/n")) return NQ_TTree().Add("s", "r");
    if (path->As<NQ_TArray>() != nullptr) return NQ_TDict().Add("/Resources/r", NQ_TAny(resource));
    return resource;
  }

  TMaker* maker = nullptr;
  NQ_TAny resource{};
};

const std::shared_ptr<TReplies>& Replies() {
  static const auto& replies = *new std::shared_ptr<TReplies>(std::make_shared<TReplies>());
  return replies;
}

/// What was written to standard error since it was asked last.
std::ostringstream& Said() {
  static auto& said = *new std::ostringstream;
  return said;
}

bool SaidFailure(const NQ_TString& name) {
  const std::string text = Said().str();
  Said().str("");
  return text.starts_with("Defining VexoName " + std::string(name.Narrow()) + " failed\n");
}

NQ_TString TextOf(const NQ_TTree& record, const char* key, const char* fallback) {
  const NQ_TAny* const value = record.ValueOfKey(key);
  return value == nullptr ? NQ_TString(fallback) : value->ValueOr<NQ_TString>("not a text");
}

// One record: all of it is there, or it is known what is not.
void DefineOne(TName& names, const NQ_TString& name, const NQ_TTree& record) {
  const bool before = names.IsDefined(name);
  names.SetError(TName::TName_ErrorNone);
  const bool ok = names.Define(name, record, true);
  const bool rejected = names.GetError() != TName::TName_ErrorNone;
  const bool failed = SaidFailure(name);
  Check(ok + rejected + failed == 1, "a record is defined, rejected or said to have failed");
  if (rejected) Check(names.IsDefined(name) == before, "a rejected record changes nothing");
  if (!ok) return;
  Check(!before && names.IsDefined(name) && names.IsUserDefined(name), "the name is there");
  Check(names.GetCategory(name) == TextOf(record, "Category", "misc"), "with its category");
  Check(names.GetDescription(name) == TextOf(record, "Description", ""), "and its description");
  Check(names.GetLocalizationFile(name) == TextOf(record, "LocalizationFile", "templates"), "and its file");
  const bool asks = record.HasKey("Server") && record.HasKey("Method");
  const bool hasNoValue = names.GetType(name) == TName::TName_TypeTime && !record.HasKey("Value");
  Check(names.HasValue(name) == (!asks && !hasNoValue), "and its value, unless a service has it");
}

// A tree of records: all of them, or those before the one that failed.
void DefineTree(TName& names, const NQ_TTree& records, const char* scope) {
  Replies()->resource = records;
  names.SetError(TName::TName_ErrorNone);
  const bool ok = names.Define("t", "n", scope, "*", true);
  const bool rejected = names.GetError() > TName::TName_ErrorAlreadyDefined;
  const bool failed = !Said().str().empty();
  Said().str("");
  Check(ok + rejected + failed == 1, "a tree is defined, or it is known why not");
  bool missing = false;
  for (NQ_TConstIterator i(records); !i.IsDone(); i.Next()) {
    if (i.Value().As<NQ_TTree>() == nullptr) continue;
    missing = missing || !names.IsDefined(i.Key());
    Check(!ok || !missing, "every record of the tree is defined");
  }
}

void DefineAnything(TName& names, NQ_TAny reply) {
  Replies()->resource = std::move(reply);
  for (const char* scope : {"s", "*"}) {
    names.Define("t", "n", scope, "*", false);
    names.Define("t", "n", scope, "a", false);
  }
  Said().str("");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::Quiet();
  std::cerr.rdbuf(Said().rdbuf());
  NQM_TClient::SetTransport(Replies());
  NQ_TTime::SetClock([] { return 1.7e12; });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::TInput input(data, size);
  TMaker maker(input);
  Replies()->maker = &maker;
  TName names;
  TNameLimits limits;
  limits.tokens = 100;
  limits.characters = 1000;
  limits.nestedDepth = 8;
  limits.queries = 20;
  limits.regexMatch = 10'000;
  limits.regexRecursion = 1'000;
  names.SetLimits(limits);
  for (unsigned count = input.Byte() % 16; count > 0; --count) {
    const NQ_TString name = maker.Of(kNames);
    DefineOne(names, name, maker.Record());
  }
  DefineTree(names, maker.Records(), input.Byte() % 2 == 0 ? "s" : "*");
  DefineAnything(names, maker.Value(0));
  const NQ_TString text("<a/><b format=\"%d\"/><c/><d/>");
  NQ_TString result;
  for (int times = 0; times < 2; ++times) {
    names.Resolve(text, result);
    names.Resolve(text, result);
    names.ClearCaches();
  }
  return 0;
}
