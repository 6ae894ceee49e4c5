// Templates in another form, and back. What the scan makes of markers is compared with a reference elsewhere.
#include <thread>

#include "Support.h"

namespace names_test {
namespace {

/// Upper case between a prefix and a suffix; notes what it is asked, and may do something with it.
class Translator : public TNameTranslator {
 public:
  explicit Translator(std::string_view prefix = "[", std::string_view suffix = "]", void (*act)() = nullptr)
      : prefix_(prefix), suffix_(suffix), act_(act) {}

  void TranslateName(const NQ_TString& in, NQ_TString& out) const override {
    if (act_ != nullptr) act_();
    out = in;
    out.ToUpper();
    asked += Text(in) + ",";
  }
  NQ_TString GetPrefix() const override { return asked += "prefix,", prefix_; }
  NQ_TString GetSuffix() const override { return asked += "suffix,", suffix_; }

  mutable std::string asked;

 private:
  NQ_TString prefix_, suffix_;
  void (*act_)();
};

std::string Translated(const TName& names, const Translator& translator, std::string_view text, bool back = false) {
  NQ_TString result(text);  // the result may be the template
  back ? names.BackTranslate(result, translator, result) : names.Translate(result, translator, result);
  return Text(result);
}

TEST(Translation, PrefixesAndSuffixesOfAnyKind) {
  const struct {
    bool back;
    const char *text, *translated, *prefix, *suffix;
  } rows[] = {
      {false, "<Name/>", "<NAME/>", "<", "/>"},  // what is put in is not looked at again
      {true, "[Name][x]", "<<NAME/>><<X/>>", "[", "]"},
      // With the same text before and after, each occurrence is an end that is its own beginning.
      {true, "'A'", "<</>>A<</>>", "'", "'"},
      {true, "a [B] c", "a [B] c", "", ""},
      {true, "a [B] c", "a [B] c", "[", ""},
      {true, "a [B] c", "a [B<</>> c", "", "]"},  // an empty prefix is found right at the suffix
  };
  Names names("text Name = <U/>");
  for (const auto& row : rows)
    EXPECT_EQ(Translated(names, Translator(row.prefix, row.suffix), row.text, row.back), row.translated) << row.text;
}

TEST(Translation, LiteralTextsAndKeys) {
  const std::string mark = "<<CDATA/>>";
  for (const std::string& text :
       {mark + "abc", mark + mark, mark, std::string("abc"), " " + mark, std::string("<<CDATA/>")}) {
    const bool marked = text.starts_with(mark);
    EXPECT_EQ(TName::IsMarked(S(text)), marked) << text;
    EXPECT_EQ(Text(TName::AddMarker(S(text))), marked ? text : mark + text);
    EXPECT_EQ(Text(TName::RemoveMarker(S(text))), marked ? text.substr(mark.size()) : text);
  }
  EXPECT_EQ(TName::Encode("50% a/b<c>\xC3\xB8%20"), S("50%25%20a%2Fb%3Cc%3E\xC3\xB8%2520"));
}

TEST(Translation, AsksTheTranslatorOnceForItsFrame) {
  Names names("text A = x; text B = y");
  const Translator there, back, literal;
  Translated(names, there, "<A elem=\"_,1\"/> <U/> <B/> <A/> </>");
  EXPECT_EQ(there.asked, "prefix,suffix,A,B,A,");
  Translated(names, back, "[A] [B] []", true);
  EXPECT_EQ(back.asked, "suffix,prefix,A,B,,");
  Translated(names, literal, "<<CDATA/>><A/>");
  EXPECT_EQ(literal.asked, "");
}

TName* inHand = nullptr;

TEST(Translation, TranslatorsMayDoAnything) {
  const struct {
    void (*act)();
    const char* translated;
  } rows[] = {
      {[] { std::thread([] { inHand->IsDefined("A"); }).join(); }, "[A] [B] [A]"},  // the lock is free
      {[] { Do(*inHand, "undefine"); }, "[A] <B/> <A/>"},
      {[] { Do(*inHand, "number A = 1; resolve <A/><B/>"); }, "[A] [B] [A]"},
      {[] { throw 5; }, nullptr},
  };
  for (const auto& row : rows) {
    Names names("text A = x; text B = y");
    inHand = &names;
    const Translator translator("[", "]", row.act);
    if (row.translated == nullptr) {
      EXPECT_THROW(Translated(names, translator, "<A/>"), int);
      EXPECT_THROW(Translated(names, translator, "[A]", true), int);
    } else {
      EXPECT_EQ(Translated(names, translator, "<A/> <B/> <A/>"), row.translated);
    }
    EXPECT_TRUE(OtherThreadGetsLock(names));
  }
}

}  // namespace
}  // namespace names_test
