#include "Support.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <sstream>
#include <thread>

#include "NQ_TBoxed.h"

namespace names_test {
namespace {

/// A key and a value, as "key = value"; the value is empty when there is no " = ".
struct Line {
  NQ_TString key, value;
  NQ_TString result{"before"};  // of the operations that give one; dropped
  NQ_TURL url{};

  int Number() const { return std::stoi(Text(value)); }
  NQ_TURL Url() const { return NQ_TURL(value); }
};

void Define(TName& names, const Line& line, TName::TName_Type type, int lookup = 0) {
  names.Define(line.key, type, TName::TName_Lookup(lookup));
}

class Brackets : public TNameTranslator {
  void TranslateName(const NQ_TString& in, NQ_TString& out) const override { out = in + "!"; }
  NQ_TString GetPrefix() const override { return "["; }
  NQ_TString GetSuffix() const override { return "]"; }
};

/// The setters of string attributes, by the word for them.
constexpr struct {
  std::string_view word;
  void (TName::*set)(const NQ_TString&, const NQ_TString&);
} kSetters[] = {
    {"category", &TName::SetCategory},     {"description", &TName::SetDescription},
    {"userinfo", &TName::SetUserInfo},     {"userdescription", &TName::SetUserDescription},
    {"visibility", &TName::SetVisibility}, {"localization", &TName::SetLocalization},
    {"format", &TName::SetFormat},         {"elem", &TName::SetElemValue},
    {"extract", &TName::SetExtractValue},  {"regex", &TName::SetRegExValue},
    {"string", &TName::SetValue},
};

constexpr TName::TLookupFunction kNoLookup = nullptr;
constexpr const TNameLookupHandler* kNoObject = nullptr;
constexpr TName::TWarnFunction kNoWarn = nullptr;

constexpr struct {
  std::string_view word;
  void (*act)(TName&, Line&);
} kWords[] = {
    {"text", [](TName& n, Line& l) { Define(n, l, TName::TName_TypeString), n.SetValue(l.key, l.value); }},
    {"number", [](TName& n, Line& l) { Define(n, l, TName::TName_TypeNumber), n.SetValue(l.key, l.Number()); }},
    {"auto", [](TName& n, Line& l) { Define(n, l, TName::TName_TypeAutoNumber), n.SetValue(l.key, l.Number()); }},
    {"url", [](TName& n, Line& l) { Define(n, l, TName::TName_TypeURL), n.SetValue(l.key, l.Url()); }},
    {"time", [](TName& n, Line& l) { Define(n, l, TName::TName_TypeTime, 4); }},
    {"sql", [](TName& n, Line& l) { Define(n, l, TName::TName_TypeString, 3); }},
    {"define",
     [](TName& n, Line& l) {
       const std::string numbers = Text(l.value);
       Define(n, l, TName::TName_Type(l.Number()), std::stoi(numbers.substr(numbers.find(' '))));
     }},
    {"int", [](TName& n, Line& l) { n.SetValue(l.key, l.Number()); }},
    {"link", [](TName& n, Line& l) { n.SetValue(l.key, l.Url()); }},
    {"moment", [](TName& n, Line& l) { n.SetValue(l.key, NQ_TTime::FromMilliseconds(l.Number())); }},
    {"undefine", [](TName& n, Line& l) { l.key.Empty() ? n.UnDefine() : n.UnDefine(l.key); }},
    {"remove", [](TName& n, Line& l) { n.RemValue(l.key); }},
    {"increment", [](TName& n, Line& l) { n.Increment(l.key); }},
    {"decrement", [](TName& n, Line& l) { n.Decrement(l.key); }},
    {"raw", [](TName& n, Line& l) { n.SetRawData(l.key, l.value); }},
    {"userdefined", [](TName& n, Line& l) { n.SetUserDefined(l.key, l.Number() != 0); }},
    {"options", [](TName& n, Line& l) { n.SetFormattingOptions(l.key, NQ_TDict()); }},
    {"query", [](TName& n, Line& l) { n.SetServerQuery(l.key, "h", "s", "m", NQ_TDict()); }},
    {"lookup", [](TName& n, Line& l) { n.SetLookupHandler(l.key, TName::TName_Lookup(l.Number())); }},
    {"no lookup", [](TName& n, Line& l) { n.SetLookupHandler(l.key, kNoLookup, false); }},
    {"no object", [](TName& n, Line& l) { n.SetLookupHandler(l.key, kNoObject, true); }},
    {"no type", [](TName& n, Line& l) { n.SetTypeHandler(l.key, nullptr); }},
    {"no user", [](TName& n, Line&) { n.SetUserLookupHandler(nullptr); }},
    {"no warn", [](TName& n, Line&) { n.SetWarnLookupHandler(kNoWarn); }},
    {"no warn object", [](TName& n, Line&) { n.SetWarnLookupHandler(static_cast<TNameWarnLookupHandler*>(nullptr)); }},
    {"no elem", [](TName& n, Line&) { n.SetElemHandler(nullptr); }},
    {"no extract", [](TName& n, Line&) { n.SetExtractHandler(nullptr); }},
    {"no regex", [](TName& n, Line&) { n.SetRegExHandler(nullptr); }},
    {"is defined", [](TName& n, Line& l) { n.IsDefined(l.key); }},
    {"keys", [](TName& n, Line&) { n.GetTNames(); }},
    {"get type", [](TName& n, Line& l) { n.GetType(l.key); }},
    {"get value", [](TName& n, Line& l) { n.GetValue(l.key); }},
    {"has value", [](TName& n, Line& l) { n.HasValue(l.key); }},
    {"get raw", [](TName& n, Line& l) { n.GetRawData(l.key); }},
    {"is userdefined", [](TName& n, Line& l) { n.IsUserDefined(l.key); }},
    {"resolve", [](TName& n, Line& l) { n.Resolve(l.key, l.result); }},
    {"markers", [](TName& n, Line& l) { n.Resolve(l.key, "{", "}", l.result); }},
    {"token", [](TName& n, Line& l) { n.ResolveTokenEx(l.key, l.result); }},
    {"to url", [](TName& n, Line& l) { n.Resolve(l.key, l.url); }},
    {"from url", [](TName& n, Line& l) { n.Resolve(NQ_TURL(l.key), l.url); }},
    {"translate", [](TName& n, Line& l) { n.Translate(l.key, Brackets(), l.result); }},
    {"back", [](TName& n, Line& l) { n.BackTranslate(l.key, Brackets(), l.result); }},
};

void DoLine(TName& names, const std::string& line) {
  std::string_view word;  // the longest one that the line begins with
  const auto begins = [&](std::string_view known) {
    return known.size() > word.size() && line.starts_with(known) && (line + " ")[known.size()] == ' ';
  };
  for (const auto& known : kWords)
    if (begins(known.word)) word = known.word;
  for (const auto& known : kSetters)
    if (begins(known.word)) word = known.word;
  const std::string operand = line.size() > word.size() ? line.substr(word.size() + 1) : "";
  const std::size_t equals = operand.find(" = ");
  Line parts{S(operand.substr(0, equals)), equals == operand.npos ? S("") : S(operand.substr(equals + 3))};
  for (const auto& known : kWords)
    if (known.word == word) return known.act(names, parts);
  for (const auto& known : kSetters)
    if (known.word == word) return (names.*known.set)(parts.key, parts.value);
  ADD_FAILURE() << "unknown word in: " << line;
}

thread_local NQ_TDict seenEntry;

// Answers with no value, so that nothing else happens to the name.
bool SeeEntry(const NQ_TString&, NQ_TDict* entry, TName*, NQ_TAny&) {
  seenEntry = *entry;
  return true;
}

std::string Marked(bool ok, const NQ_TString& text) { return (ok ? "" : "! ") + Text(text); }

}  // namespace

std::string Text(const NQ_TAny& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

void Do(TName& names, std::string_view script) {
  while (!script.empty()) {
    const std::size_t end = script.find("; ");
    DoLine(names, std::string(script.substr(0, end)));
    script.remove_prefix(end == script.npos ? script.size() : end + 2);
  }
}

std::string Resolved(TName& names, std::string_view text) {
  NQ_TString result("left over");
  const bool ok = names.Resolve(S(text), result);
  return Marked(ok, result);
}

std::string Resolved(TName& names, std::string_view text, std::string_view begin, std::string_view end,
                     std::string_view before) {
  NQ_TString result(before);
  const bool ok = names.Resolve(S(text), S(begin), S(end), result);
  return Marked(ok, result);
}

std::string ResolvedToken(TName& names, std::string_view token) {
  NQ_TString result("left over");
  return names.ResolveTokenEx(S(token), result) ? Text(result) : "!";
}

std::string EntryText(TName& names, std::string_view key) {
  seenEntry.Clear();
  names.SetUserLookupHandler(SeeEntry);
  ResolvedToken(names, key);
  names.SetUserLookupHandler(nullptr);
  std::vector<std::string> parts;
  for (NQ_TConstIterator i(seenEntry); !i.IsDone(); i.Next())
    parts.push_back(Text(i.Key()) + (i.Value().As<NQ_TPointer>() != nullptr ? "" : "=" + Text(i.Value())));
  std::sort(parts.begin(), parts.end());
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

std::string Repeated(std::string_view text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

}  // namespace names_test
