// Random templates and names: what a template gives must be what the plain way gives, which scans as it is worded, one
// step after the other, and has each token resolved by itself, by the handlers.
#include <random>

#include "Support.h"
#include "text/TokenText.h"

namespace names_test {
namespace {

constexpr auto kNone = std::string::npos;

/// From `from` up to `to`; empty where the markers overlap.
template <class View>
View Between(View text, std::size_t from, std::size_t to) {
  return from < to ? text.substr(from, to - from) : View();
}

std::u16string_view PlainKey(std::u16string_view t) {
  const std::size_t length = t.size(), e = t.find(u'=');
  std::size_t start = 0, end = e == kNone ? length : e + 1;  // one past the last character
  while (start < length && t[start] == u' ') ++start;
  if (e != kNone)
    while (end > start + 1 && t[end - 1] != u' ') --end;
  while (end > start + 1 && t[end - 1] == u' ') --end;
  return Between(t, start, end);
}

std::u16string_view PlainAttribute(std::u16string_view t, std::u16string_view opening) {
  const std::size_t a = t.find(opening);
  if (a == kNone) return {};
  const std::u16string_view rest = t.substr(a + opening.size());
  return rest.substr(0, rest.find(u'"'));
}

/// The names must have a hook, so that they go the long way.
std::string PlainlyScanned(TName& names, std::string_view s, std::string_view begin, std::string_view end) {
  std::string result;
  std::size_t done = 0;
  bool ok = true;
  for (std::size_t e = s.find(end); e != kNone; e = s.find(end, done)) {
    const std::size_t b = s.rfind(begin, e);
    if (b == kNone || b < done) break;
    if (b + begin.size() > e) {  // the markers overlap
      ok = false;
      result.append(s.substr(done, e + end.size() - done));
      done = e + end.size();
      continue;
    }
    // By itself, between markers that occur nowhere else.
    const std::string token = "{" + std::string(Between(s, b + begin.size(), e)) + "}";
    const std::string value = Resolved(names, token, "{", "}"), text = value.substr(value.starts_with("! ") ? 2 : 0);
    ok = ok && !value.starts_with("! ");
    result.append(s.substr(done, b - done)).append(text == token ? s.substr(b, e + end.size() - b) : text);
    done = e + end.size();
  }
  return (ok ? "" : "! ") + result.append(s.substr(done));
}

std::string PlainlyResolved(TName& names, std::string_view s) {
  if (s.starts_with("<<CDATA/>>")) return std::string(s.substr(10));
  const std::size_t p = s.find("/>>");
  const bool doubled = p != kNone && s.rfind("<<", p) != kNone;
  return PlainlyScanned(names, s, doubled ? "<<" : "<", doubled ? "/>>" : "/>");
}

template <class Rows>
const auto& Any(std::mt19937& random, const Rows& rows) {
  return rows[random() % std::size(rows)];
}

// What templates, definitions and markers are put together from, a line each.
const auto kLines = Lines("Scan_differential.txt");
const auto kNames = Split(kLines.at(0)), kAttributes = Split(kLines.at(1)), kPieces = Split(kLines.at(2));
const auto kChanges = Split(kLines.at(3)), kMarkers = Split(kLines.at(4));

std::string Soup(std::mt19937& random) {
  std::string soup;
  for (auto pieces = random() % 10; pieces-- > 0;) {
    soup += random() % 3 == 0 ? Any(random, kNames) : Any(random, kPieces);
    if (random() % 4 != 0) continue;
    const bool doubled = random() % 2 == 0;
    soup.append(doubled ? "<<" : "<").append(Any(random, kNames));
    soup.append(Any(random, kAttributes)).append(Any(random, kAttributes)).append(doubled ? "/>>" : "/>");
  }
  return soup;
}

/// Of each template what it gives, time after time, and with other markers; at last what was written meanwhile.
std::vector<std::string> Results(bool plainly) {
  std::mt19937 random(4711);
  TName names;
  if (plainly) names.SetWarnLookupHandler([](const NQ_TString&, TName*) {});
  for (const std::string& script : kChanges) Thrown([&] { Do(names, script); });
  std::vector<std::string> results, recent(64);
  Output output;
  for (int i = 0; i < Scaled(20'000); ++i) {
    if (i % 4 == 0) Thrown([&] { Do(names, Any(random, kChanges)); });
    std::string& text = recent[random() % recent.size()];
    if (random() % 4 != 0) text = Soup(random);  // else one seen before, perhaps with other names
    const auto markers = Pieces(Any(random, kMarkers), "...");
    const std::string &begin = markers.at(0), &end = markers.at(1);
    for (int time = 1; time <= 3; ++time)
      results.push_back(text + " => " + (plainly ? PlainlyResolved(names, text) : Resolved(names, text)));
    results.push_back(text + " between " + begin + " and " + end + " => ");
    results.back() += plainly ? PlainlyScanned(names, text, begin, end) : Resolved(names, text, begin, end);
    results.back() += " error " + std::to_string(names.GetError());
  }
  results.push_back(output.Take());
  return results;
}

TEST(ScanDifferential, TemplatesGiveWhatThePlainWayGives) {
  const std::vector<std::string> plain = Results(true), results = Results(false);
  ASSERT_EQ(results.size(), plain.size());
  for (std::size_t i = 0; i < plain.size(); ++i) ASSERT_EQ(results[i], plain[i]) << "at " << i;
}

TEST(ScanDifferential, TokensAreSplitAsThePlainWayDoes) {
  std::mt19937 random(42);
  for (int i = 0; i < 20'000; ++i) {
    const NQ_TString token = S(Soup(random));
    const std::u16string_view text = token.StringView();
    const auto split = templatenames::SplitTokenText(text);
    ASSERT_EQ(split.key, PlainKey(text)) << token;
    ASSERT_EQ(split.format, PlainAttribute(text, u"format=\"")) << token;
    ASSERT_EQ(split.elem, PlainAttribute(text, u"elem=\"")) << token;
    ASSERT_EQ(split.extract, PlainAttribute(text, u"extract=\"")) << token;
    ASSERT_EQ(split.regex, PlainAttribute(text, u"regex=\"")) << token;
  }
}

}  // namespace
}  // namespace names_test
