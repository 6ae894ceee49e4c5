// Templates in another form, and back.
#include <thread>

#include "Support.h"

namespace names_test {
namespace {

/// Upper case, or lower case, between a prefix and a suffix; notes what it is asked.
class Translator : public TNameTranslator {
 public:
  Translator(std::string_view prefix, std::string_view suffix, bool upper = true)
      : prefix_(prefix), suffix_(suffix), upper_(upper) {}

  void TranslateName(const NQ_TString& in, NQ_TString& out) const override {
    out = in;
    upper_ ? out.ToUpper() : out.ToLower();
    asked += Text(in) + ",";
  }
  NQ_TString GetPrefix() const override { return asked += "prefix,", prefix_; }
  NQ_TString GetSuffix() const override { return asked += "suffix,", suffix_; }

  mutable std::string asked;

 private:
  NQ_TString prefix_, suffix_;
  bool upper_;
};

std::string Translated(const TName& names, const TNameTranslator& translator, std::string_view text) {
  NQ_TString result("left over");
  names.Translate(S(text), translator, result);
  return Text(result);
}

std::string TranslatedBack(const TName& names, const TNameTranslator& translator, std::string_view text) {
  NQ_TString result("left over");
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
      {"a <Name format=\"%03d\"/> b", "a [NAME] b"},
      {"x/> <Name/>", "x/> <Name/>"},
      {"<Name/> x/> <Name/>", "[NAME] x/> <Name/>"},
      {"<<CDATA/>><Name/>", "<Name/>"},
      {"</>", "[]"},
      {"<</>>", "[]"},
      {"< />", "< />"},
      {"<  Name />", "[NAME]"},
      {"p <<Name/>> <Name/>", "p [NAME] <Name/>"},
      {"<Name/>", "NAME", "", ""},
      {"<Name/>", "<NAME/>", "<", "/>"},  // what is put in is not looked at again
  };
  Names names("text Name = <U/>");
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
      {"<p/>", "<<CDATA/>><p/>"},
      {"/>p", "/>p"},
      {"a/>", "<<CDATA/>>a/>"},
      {"a/> b/>>", "a/> b/>>"},        // a double end marker: not marked
      {"<p/>[A]", "<p/><<a/>>"},       // a token was written: not marked
      {"<p/>x]", "<<CDATA/>><p/>x]"},  // none was: the suffix has no prefix
      {"/> a/>", "/> a/>"},            // only the first one counts
      {"{{{A}}}", "{<<a/>>}", "{{", "}}"},
      {"<A/>", "<<a/>>", "<", "/>"},
      // With the same text before and after, each occurrence is an end that is its own beginning.
      {"'A'", "<</>>A<</>>", "'", "'"},
      {"a [B] c", "a [B] c", "", ""},
      {"a [B] c", "a [B] c", "[", ""},
      {"a [B] c", "a [B<</>> c", "", "]"},  // an empty prefix is found right at the suffix
  };
  TName names;
  for (const auto& row : rows)
    EXPECT_EQ(TranslatedBack(names, Translator(row.prefix, row.suffix, false), row.text), row.tokens) << row.text;
}

TEST(Translation, AsksTheTranslatorOnceForItsFrame) {
  Names names("text A = x; text B = y");
  Translator there("[", "]"), back("[", "]"), literal("[", "]");
  Translated(names, there, "<A elem=\"_,1\"/> <U/> <B/> <A/> </>");
  EXPECT_EQ(there.asked, "prefix,suffix,A,B,A,");
  TranslatedBack(names, back, "[A] [B] []");
  EXPECT_EQ(back.asked, "suffix,prefix,A,B,,");
  Translated(names, literal, "<<CDATA/>><A/>");
  EXPECT_EQ(literal.asked, "");
}

TEST(Translation, ResultMayBeTheTemplate) {
  Names names("text Name = x");
  NQ_TString text("a <Name/> b <Name/>");
  names.Translate(text, Translator("[", "]"), text);
  EXPECT_EQ(text, S("a [NAME] b [NAME]"));
  names.BackTranslate(text, Translator("[", "]", false), text);
  EXPECT_EQ(text, S("a <<name/>> b <<name/>>"));
  text = "<<CDATA/>>x";
  names.Translate(text, Translator("[", "]"), text);
  EXPECT_EQ(text, S("x"));
}

/// Does something with the names whenever it is asked for a name.
class Acting : public TNameTranslator {
 public:
  Acting(void (*act)(TName&), TName& names) : act_(act), names_(names) {}
  void TranslateName(const NQ_TString& in, NQ_TString& out) const override { act_(names_), out = in; }
  NQ_TString GetPrefix() const override { return "["; }
  NQ_TString GetSuffix() const override { return "]"; }

 private:
  void (*act_)(TName&);
  TName& names_;
};

TEST(Translation, TranslatorsMayDoAnything) {
  const struct {
    void (*act)(TName&);
    const char* translated;
  } rows[] = {
      {[](TName& n) { std::thread([&n] { n.IsDefined("A"); }).join(); }, "[A] [B] [A]"},  // the lock is free
      {[](TName& n) { Do(n, "undefine"); }, "[A] <B/> <A/>"},
      {[](TName& n) { Do(n, "number A = 1; resolve <A/><B/>"); }, "[A] [B] [A]"},
  };
  for (const auto& row : rows) {
    Names names("text A = x; text B = y");
    EXPECT_EQ(Translated(names, Acting(row.act, names), "<A/> <B/> <A/>"), row.translated);
  }
  Names names("text A = x");
  const Acting thrower([](TName&) { throw 5; }, names);
  EXPECT_THROW(Translated(names, thrower, "<A/>"), int);
  EXPECT_THROW(TranslatedBack(names, thrower, "[A]"), int);
  EXPECT_TRUE(OtherThreadGetsLock(names));
}

}  // namespace
}  // namespace names_test
