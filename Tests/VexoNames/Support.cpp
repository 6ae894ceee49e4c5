#include "Support.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <fstream>
#include <future>
#include <set>
#include <stdexcept>
#include <thread>

#include "NQ_TBoxed.h"
#include "TreeText.h"
#include "engine/ResolveValue.h"
#include "formatting/OptionsText.h"

namespace names_test {
namespace {

void Define(TName& names, const Line& line, TName::TName_Type type, int lookup = 0) {
  names.Define(line.key, type, TName::TName_Lookup(lookup));
}

std::string Marked(bool ok, const std::string& text) { return (ok ? "" : "! ") + text; }

template <class Template>
std::string ResolvedUrl(TName& names, const Template& text) {
  NQ_TURL url(S("old://h/p"));
  const bool ok = names.Resolve(text, url);
  return Marked(ok, Text(url.Scheme() + "|" + url.Host() + "|" + url.Path()));
}

/// What a stage leaves of a text, with its attribute in the token and in the definition.
template <const char* kAttribute>
void Cut(TName& names, Line& line) {
  const std::string attribute = kAttribute, specification = Text(line.value);
  Do(names, "text A = <<CDATA/>>" + Text(line.key));
  const std::string inToken = ResolvedToken(names, "A " + attribute + "=\"" + specification + "\"");
  Do(names, attribute + " A = " + specification);
  line.given = ResolvedToken(names, "A");
  EXPECT_EQ(Resolved(names, "<A/>"), line.given == "!" ? "! <A/>" : line.given) << specification;
  // A token cannot hold a quote.
  EXPECT_TRUE(inToken == line.given || specification.find('"') != specification.npos) << inToken;
}
constexpr char kElem[] = "elem", kExtract[] = "extract", kRegex[] = "regex";

/// What a value resolves to; the result may be the value, and what is only referred to is not written to.
void ResolveInValue(TName& names, Line& line) {
  const NQ_TAny value = Value(Text(line.key));
  NQ_TAny same, out("left over");
  const bool ok = templatenames::ResolveValue(value, &names, out);
  line.given = Marked(ok, Text(out));
  if (const auto* object = value.As<NQ_IPackable>(); object != nullptr)
    templatenames::ResolveValue(NQ_TAny(static_cast<const NQ_IInterface*>(object)), &names, same);
  EXPECT_EQ(value, Value(Text(line.key)));
  same = value;
  EXPECT_TRUE(templatenames::ResolveValue(same, &names, same) == ok && same == out);
}

template <auto kField>
void SetLimit(TNameLimits& limits, int to) {
  limits.*kField = static_cast<std::remove_reference_t<decltype(limits.*kField)>>(to);
}

// Any field of the limits, by its name.
constexpr std::pair<std::string_view, void (*)(TNameLimits& limits, int to)> kLimits[] = {
    {"nestedDepth", SetLimit<&TNameLimits::nestedDepth>},
    {"tokens", SetLimit<&TNameLimits::tokens>},
    {"characters", SetLimit<&TNameLimits::characters>},
    {"queries", SetLimit<&TNameLimits::queries>},
    {"queryMilliseconds", SetLimit<&TNameLimits::queryMilliseconds>},
    {"regexMatch", SetLimit<&TNameLimits::regexMatch>},
    {"regexRecursion", SetLimit<&TNameLimits::regexRecursion>},
    {"regexMilliseconds", SetLimit<&TNameLimits::regexMilliseconds>},
    {"xmlBytes", SetLimit<&TNameLimits::xmlBytes>},
    {"xmlNodes", SetLimit<&TNameLimits::xmlNodes>},
    {"xmlDepth", SetLimit<&TNameLimits::xmlDepth>},
    {"xmlEntities", SetLimit<&TNameLimits::xmlEntities>},
};

void Limit(TName& names, Line& line) {
  TNameLimits limits = names.GetLimits();
  const auto* const known = std::ranges::find(kLimits, Text(line.key), [](auto& row) { return row.first; });
  if (known == std::end(kLimits)) throw std::invalid_argument("unknown limit: " + Text(line.key));
  known->second(limits, line.Number());
  names.SetLimits(limits);
}

class Framed : public TNameTranslator {
 public:
  explicit Framed(const Line& line) : frame_(line.Words("[ ]")) {}
  void TranslateName(const NQ_TString& in, NQ_TString& out) const override { out = in + "!"; }
  NQ_TString GetPrefix() const override { return S(frame_.first); }
  NQ_TString GetSuffix() const override { return S(frame_.second); }

