// Templates in another form, and back.
#include <thread>

#include "Support.h"

namespace names_test {
namespace {

/// Upper case one way, lower case the other, between a prefix and a suffix; counts what it is asked.
class Translator : public TNameTranslator {
 public:
  Translator(std::string_view prefix, std::string_view suffix) : prefix_(prefix), suffix_(suffix) {}

  void TranslateName(const NQ_TString& in, NQ_TString& out) const override {
    out = in;
    upper ? out.ToUpper() : out.ToLower();
    asked += Text(in) + ",";
  }
  NQ_TString GetPrefix() const override {
    asked += "prefix,";
    return prefix_;
  }
  NQ_TString GetSuffix() const override {
    asked += "suffix,";
    return suffix_;
  }

  bool upper = true;
  mutable std::string asked;

 private:
  NQ_TString prefix_, suffix_;
};

std::string Translated(const TName& names, const Translator& translator, std::string_view text) {
  NQ_TString result("left over");
  names.Translate(S(text), translator, result);
  return Text(result);
}

std::string TranslatedBack(const TName& names, Translator& translator, std::string_view text) {
  NQ_TString result("left over");
  translator.upper = false;
  names.BackTranslate(S(text), translator, result);
  return Text(result);
}

TEST(Translation, ReplacesTokensOfDefinedNames) {
  const struct {
    const char *text, *translated, *prefix = "[", *suffix = "]";
  } rows[] = {
      {"a <Name/> b", "a [NAME] b"},
      {"a <<Name/>> b", "a [NAME] b"},
      {"a <Other/> b", "a <Other/> b"},
      {"<<Other format=\"%d\"/>>-<<Name/>>", "<<Other format=\"%d\"/>>-[NAME]"},
      {"a <Name format=\"%03d\"/> b", "a [NAME] b"},
      {"x/> <Name/>", "x/> <Name/>"},
      {"<Name/> x/> <Name/>", "[NAME] x/> <Name/>"},
      {"<<CDATA/>><Name/>", "<Name/>"},
      {"<<CDATA/>>", ""},
      {" <<CDATA/>>", " <<CDATA/>>"},
      {"</>", "[]"},
      {"<</>>", "[]"},
      {"< />", "< />"},
      {"<Name/><Name/>", "[NAME][NAME]"},
      {"<  Name />", "[NAME]"},
      {"<A<Name/>", "<A[NAME]"},
      {"p <<Name/>> <Name/>", "p [NAME] <Name/>"},
      {"no token", "no token"},
      {"", ""},
      {"<Name/", "<Name/"},
      {"<Name/>", "NAME", "", ""},
      {"<Name/>", "<NAME/>", "<", "/>"},  // what is put in is not looked at again
      {"<name/>", "<name/>"},
  };
  Names names{"text Name = <U/>", "sql Q"};
  for (const auto& row : rows)
    EXPECT_EQ(Translated(names, Translator(row.prefix, row.suffix), row.text), row.translated) << row.text;
}

TEST(Translation, TurnsTextsBackIntoTokens) {
  const struct {
    const char *text, *tokens, *prefix = "[", *suffix = "]";
  } rows[] = {
      {"a [NAME] b", "a <<name/>> b"},
      {"[X][Y]", "<<x/>><<y/>>"},  // defined or not
      {"[]", "<</>>"},
      {"[A[B]", "[A<<b/>>"},
      {"x] [NAME]", "x] [NAME]"},
      {"[A] x] [B]", "<<a/>> x] [B]"},
      {"[A", "[A"},
      {"", ""},
      {"<p/>", "<<CDATA/>><p/>"},
      {"/>p", "/>p"},
      {"a/>", "<<CDATA/>>a/>"},
      {"<<p/>>", "<<p/>>"},  // a double end marker: not marked
      {"a/> b/>>", "a/> b/>>"},
      {"<p/>[A]", "<p/><<a/>>"},       // a token was written: not marked
      {"<p/>x]", "<<CDATA/>><p/>x]"},  // none was: the suffix has no prefix
      {"/> a/>", "/> a/>"},            // only the first one counts
      {"(A)", "(A)"},
      {"{{A}}", "<<a/>>", "{{", "}}"},
      {"{{{A}}}", "{<<a/>>}", "{{", "}}"},
      // With the same text before and after, each occurrence is an end that is its own beginning.
      {"'A'", "<</>>A<</>>", "'", "'"},
      {"<A/>", "<<a/>>", "<", "/>"},
      {"<<A/>>", "<<a/>>", "<<", "/>>"},
  };
  TName names;
  for (const auto& row : rows) {
    Translator translator(row.prefix, row.suffix);
    EXPECT_EQ(TranslatedBack(names, translator, row.text), row.tokens) << row.text;
  }
}

TEST(Translation, EndsWithEmptyPrefixOrSuffix) {
  TName names;
  Translator none("", ""), prefixOnly("[", ""), suffixOnly("", "]");
  EXPECT_EQ(TranslatedBack(names, none, "a [B] c"), "a [B] c");
  EXPECT_EQ(TranslatedBack(names, prefixOnly, "a [B] c"), "a [B] c");
  // An empty prefix is found right at the suffix: nothing stands between them.
  EXPECT_EQ(TranslatedBack(names, suffixOnly, "a [B] c"), "a [B<</>> c");
}

TEST(Translation, RoundTrip) {
  Names names{"text a b = x", "number n = 1"};
  Translator translator("[", "]");
  const std::string text = "p/<<a b/>>_<<n/>>.pdf";
  EXPECT_EQ(TranslatedBack(names, translator, "p/[A B]_[N].pdf"), text);
  translator.upper = true;
  EXPECT_EQ(Translated(names, translator, text), "p/[A B]_[N].pdf");
}

TEST(Translation, AsksTheTranslatorOnceForItsFrame) {
  Names names{"text A = x", "text B = y"};
  Translator translator("[", "]");
  Translated(names, translator, "<A elem=\"_,1\"/> <U/> <B/> <A/> </>");
  EXPECT_EQ(translator.asked, "prefix,suffix,A,B,A,");
  translator.asked.clear();
  TranslatedBack(names, translator, "[A] [B] []");
  EXPECT_EQ(translator.asked, "suffix,prefix,A,B,,");
  translator.asked.clear();
  Translated(names, translator, "<<CDATA/>><A/>");
  EXPECT_EQ(translator.asked, "");
}

TEST(Translation, ResultMayBeTheTemplate) {
  Names names{"text Name = x"};
  Translator translator("[", "]");
  NQ_TString text("a <Name/> b <Name/>");
  names.Translate(text, translator, text);
  EXPECT_EQ(text, S("a [NAME] b [NAME]"));
  translator.upper = false;
  names.BackTranslate(text, translator, text);
  EXPECT_EQ(text, S("a <<name/>> b <<name/>>"));
  text = "<<CDATA/>>x";
  names.Translate(text, translator, text);
  EXPECT_EQ(text, S("x"));
}

/// Runs an action when it is asked for a name.
class Acting : public TNameTranslator {
 public:
  explicit Acting(void (*act)(TName&), TName& names) : act_(act), names_(names) {}
  void TranslateName(const NQ_TString& in, NQ_TString& out) const override {
    act_(names_);
    out = in;
  }
  NQ_TString GetPrefix() const override { return "["; }
  NQ_TString GetSuffix() const override { return "]"; }

