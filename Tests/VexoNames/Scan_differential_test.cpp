// Random soups of markers, names and attributes, resolved and translated here and by a plain reference: resolution and
// translation as they are worded, one step after the other, without any care for speed. What is done to a single text
// (printf, the stages) is the library's own here and has its reference elsewhere.
#include <climits>
#include <map>
#include <optional>
#include <random>

#include "Support.h"
#include "text/PrintfFormat.h"
#include "text/Stages.h"

namespace names_test {
namespace {

using templatenames::TPrintfFormat;
using Str = std::u16string;
constexpr unsigned kSeed = 4711;
constexpr auto kNone = Str::npos;
const Str kMark = u"<<CDATA/>>";

NQ_TString N(const Str& text) { return NQ_TString(std::u16string_view(text)); }

/// From b + lb up to e; empty where the markers overlap.
Str Between(const Str& text, std::size_t from, std::size_t to) {
  return from < to ? text.substr(from, to - from) : u"";
}

std::pair<Str, Str> Markers(const Str& text) {
  const std::size_t p = text.find(u"/>>");
  if (p != kNone && text.rfind(u"<<", p) != kNone) return {u"<<", u"/>>"};
  return {u"<", u"/>"};
}

Str KeyOf(const Str& t) {
  const int length = int(t.size());
  int start = 0;
  while (start < length && t[std::size_t(start)] == u' ') ++start;
  int end = length - 1;
  if (const std::size_t e = t.find(u'='); e == kNone) {
    while (end > start && t[std::size_t(end)] == u' ') --end;
  } else {
    end = int(e);
    while (end > start && t[std::size_t(end)] != u' ') --end;
    while (end > start && t[std::size_t(end)] == u' ') --end;
  }
  return Between(t, std::size_t(start), std::size_t(end + 1));
}

Str AttributeOf(const Str& t, const Str& name) {
  const std::size_t a = t.find(name + u"=\"");
  if (a == kNone) return u"";
  const Str rest = t.substr(a + name.size() + 2);
  return rest.substr(0, rest.find(u'"'));
}

/// `replace` gives what stands for a token, or nothing; also whether there was a token.
template <class Replace>
std::pair<Str, bool> Scanned(const Str& s, const Str& begin, const Str& end, Replace replace) {
  Str result;
  std::size_t done = 0;
  for (std::size_t e = s.find(end); e != kNone; e = s.find(end, done)) {
    const std::size_t b = s.rfind(begin, e);
    if (b == kNone || b < done) break;
    const std::optional<Str> value = replace(Between(s, b + begin.size(), e));
    result += s.substr(done, b - done) + value.value_or(s.substr(b, e + end.size() - b));
    done = e + end.size();
  }
  return {result + s.substr(done), done > 0};
}

class Reference {
 public:
  struct Name {
    char type = 's';  // s: text, n: number, a: auto number, u: URL
    Str text;         // of a text; of a URL what stands after "file://"
    int number = 0;
    Str format = u"%s";
    std::optional<Str> elem, extract;
  };

  std::map<Str, Name> names;
  int error = 0;
  Str warned;               // every key a warn handler would be told, each followed by ";"
  bool marksRegex = false;  // the regex stage is the test's own: it appends "~" and its attribute, or fails for "%"

