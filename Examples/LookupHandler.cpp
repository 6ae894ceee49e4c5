// A name whose value is computed when a template asks for it: plates get their numbers in the order in which file names
// are made for them. The handler is an object, so that it can keep what it needs; the caller keeps the object.
#include <atomic>
#include <iostream>

#include "NQ_TBoxed.h"
#include "TName.h"

namespace {

class TPlateNumbers final : public TNameLookupHandler {
 public:
  explicit TPlateNumbers(int first) : next_(first) {}

  bool Lookup(const NQ_TString&, NQ_TDict*, TName* names, NQ_TAny& value) const override {
    if (next_ > kLast) return false;  // the token fails, and stays in the text
    // A handler runs while the registry is locked for its thread, and may use it.
    const NQ_TString color = names->GetValue("color").ValueOr(NQ_TString("black"));
    value = NQ_TString::Format("%s-%d", color.c_str(), next_.fetch_add(1));
    return true;
  }

 private:
  static constexpr int kLast = 103;
  mutable std::atomic<int> next_;
};

}  // namespace

int main() {
  const TPlateNumbers plates(101);
  TName names;
  names.Define("color", TName::TName_TypeString, TName::TName_LookupValue);
  names.Define("plate", TName::TName_TypeString, TName::TName_LookupValue);
  names.SetLookupHandler("plate", &plates, true);

  for (const char* color : {"cyan", "magenta", "yellow", "black"}) {
    names.SetValue("color", color);
    NQ_TString file;
    const bool all = names.Resolve("sheet1_<<plate/>>.tiff", file);
    std::cout << file << (all ? "\n" : " (no number left)\n");
  }
}
