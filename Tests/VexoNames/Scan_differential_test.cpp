// Random soups of markers, names and attributes, resolved and translated here and by the plain reference.
#include <random>

#include "Reference.h"
#include "Support.h"

namespace names_test {
namespace {

using Str = Reference::Str;
constexpr unsigned kSeed = 4711;

NQ_TString N(const Str& text) { return NQ_TString(std::u16string_view(text)); }

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
  std::string Told(const char* what, const Str& expected, const NQ_TString& got, bool expectedOk, bool ok);

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
  if (level >= 0) {
    name.text = Soup(random, level, 8);
    names_.Define(N(key), TName::TName_TypeString, TName::TName_LookupValue);
    names_.SetValue(N(key), N(name.text));
  } else if (level == -3) {
    name.type = 'u';
    name.text = u"h/<A/>_p";
    names_.Define(N(key), TName::TName_TypeURL, TName::TName_LookupValue);
    names_.SetValue(N(key), NQ_TURL(N(u"file://" + name.text)));
  } else {
    name.type = level == -1 ? 'n' : 'a';
    name.format = u"%d";
    name.number = random() % 4 == 0 ? 2147483645 : int(random() % 2000) - 1000;
    names_.Define(N(key), level == -1 ? TName::TName_TypeNumber : TName::TName_TypeAutoNumber,
                  TName::TName_LookupValue);
    names_.SetValue(N(key), name.number);
  }
  if (how == 1) names_.SetFormat(N(key), N(name.format = level >= 0 ? u"[%4s]" : u"%+d"));
  if (how == 2) names_.SetElemValue(N(key), N(*(name.elem = u"_,1")));
  if (how == 3) names_.SetExtractValue(N(key), N(*(name.extract = u"1,3")));
  reference_.names[key] = name;
}

std::string Pair::Told(const char* what, const Str& expected, const NQ_TString& got, bool expectedOk, bool ok) {
  const bool same = N(expected) == got && expectedOk == ok && reference_.error == names_.GetError() &&
                    (!hooks_ || warned == reference_.warned);
  warned.clear();
  reference_.warned.clear();
  if (same) return "";
  return std::string(what) + ": expected " + (expectedOk ? "" : "! ") + Text(N(expected)) + "\n got " +
         (ok ? "" : "! ") + Text(got);
}

std::string Pair::Compare(const Str& text, std::mt19937& random) {
  static const std::vector<std::pair<Str, Str>> markers = {
      {u"<", u"/>"}, {u"<<", u"/>>"}, {u"=", u"="},  {u"<<", u"<"},  {u"A", u"AN"}, {u"/", u"/>"},
      {u"", u"/>"},  {u"<A", u"A/>"}, {u"\"", u" "}, {u"<", u"<<A"}, {u"N", u""},   {u"\u3C3C", u"\u003E"}};
  const NQ_TString whole = N(text);
  std::string told;
  for (int time = 1; time <= 3 && told.empty(); ++time) {
    int count = 0;
    const Str expected = reference_.Resolve(text, count);
    NQ_TString got("left over");
    const bool ok = names_.Resolve(whole, got);
    told = Told("Resolve", expected, got, count == 0, ok);
  }
  const auto& [begin, end] = markers[random() % markers.size()];
  if (told.empty() && end.empty()) {
    NQ_TString got;
    names_.Resolve(whole, N(begin), N(end), got);  // open but for its end
    warned.clear();
  } else if (told.empty()) {
    int count = 0;
    const Str expected = u"before" + reference_.Scan(text, begin, end, count);
    NQ_TString got("before");
    const bool ok = names_.Resolve(whole, N(begin), N(end), got);
    told = Told(("markers " + Text(N(begin)) + " and " + Text(N(end))).c_str(), expected, got, count == 0, ok);
    if (told.empty() && !begin.empty()) {
      names_.Translate(whole, Apostrophe(begin, end), got);
      told = Told("Translate", reference_.Translate(text, begin, end), got, true, true);
      names_.BackTranslate(whole, Apostrophe(begin, end), got);
      told += Told("BackTranslate", Reference::BackTranslate(text, begin, end), got, true, true);
    }
  }
  if (told.empty()) {
    int count = 0;
    Str expected;
    const bool expectedOk = reference_.Token(text, expected, count);
    NQ_TString got;
    const bool ok = names_.ResolveTokenEx(whole, got);
    told = Told("ResolveTokenEx", expectedOk ? expected : Str(), ok ? got : NQ_TString(), expectedOk, ok);
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
