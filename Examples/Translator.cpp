// Templates as a user interface shows them: names in the reader's words, and back again.
#include <iostream>
#include <map>

#include "TName.h"

namespace {

class TWords final : public TNameTranslator {
 public:
  explicit TWords(std::map<NQ_TString, NQ_TString> words) : words_(std::move(words)) {}

  void TranslateName(const NQ_TString& in, NQ_TString& out) const override {
    const auto word = words_.find(in);
    out = word == words_.end() ? in : word->second;
  }
  NQ_TString GetPrefix() const override { return "{"; }
  NQ_TString GetSuffix() const override { return "}"; }

 private:
  std::map<NQ_TString, NQ_TString> words_;
};

}  // namespace

int main() {
  TName names;
  for (const char* key : {"jobcustomername", "inputnr"})
    names.Define(key, TName::TName_TypeString, TName::TName_LookupValue);

  NQ_TString shown;
  const TWords toGerman({{"jobcustomername", "Kunde"}, {"inputnr", "Eingang Nr."}});
  names.Translate("<<jobcustomername/>>/<<inputnr/>>.pdf", toGerman, shown);
  std::cout << shown << '\n';

  NQ_TString stored;
  const TWords fromGerman({{"Kunde", "jobcustomername"}, {"Eingang Nr.", "inputnr"}});
  names.BackTranslate("Archiv/{Eingang Nr.}_{Kunde}.pdf", fromGerman, stored);
  std::cout << stored << '\n';
}