  Str Resolve(const Str& text, int& count) {
    if (text.starts_with(kMark)) return text.substr(kMark.size());
    const auto [begin, end] = Markers(text);
    return Scan(text, begin, end, count);
  }
  Str Scan(const Str& s, const Str& begin, const Str& end, int& count) {
    return Scanned(s, begin, end, [&](const Str& token) { return Token(token, count); }).first;
  }
  std::optional<Str> Token(const Str& text, int& count) {
    if (text.empty()) return u"";
    std::optional<Str> result = Value(text, count);
    if (!result) ++count;
    return result;
  }
  /// With a translator that appends "'" to a name.
  Str Translate(const Str& s, const Str& prefix, const Str& suffix) const {
    if (s.starts_with(kMark)) return s.substr(kMark.size());
    const auto [begin, end] = Markers(s);
    const auto replace = [&](const Str& token) -> std::optional<Str> {
      if (token.empty()) return prefix + suffix;
      if (!names.contains(KeyOf(token))) return std::nullopt;
      return prefix + KeyOf(token) + u"'" + suffix;
    };
    return Scanned(s, begin, end, replace).first;
  }
  static Str BackTranslate(const Str& s, const Str& prefix, const Str& suffix) {
    const auto [result, any] =
        Scanned(s, prefix, suffix, [](const Str& n) { return std::optional(u"<<" + n + u"'/>>"); });
    const std::size_t single = s.find(u"/>");
    const bool marked = !any && s.find(u"/>>") == kNone && single != kNone && single > 0;
    return marked ? kMark + result : result;
  }

 private:
  std::optional<Str> Value(const Str& text, int& count) {
    warned += KeyOf(text) + u";";
    const auto found = names.find(KeyOf(text));
    if (found == names.end()) return std::nullopt;
    Name& name = found->second;
    const Str attribute = AttributeOf(text, u"format"), format = attribute.empty() ? name.format : attribute;
    NQ_TString result;
    if (name.type == 'u') {
      result = N(u"file://" + name.text);
    } else if (name.type == 's') {
      const Str value = Resolve(name.text, count);
      const auto printf = TPrintfFormat::Parse(format, TPrintfFormat::TKind::Text);
      if (!printf) return std::nullopt;
      printf->AppendText(value, result);
    } else {
      const auto printf = TPrintfFormat::Parse(format, TPrintfFormat::TKind::Integer);
      if ((name.type == 'a' && name.number == INT_MAX) || !printf) return std::nullopt;
      if (name.type == 'a') ++name.number;
      printf->AppendInteger(name.number, result);
    }
    return Stages(name, text, Str(result.StringView()));
  }

  std::optional<Str> Stages(const Name& name, const Str& token, Str text) {
    using templatenames::TStageError;
    const auto fails = [&](TStageError how) {
      return error = how == TStageError::None ? error : int(how) + 3, how != TStageError::None;
    };
    const Str elem = AttributeOf(token, u"elem"), extract = AttributeOf(token, u"extract");
    if (!elem.empty() || name.elem) {
      const Str specification = elem.empty() ? *name.elem : elem;
      std::u16string_view separator;
      int index = 0;
      if (fails(templatenames::ParseElem(specification, separator, index))) return std::nullopt;
      text = Str(templatenames::Element(text, separator, index));
    }
    if (!extract.empty() || name.extract) {
      int start = 0, length = 0;
      if (fails(templatenames::ParseExtract(extract.empty() ? *name.extract : extract, start, length)))
        return std::nullopt;
      text = Str(templatenames::Extract(text, start, length));
    }
    const Str regex = marksRegex ? AttributeOf(token, u"regex") : u"";
    if (regex.find(u'%') != kNone) return std::nullopt;
    return regex.empty() ? text : text + u"~" + regex;
  }
};

Str warned;
void Warn(const NQ_TString& key, TName*) { warned += Str(key.StringView()) + u";"; }
bool MarkRegex(const NQ_TString&, const NQ_TString& input, const NQ_TString& attribute, NQ_TDict*, TName*,
               NQ_TString& result) {
  if (attribute.Find('%') >= 0) return false;
  if (!attribute.Empty()) result = input + "~" + attribute;
  return true;
}

class Apostrophe : public TNameTranslator {
 public:
  Apostrophe(const Str& prefix, const Str& suffix) : prefix_(N(prefix)), suffix_(N(suffix)) {}
  void TranslateName(const NQ_TString& in, NQ_TString& out) const override { out = in + "'"; }
  NQ_TString GetPrefix() const override { return prefix_; }
  NQ_TString GetSuffix() const override { return suffix_; }

