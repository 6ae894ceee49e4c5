#include "Support.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <future>
#include <sstream>
#include <thread>
#include <vector>

#include "NQ_TBoxed.h"

namespace names_test {
namespace {

using Act = void (*)(TName&, const NQ_TString& key, const std::string& value);

constexpr struct {
  std::string_view word;
  Act act;
} kWords[] = {
    {"text",
     [](TName& names, const NQ_TString& key, const std::string& value) {
       names.Define(key, TName::TName_TypeString, TName::TName_LookupValue);
       names.SetValue(key, S(value));
     }},
    {"number",
     [](TName& names, const NQ_TString& key, const std::string& value) {
       names.Define(key, TName::TName_TypeNumber, TName::TName_LookupValue);
       names.SetValue(key, std::stoi(value));
     }},
    {"auto",
     [](TName& names, const NQ_TString& key, const std::string& value) {
       names.Define(key, TName::TName_TypeAutoNumber, TName::TName_LookupValue);
       names.SetValue(key, std::stoi(value));
     }},
    {"url",
     [](TName& names, const NQ_TString& key, const std::string& value) {
       names.Define(key, TName::TName_TypeURL, TName::TName_LookupValue);
       names.SetValue(key, NQ_TURL(S(value)));
     }},
    {"time", [](TName& names, const NQ_TString& key,
                const std::string&) { names.Define(key, TName::TName_TypeTime, TName::TName_LookupTime); }},
    {"sql", [](TName& names, const NQ_TString& key,
               const std::string&) { names.Define(key, TName::TName_TypeString, TName::TName_LookupSQLQuery); }},
    {"bare", [](TName& names, const NQ_TString& key,
                const std::string&) { names.Define(key, TName::TName_TypeString, TName::TName_Lookup(99)); }},
    {"format", [](TName& names, const NQ_TString& key, const std::string& v) { names.SetFormat(key, S(v)); }},
    {"elem", [](TName& names, const NQ_TString& key, const std::string& v) { names.SetElemValue(key, S(v)); }},
    {"extract", [](TName& names, const NQ_TString& key, const std::string& v) { names.SetExtractValue(key, S(v)); }},
    {"regex", [](TName& names, const NQ_TString& key, const std::string& v) { names.SetRegExValue(key, S(v)); }},
};

std::string Marked(bool ok, const NQ_TString& text) { return (ok ? "" : "! ") + Text(text); }

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

void Given(TName& names, std::string_view line) {
  const auto space = line.find(' ');
  const auto equals = line.find(" = ");
  const std::string_view word = line.substr(0, space);
  const std::string_view key = line.substr(space + 1, equals == line.npos ? line.npos : equals - space - 1);
  const std::string value(equals == line.npos ? std::string_view() : line.substr(equals + 3));
  for (const auto& known : kWords)
    if (known.word == word) return known.act(names, S(key), value);
  ADD_FAILURE() << "unknown word in line: " << line;
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
  const bool ok = names.ResolveTokenEx(S(token), result);
  return ok ? Text(result) : "!";
}

std::string AttributesText(const NQ_TDict& entry) {
  std::vector<std::string> parts;
  for (NQ_TConstIterator i(entry); !i.IsDone(); i.Next())
    parts.push_back(Text(i.Key()) + (i.Value().As<NQ_TPointer>() != nullptr ? "" : "=" + Text(i.Value())));
  std::sort(parts.begin(), parts.end());
  std::string all;
  for (const std::string& part : parts) all += (all.empty() ? "" : " ") + part;
  return all;
}

std::string EntryText(TName& names, std::string_view key) {
  seenEntry.Clear();
  names.SetUserLookupHandler(SeeEntry);
  NQ_TString ignored;
  names.ResolveTokenEx(S(key), ignored);
  names.SetUserLookupHandler(nullptr);
  return AttributesText(seenEntry);
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
    names.IsDefined(S("A"));
    got.set_value();
  }).detach();
  return future.wait_for(std::chrono::seconds(30)) == std::future_status::ready;
}

}  // namespace names_test