 private:
  std::pair<std::string, std::string> frame_;
};

NQ_TAny answer;
bool Answer(const NQ_TString&, NQ_TDict*, TName*, NQ_TAny& value) { return value = answer, true; }

template <void (TName::*kSet)(const NQ_TString&, const NQ_TString&)>
void Set(TName& names, Line& line) {
  (names.*kSet)(line.key, line.value);
}

template <auto kGet>
void Get(TName& names, Line& line) {
  line.given = Text(NQ_TAny((names.*kGet)(line.key)));
}

constexpr TName::TLookupFunction kNoLookup = nullptr;
constexpr const TNameLookupHandler* kNoObject = nullptr;
constexpr TName::TWarnFunction kNoWarn = nullptr;
constexpr TNameWarnLookupHandler* kNoWarnObject = nullptr;

const Word kWords[] = {
    {"text", [](TName& n, Line& l) { Define(n, l, TName::TName_TypeString), n.SetValue(l.key, l.value); }},
    {"number", [](TName& n, Line& l) { Define(n, l, TName::TName_TypeNumber), n.SetValue(l.key, l.Number()); }},
    {"auto", [](TName& n, Line& l) { Define(n, l, TName::TName_TypeAutoNumber), n.SetValue(l.key, l.Number()); }},
    {"url", [](TName& n, Line& l) { Define(n, l, TName::TName_TypeURL), n.SetValue(l.key, l.Url()); }},
    {"time", [](TName& n, Line& l) { Define(n, l, TName::TName_TypeTime, 4); }},
    {"sql", [](TName& n, Line& l) { Define(n, l, TName::TName_TypeString, 3); }},
    {"define", [](TName& n, Line& l) { Define(n, l, TName::TName_Type(l.Number()), std::stoi(l.Words().second)); }},
    {"string", Set<&TName::SetValue>},
    {"int", [](TName& n, Line& l) { n.SetValue(l.key, l.Number()); }},
    {"link", [](TName& n, Line& l) { n.SetValue(l.key, l.Url()); }},
    {"moment", [](TName& n, Line& l) { n.SetValue(l.key, NQ_TTime::FromMilliseconds(l.Number())); }},
    {"category", Set<&TName::SetCategory>},
    {"description", Set<&TName::SetDescription>},
    {"userinfo", Set<&TName::SetUserInfo>},
    {"userdescription", Set<&TName::SetUserDescription>},
    {"visibility", Set<&TName::SetVisibility>},
    {"localization", Set<&TName::SetLocalization>},
    {"format", Set<&TName::SetFormat>},
    {"elem", Set<&TName::SetElemValue>},
    {"extract", Set<&TName::SetExtractValue>},
    {"regex", Set<&TName::SetRegExValue>},
    {"undefine", [](TName& n, Line& l) { l.key.Empty() ? n.UnDefine() : n.UnDefine(l.key); }},
    {"remove", [](TName& n, Line& l) { n.RemValue(l.key); }},
    {"increment", Get<&TName::Increment>},
    {"decrement", Get<&TName::Decrement>},
    {"raw", [](TName& n, Line& l) { n.SetRawData(l.key, l.value); }},
    {"userdefined", [](TName& n, Line& l) { n.SetUserDefined(l.key, l.Number() != 0); }},
    {"query", [](TName& n, Line& l) { n.SetServerQuery(l.key, "h", "s", "m", NQ_TDict()); }},
    {"lookup", [](TName& n, Line& l) { n.SetLookupHandler(l.key, TName::TName_Lookup(l.Number())); }},
    {"answer", [](TName& n, Line& l) { answer = Value(Text(l.value)), n.SetLookupHandler(l.key, Answer, false); }},
    {"no lookup", [](TName& n, Line& l) { n.SetLookupHandler(l.key, kNoLookup, false); }},
    {"no object", [](TName& n, Line& l) { n.SetLookupHandler(l.key, kNoObject, true); }},
    {"no type", [](TName& n, Line& l) { n.SetTypeHandler(l.key, nullptr); }},
    {"no user", [](TName& n, Line&) { n.SetUserLookupHandler(nullptr); }},
    {"no warn", [](TName& n, Line&) { n.SetWarnLookupHandler(kNoWarn); }},
    {"no warn object", [](TName& n, Line&) { n.SetWarnLookupHandler(kNoWarnObject); }},
    {"no elem", [](TName& n, Line&) { n.SetElemHandler(nullptr); }},
    {"no extract", [](TName& n, Line&) { n.SetExtractHandler(nullptr); }},
    {"no regex", [](TName& n, Line&) { n.SetRegExHandler(nullptr); }},
    {"limit", Limit},
    {"debug", [](TName& n, Line& l) { n.SetDebugLevel(std::stoi(Text(l.key))); }},
    {"error", [](TName& n, Line& l) { n.SetError(TName::TName_Error(std::stoi(Text(l.key)))); }},
    {"clear", [](TName& n, Line& l) { n.ClearCache(l.key); }},
    {"clear all", [](TName& n, Line&) { n.ClearCaches(); }},
    {"files", [](TName& n, Line& l) { l.given = Text(NQ_TAny(n.GetLocalizationFiles())); }},
    {"options", [](TName& n, Line& l) { n.SetFormattingOptions(l.key, formatting_test::Options(Text(l.value))); }},
    {"put",
     [](TName& n, Line& l) {
       const auto [attribute, value] = l.Words();
       (*EntryOf(n, l.key))[attribute.c_str()] = Value(value);
     }},
    {"is defined", Get<&TName::IsDefined>},
    {"keys", [](TName& n, Line& l) { l.given = KeysText(n); }},
    {"get type", [](TName& n, Line& l) { n.GetType(l.key); }},
    {"get value", Get<&TName::GetValue>},
    {"has value", Get<&TName::HasValue>},
    {"get raw", Get<&TName::GetRawData>},
    {"is userdefined", Get<&TName::IsUserDefined>},
    {"get category", Get<&TName::GetCategory>},
    {"get description", Get<&TName::GetDescription>},
    {"get userdescription", Get<&TName::GetUserDescription>},
    {"get userinfo", Get<&TName::GetUserInfo>},
    {"get visibility", Get<&TName::GetVisibility>},
    {"get localization", Get<&TName::GetLocalization>},
    {"get localization file", Get<&TName::GetLocalizationFile>},
    {"get default localization file", [](TName& n, Line& l) { l.given = Text(n.GetDefaultLocalizationFile()); }},
    {"entry", [](TName& n, Line& l) { l.given = n.IsDefined(l.key) ? EntryText(n, Text(l.key)) : "none"; }},
    {"resolve", [](TName& n, Line& l) { l.given = Resolved(n, Text(l.key)); }},
    {"seen",
     [](TName& n, Line& l) {  // often enough that the template is kept
       for (int time = 1; time <= 3; ++time) l.given = Resolved(n, Text(l.key));
     }},
    {"markers", [](TName& n, Line& l) { l.given = Resolved(n, Text(l.key), "{", "}", "before"); }},
    {"between",
     [](TName& n, Line& l) {
       const auto [begin, end] = l.Words();
       l.given = Resolved(n, Text(l.key), begin, end);
     }},
    {"token", [](TName& n, Line& l) { l.given = ResolvedToken(n, Text(l.key)); }},
    {"value", ResolveInValue},
    {"to url", [](TName& n, Line& l) { l.given = ResolvedUrl(n, l.key); }},
    {"from url", [](TName& n, Line& l) { l.given = ResolvedUrl(n, NQ_TURL(l.key)); }},
    {"value to url", [](TName& n, Line& l) { l.given = ResolvedUrl(n, Value(Text(l.key))); }},
    {"cut elem", Cut<kElem>},
    {"cut extract", Cut<kExtract>},
    {"cut regex", Cut<kRegex>},
    {"translate", [](TName& n, Line& l) { n.Translate(l.key, Framed(l), l.key), l.given = Text(l.key); }},
    {"back", [](TName& n, Line& l) { n.BackTranslate(l.key, Framed(l), l.key), l.given = Text(l.key); }},
    {"mark", [](TName&, Line& l) { l.given = Text(TName::AddMarker(l.key)); }},
    {"unmark", [](TName&, Line& l) { l.given = Text(TName::RemoveMarker(l.key)); }},
    {"encode", [](TName&, Line& l) { l.given = Text(TName::Encode(l.key)); }},
};

bool Begins(const std::string& line, std::string_view word) {
  if (!line.starts_with(word)) return false;
  const bool isWhole = line.size() == word.size() || line[word.size()] == ' ' || std::isalpha(word.back()) == 0;
  return isWhole;
}

std::string DoLine(TName& names, const std::string& line, std::span<const Word> more) {
  const Word* known = nullptr;  // the longest word that the line begins with
  for (const auto& words : {more, std::span<const Word>(kWords)})
    for (const Word& one : words)
      if (Begins(line, one.word) && (known == nullptr || one.word.size() > known->word.size())) known = &one;
  if (known == nullptr) throw std::invalid_argument("unknown word in: " + line);
  const auto parts = Pieces(line.substr(std::min(known->word.size() + 1, line.size())), " = ", 2);
  Line operation{S(parts[0]), S(parts.size() > 1 ? parts[1] : ""), line};
  known->act(names, operation);
  return operation.given;
}

thread_local NQ_TDict* seenEntry;

// Answers with no value, so that nothing else happens to the name.
bool SeeEntry(const NQ_TString&, NQ_TDict* entry, TName*, NQ_TAny&) { return seenEntry = entry, true; }

}  // namespace

std::pair<std::string, std::string> Line::Words(const char* otherwise) const {
  const std::string both = value.Empty() ? otherwise : Text(value);
  const std::size_t blank = both.find(' ');
  return {both.substr(0, blank), both.substr(blank + 1)};
}

std::string Do(TName& names, std::string_view script, std::span<const Word> more) {
  std::string given;
  if (!script.empty())
    for (const std::string& line : Pieces(script, "; ")) given = DoLine(names, line, more);
  return given;
}

std::string Resolved(TName& names, std::string_view text) {
  NQ_TString result("left over");
  const bool ok = names.Resolve(S(text), result);
  return Marked(ok, Text(result));
}

std::string Resolved(TName& names, std::string_view text, std::string_view begin, std::string_view end,
                     std::string_view before) {
  NQ_TString result(before);
  const bool ok = names.Resolve(S(text), S(begin), S(end), result);
  return Marked(ok, Text(result));
}

std::string ResolvedToken(TName& names, std::string_view token) {
  NQ_TString result("left over");
  return names.ResolveTokenEx(S(token), result) ? Text(result) : "!";
}

NQ_TDict* EntryOf(TName& names, const NQ_TString& key) {
  seenEntry = nullptr;
  names.SetUserLookupHandler(SeeEntry);
  ResolvedToken(names, Text(key));
  names.SetUserLookupHandler(nullptr);
  return seenEntry;
}

std::string EntryText(TName& names, std::string_view key) {
  const NQ_TDict* const entry = EntryOf(names, S(key));
  if (entry == nullptr) return "";
  std::set<std::string> parts;
  for (NQ_TConstIterator i(*entry); !i.IsDone(); i.Next())
    parts.insert(Text(i.Key()) + (i.Value().As<NQ_TPointer>() != nullptr ? "" : "=" + Text(i.Value())));
  std::string all;
  for (const std::string& part : parts) all += (all.empty() ? "" : " ") + part;
  return all;
}

std::string KeysText(const TName& names) {
  std::string all;
  const NQ_TList keys = names.GetTNames();
  for (NQ_TConstIterator i(keys); !i.IsDone(); i.Next()) all += (all.empty() ? "" : " ") + Text(i.Value());
  return all;
}

bool OtherThreadGetsLock(TName& names) {
  std::promise<void> got;
  auto future = got.get_future();
  std::thread([&names, got = std::move(got)]() mutable {
    names.IsDefined("A");
    got.set_value();
  }).detach();
  return future.wait_for(std::chrono::seconds(30)) == std::future_status::ready;
}

std::vector<std::string> Lines(const std::string& file) {
  std::ifstream in(VEXONAMES_TESTS_DIR + file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);)
    if (!line.empty() && line[0] != '#') lines.push_back(line);
  EXPECT_GT(lines.size(), 0U) << file;
  return lines;
}

std::string Repeated(std::string_view text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

}  // namespace names_test
