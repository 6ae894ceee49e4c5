#include "NumberTokens.h"

#include <array>
#include <locale>
#include <sstream>
#include <string_view>

namespace bench {
namespace {

constexpr std::array<const char*, 4> kInches = {"1,234.5", "8.27", "11.6929", "-0.125"};

class Separators : public std::numpunct<wchar_t> {
 public:
  Separators(wchar_t decimal, wchar_t group) : decimal_(decimal), group_(group) {}

 protected:
  wchar_t do_decimal_point() const override { return decimal_; }
  wchar_t do_thousands_sep() const override { return group_; }
  std::string do_grouping() const override { return "\3"; }

 private:
  wchar_t decimal_, group_;
};

bool Read(std::string_view text, double& number) {
  std::wistringstream in(std::wstring(text.begin(), text.end()));
  in.imbue(std::locale(std::locale(), new Separators(L'.', L',')));
  return bool(in >> number);
}

void Write(double number, std::string& out) {
  std::wostringstream written;
  written.imbue(std::locale(std::locale(), new Separators(L',', L'.')));
  written.precision(2);
  written << std::fixed << number;
  for (const wchar_t c : written.str()) out += char(c);
}

}  // namespace

Workload FourNumbers() {
  Workload w;
  for (const char* number : kInches) {
    const int name = int(w.names.size());
    w.pieces.push_back({name == 0 ? "" : ";", name});
    w.names.push_back({"number" + std::to_string(name), number});
  }
  w.pieces.push_back({";"});
  w.tokens = kInches.size();
  return w;
}

NQ_TDict NumberOptions() {
  NQ_TDict options;
  const auto set = [&options](const char* key, const char* value) { options.Add(key, NQ_TString(value)); };
  set("DataFormat", "NUMBER");
  set("InputThousandsSeparator", ",");
  set("ConvertUnitCategory", "LENGTH");
  set("ConvertFromUnit", "in");
  set("ConvertToUnit", "mm");
  set("DecimalSeparator", ",");
  set("ThousandsSeparator", ".");
  options.Add("Convert", true);
  options.Add("Decimals", 2);
  return options;
}

Registry NumberRegistry() {
  const Workload w = FourNumbers();
  Registry registry = MakeRegistry(w);
  for (const Name& name : w.names) registry->SetFormattingOptions(NQ_TString(name.key.c_str()), NumberOptions());
  return registry;
}

std::string NumbersExpected() { return "31.356,30;210,06;297,00;-3,17;"; }

void StreamsEachTime::Run() {
  out_.clear();
  for (const char* text : kInches) {
    double inches = 0;
    if (!Read(text, inches)) out_ += "(no number)";
    Write(25.4 * inches, out_);
    out_ += ';';
  }
}

}  // namespace bench
