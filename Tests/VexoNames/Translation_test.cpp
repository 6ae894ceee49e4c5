// Translators: what they are asked, and what they may do. Texts and their translations are rows of Cases.txt.
#include <functional>
#include <thread>

#include "Support.h"

namespace names_test {
namespace {

/// Notes what it is asked, and does something with the names.
class Translator : public TNameTranslator {
 public:
  explicit Translator(std::function<void()> act) : act_(std::move(act)) {}
  void TranslateName(const NQ_TString& in, NQ_TString& out) const override {
    act_();
    asked += Text(out = in) + ",";
  }
  NQ_TString GetPrefix() const override { return asked += "prefix,", "["; }
  NQ_TString GetSuffix() const override { return asked += "suffix,", "]"; }

  mutable std::string asked;

 private:
  std::function<void()> act_;
};

TEST(Translation, TranslatorsMayDoAnything) {
  Names names("text A = x; text B = y");
  const struct {
    std::function<void()> act;
    const char* asked;  // for "<A elem=\"_,1\"/> <U/> <B/> <A/> </>", and for "[A] [B] []"
  } rows[] = {
      {[&] { EXPECT_TRUE(OtherThreadGetsLock(names)); }, "prefix,suffix,A,B,A,suffix,prefix,A,B,,"},
      {[&] { Do(names, "number A = 1; resolve <A/><B/>"); }, "prefix,suffix,A,B,A,suffix,prefix,A,B,,"},
      {[&] { Do(names, "undefine"); }, "prefix,suffix,A,suffix,prefix,A,B,,"},
      {[&] { throw 5; }, "prefix,suffix,suffix,prefix,"},
  };
  for (const auto& row : rows) {
    Do(names, "text A = x; text B = y");
    const Translator translator(row.act);
    for (const bool back : {false, true}) {
      NQ_TString text(back ? "[A] [B] []" : "<A elem=\"_,1\"/> <U/> <B/> <A/> </>");
      try {
        back ? names.BackTranslate(text, translator, text) : names.Translate(text, translator, text);
      } catch (int) {
      }
    }
    EXPECT_EQ(translator.asked, row.asked);
    EXPECT_TRUE(OtherThreadGetsLock(names));
  }
}

}  // namespace
}  // namespace names_test