 private:
  NQ_TString prefix_, suffix_;
};

/// A registry and its reference, changed alike and asked alike.
class Pair {
 public:
  /// With hooks: the engine is told of every token, and has a regex stage of the test's.
  explicit Pair(bool hooks) : hooks_(hooks) {
    reference_.marksRegex = hooks;
    if (!hooks) return;
    names_.SetWarnLookupHandler(Warn);
    names_.SetRegExHandler(MarkRegex);
  }

  /// Defines, changes or removes one name. Values hold names of lower levels only, so that none names itself.
  void Change(std::mt19937& random);
  std::string Compare(const Str& text, std::mt19937& random);
  Str Soup(std::mt19937& random, int level, unsigned most);

 private:
  std::string Told(const std::string& what, const std::optional<Str>& expected, const NQ_TString& got, bool expectedOk,
                   bool ok);

  bool hooks_;
  TName names_;
  Reference reference_;
};

Str Pair::Soup(std::mt19937& random, int level, unsigned most) {
  static const std::vector<Str> pieces = {
      u"<", u"<", u"<", u"/>", u"/>", u"/>", u"<<", u"/>>", u"/>>", u">", u"/", u"=", u"\"", u" ", u" ", u"<<CDATA/>>",
      u"x_y", u"a___b", u"__,1", u"\u3C3C", u"\u2F3E\u003E", u"format", u" format=\"", u" elem=\"", u" extract=\"",
      u"elem=\"", u"%", u"%s", u"%03d", u"%5", u"%n", u"_,1", u"-,1", u",", u"1", u"2,3", u",-1", u"9999", u"%%",
      u" regex=\"", u"</>", u"s\"",
      // From here on names, by level.
      u"A", u"A", u"<A", u"N", u"K", u"<N format=\"%03d\"/>", u"<A elem=\"_,1\"/>", u"AA", u"L", u"<<K/>>", u"B",
      u"<B/>", u"<<B/>>", u"B", u"CDATA", u"C", u"<<A C/>>"};
  const std::size_t upTo = level == 0 ? 42 : level == 1 ? 52 : level == 2 ? 56 : pieces.size();
  Str soup;
  for (auto i = random() % most; i-- > 0;) {
    const Str& piece = pieces[random() % upTo];
    if (hooks_ || piece != u" regex=\"") soup += piece;
  }
  return soup;
}

void Pair::Change(std::mt19937& random) {
  static const std::vector<std::pair<Str, int>> keys = {{u"A", 0}, {u"AA", 0}, {u"N", -1}, {u"K", -2},  {u"L", -3},
                                                        {u"", -1}, {u"=", -1}, {u"B", 1},  {u"A C", 2}, {u"CDATA", -1}};
  const auto& [key, level] = keys[random() % keys.size()];
  Reference::Name name;
  const auto how = random() % 8;
  if (how == 0) {
    names_.UnDefine(N(key));
    reference_.names.erase(key);
    return;
  }
  const auto define = [&, &k = key](TName::TName_Type type) { names_.Define(N(k), type, TName::TName_LookupValue); };
  if (level >= 0) {
    name.text = Soup(random, level, 8);
    define(TName::TName_TypeString);
    names_.SetValue(N(key), N(name.text));
  } else if (level == -3) {
    name.type = 'u';
    name.text = u"h/<A/>_p";
    define(TName::TName_TypeURL);
    names_.SetValue(N(key), NQ_TURL(N(u"file://" + name.text)));
  } else {
    name.type = level == -1 ? 'n' : 'a';
    name.format = u"%d";
    name.number = random() % 4 == 0 ? 2147483645 : int(random() % 2000) - 1000;
    define(level == -1 ? TName::TName_TypeNumber : TName::TName_TypeAutoNumber);
    names_.SetValue(N(key), name.number);
  }
  if (how == 1) names_.SetFormat(N(key), N(name.format = level >= 0 ? u"[%4s]" : u"%+d"));
  if (how == 2) names_.SetElemValue(N(key), N(*(name.elem = u"_,1")));
  if (how == 3) names_.SetExtractValue(N(key), N(*(name.extract = u"1,3")));
  reference_.names[key] = name;
}

std::string Pair::Told(const std::string& what, const std::optional<Str>& expected, const NQ_TString& got,
                       bool expectedOk, bool ok) {
  const bool same = expectedOk == ok && (!expected || N(*expected) == got) && reference_.error == names_.GetError() &&
                    (!hooks_ || warned == reference_.warned);
  warned.clear();
  reference_.warned.clear();
  if (same) return "";
  return what + ": expected " + (expectedOk ? "" : "! ") + Text(N(expected.value_or(u""))) + "\n got " +
         (ok ? "" : "! ") + Text(got);
}

std::string Pair::Compare(const Str& text, std::mt19937& random) {
  static const std::vector<std::pair<Str, Str>> markers = {
      {u"<", u"/>"}, {u"<<", u"/>>"}, {u"=", u"="},  {u"<<", u"<"},  {u"A", u"AN"}, {u"/", u"/>"},
      {u"", u"/>"},  {u"<A", u"A/>"}, {u"\"", u" "}, {u"<", u"<<A"}, {u"N", u""},   {u"\u3C3C", u"\u003E"}};
  const NQ_TString whole = N(text);
  NQ_TString got("left over");
  std::string told;
  for (int time = 1; time <= 3 && told.empty(); ++time) {
    int count = 0;
    const Str expected = reference_.Resolve(text, count);
    const bool ok = names_.Resolve(whole, got);
    told = Told("Resolve", expected, got, count == 0, ok);
  }
  const auto& [begin, end] = markers[random() % markers.size()];
  if (told.empty() && end.empty()) {
    names_.Resolve(whole, N(begin), N(end), got);  // open but for its end
    warned.clear();
  } else if (told.empty()) {
    int count = 0;
    const Str expected = u"before" + reference_.Scan(text, begin, end, count);
    got = "before";
    const bool ok = names_.Resolve(whole, N(begin), N(end), got);
    told = Told("markers " + Text(N(begin)) + " and " + Text(N(end)), expected, got, count == 0, ok);
    if (told.empty() && !begin.empty()) {
      names_.Translate(whole, Apostrophe(begin, end), got);
      told = Told("Translate", reference_.Translate(text, begin, end), got, true, true);
      names_.BackTranslate(whole, Apostrophe(begin, end), got);
      told += Told("BackTranslate", Reference::BackTranslate(text, begin, end), got, true, true);
    }
  }
  if (told.empty()) {
    int count = 0;
    const std::optional<Str> expected = reference_.Token(text, count);
    const bool ok = names_.ResolveTokenEx(whole, got);
    told = Told("ResolveTokenEx", expected, got, expected.has_value(), ok);
  }
  return told;
}

void CompareMany(bool hooks) {
  std::mt19937 random(kSeed + hooks);
  Pair pair(hooks);
  for (int i = 0; i < 60; ++i) pair.Change(random);
  std::vector<Str> recent(64);
  for (int i = 0; i < Scaled(50'000); ++i) {
    if (i % 16 == 0) pair.Change(random);
    Str& place = recent[random() % recent.size()];
    if (random() % 4 != 0) place = pair.Soup(random, 3, 12);  // else one seen before, perhaps with other names
    const std::string told = pair.Compare(place, random);
    ASSERT_EQ(told, "") << "template " << i << " of seed " << kSeed << ": " << Text(N(place));
  }
}

TEST(ScanDifferential, RandomTemplates) { CompareMany(false); }
TEST(ScanDifferential, RandomTemplatesWithHooks) { CompareMany(true); }

}  // namespace
}  // namespace names_test
