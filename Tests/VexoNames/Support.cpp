#include "Support.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <future>
#include <sstream>
#include <thread>

#include "NQ_TBoxed.h"

namespace names_test {
namespace {

/// A key and a value, as "key = value"; the value is empty when there is no " = ".
struct Line {
  NQ_TString key, value;
  std::string given{};  // what the operation gives

  int Number() const { return std::stoi(Text(value)); }
  NQ_TURL Url() const { return NQ_TURL(value); }
};

void Define(TName& names, const Line& line, TName::TName_Type type, int lookup = 0) {
  names.Define(line.key, type, TName::TName_Lookup(lookup));
}

std::string Marked(bool ok, const NQ_TString& text) { return (ok ? "" : "! ") + Text(text); }

template <class Template>
std::string ResolvedUrl(TName& names, const Template& text) {
  NQ_TURL url(S("old://h/p"));
  const bool ok = names.Resolve(text, url);
  return Marked(ok, url.Scheme() + "|" + url.Host() + "|" + url.Path());
}

/// What a stage leaves of a text, with its attribute in the token and in the definition.
std::string Cut(TName& names, const std::string& attribute, const Line& line) {
  const std::string specification = Text(line.value);
  Define(names, {"A", ""}, TName::TName_TypeString);
  names.SetValue("A", S("<<CDATA/>>") + line.key);
  const std::string inToken = "A " + attribute + "=\"" + specification + "\"";
  // A token cannot hold a quote, and an empty attribute of a token is none.
  const bool fits = !specification.empty() && specification.find('"') == specification.npos;
  const std::string first = fits ? ResolvedToken(names, inToken) : "",
                    again = fits ? ResolvedToken(names, inToken) : "";
  Do(names, attribute + " A = " + specification);
  const std::string defined = ResolvedToken(names, "A");
  EXPECT_EQ(Resolved(names, "<A/>"), defined == "!" ? "! <A/>" : defined) << inToken;
  EXPECT_TRUE(!fits || (first == defined && again == defined)) << inToken << ": " << first << ", " << again;
  return defined;
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

constexpr struct {
  std::string_view word;
  const NQ_TString& (TName::*get)(const NQ_TString&) const;
} kGetters[] = {
    {"get category", &TName::GetCategory},
    {"get description", &TName::GetDescription},
    {"get userdescription", &TName::GetUserDescription},
    {"get userinfo", &TName::GetUserInfo},
    {"get visibility", &TName::GetVisibility},
    {"get localization", &TName::GetLocalization},
    {"get localization file", &TName::GetLocalizationFile},
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
    {"keys", [](TName& n, Line& l) { l.given = KeysText(n); }},
    {"get type", [](TName& n, Line& l) { n.GetType(l.key); }},
    {"get value", [](TName& n, Line& l) { l.given = Text(n.GetValue(l.key)); }},
    {"has value", [](TName& n, Line& l) { n.HasValue(l.key); }},
    {"get raw", [](TName& n, Line& l) { n.GetRawData(l.key); }},
    {"is userdefined", [](TName& n, Line& l) { n.IsUserDefined(l.key); }},
    {"entry", [](TName& n, Line& l) { l.given = n.IsDefined(l.key) ? EntryText(n, Text(l.key)) : "none"; }},
    {"resolve", [](TName& n, Line& l) { l.given = Resolved(n, Text(l.key)); }},
    {"seen",
     [](TName& n, Line& l) {  // often enough that the template is kept
       for (int time = 1; time <= 2; ++time) Resolved(n, Text(l.key));
       l.given = Resolved(n, Text(l.key));
     }},
    {"markers", [](TName& n, Line& l) { l.given = Resolved(n, Text(l.key), "{", "}", "before"); }},
    {"between",
     [](TName& n, Line& l) {
       const std::string both = Text(l.value);
       const std::size_t blank = both.find(' ');
       l.given = Resolved(n, Text(l.key), both.substr(0, blank), both.substr(blank + 1));
     }},
    {"token", [](TName& n, Line& l) { l.given = ResolvedToken(n, Text(l.key)); }},
    {"to url", [](TName& n, Line& l) { l.given = ResolvedUrl(n, l.key); }},
    {"from url", [](TName& n, Line& l) { l.given = ResolvedUrl(n, NQ_TURL(l.key)); }},
    {"value to url", [](TName& n, Line& l) { l.given = ResolvedUrl(n, NQ_TAny(l.key)); }},
    {"url value to url", [](TName& n, Line& l) { l.given = ResolvedUrl(n, NQ_TAny(NQ_TURL(l.key))); }},
    {"cut elem", [](TName& n, Line& l) { l.given = Cut(n, "elem", l); }},
    {"cut extract", [](TName& n, Line& l) { l.given = Cut(n, "extract", l); }},
    {"cut regex", [](TName& n, Line& l) { l.given = Cut(n, "regex", l); }},
    {"translate",
     [](TName& n, Line& l) {
       n.Translate(l.key, Brackets(), l.key);
       l.given = Text(l.key);
     }},
    {"back",
     [](TName& n, Line& l) {
       n.BackTranslate(l.key, Brackets(), l.key);
       l.given = Text(l.key);
     }},
};

std::string DoLine(TName& names, const std::string& line) {
  std::string_view word;  // the longest one that the line begins with
  const auto begins = [&](std::string_view known) {
    return known.size() > word.size() && line.starts_with(known) && (line + " ")[known.size()] == ' ';
  };
  for (const auto& known : kWords)
    if (begins(known.word)) word = known.word;
  for (const auto& known : kSetters)
    if (begins(known.word)) word = known.word;
  for (const auto& known : kGetters)
    if (begins(known.word)) word = known.word;
  const std::string operand = line.size() > word.size() ? line.substr(word.size() + 1) : "";
  const std::size_t equals = operand.find(" = ");
  Line parts{S(operand.substr(0, equals)), equals == operand.npos ? S("") : S(operand.substr(equals + 3))};
  for (const auto& known : kWords)
    if (known.word == word) return known.act(names, parts), parts.given;
  for (const auto& known : kSetters)
    if (known.word == word) return (names.*known.set)(parts.key, parts.value), "";
  for (const auto& known : kGetters)
    if (known.word == word) return Text((names.*known.get)(parts.key));
  ADD_FAILURE() << "unknown word in: " << line;
  return "";
}

thread_local NQ_TDict seenEntry;

// Answers with no value, so that nothing else happens to the name.
bool SeeEntry(const NQ_TString&, NQ_TDict* entry, TName*, NQ_TAny&) {
  seenEntry = *entry;
  return true;
}

}  // namespace

std::string Text(const NQ_TAny& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

std::string Do(TName& names, std::string_view script) {
  std::string given;
  while (!script.empty()) {
    const std::size_t end = script.find("; ");
    given = DoLine(names, std::string(script.substr(0, end)));
    script.remove_prefix(end == script.npos ? script.size() : end + 2);
  }
  return given;
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

std::vector<std::string> Lines(const std::string& file) {
  std::ifstream in(VEXONAMES_SOURCE_DIR "/Tests/VexoNames/" + file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);)
    if (!line.empty() && line[0] != '#') lines.push_back(line);
  EXPECT_GT(lines.size(), 0U) << file;
  return lines;
}

std::vector<std::string> Split(std::string_view text) {
  std::vector<std::string> pieces(1);
  for (const char c : text) c == '|' ? void(pieces.emplace_back()) : pieces.back().push_back(c);
  return pieces;
}

std::string Repeated(std::string_view text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

}  // namespace names_test