 private:
  void (*act_)(TName&);
  TName& names_;
};

TEST(Translation, TranslatorsMayDoAnything) {
  const struct {
    const char* what;
    void (*act)(TName&);
    const char* translated;
  } rows[] = {
      {"another thread needs the lock", [](TName& n) { std::thread([&n] { n.IsDefined("A"); }).join(); },
       "[A] [B] [A]"},
      {"undefines all", [](TName& n) { n.UnDefine(); }, "[A] <B/> <A/>"},
      {"redefines", [](TName& n) { Given(n, "number A = 1"); }, "[A] [B] [A]"},
      {"resolves", [](TName& n) { EXPECT_EQ(Resolved(n, "<A/>"), "x"); }, "[A] [B] [A]"},
      {"throws", [](TName&) { throw Oops(); }, nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Names names{"text A = x", "text B = y"};
    const Acting translator(row.act, names);
    NQ_TString result;
    if (row.translated == nullptr) {
      EXPECT_THROW(names.Translate(S("<A/>"), translator, result), Oops);
      EXPECT_THROW(names.BackTranslate(S("[A]"), translator, result), Oops);
      EXPECT_TRUE(OtherThreadGetsLock(names));
      continue;
    }
    names.Translate(S("<A/> <B/> <A/>"), translator, result);
    EXPECT_EQ(result, S(row.translated));
  }
}

}  // namespace
}  // namespace names_test
