// vexonames resolve
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Errors.h"
#include "Resolver.h"
#include "Streams.h"
#include "Text.h"

namespace {

using TJson = nlohmann::ordered_json;

std::string Utf8(const NQ_TString& text) { return std::string(text.Narrow()); }

// "in the value of 'a' > 'b': "
std::string Within(const std::vector<NQ_TString>& names) {
  constexpr std::size_t kMostShown = 5;
  if (names.empty()) return {};
  std::string where = "in the value of ";
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) where += " > ";
    if (i == kMostShown && i + 1 < names.size()) {
      where += "... > ";
      i = names.size() - 1;
    }
    where += '\'' + Printable(names[i].Narrow()) + '\'';
  }
  return where + ": ";
}

// What to say about one failed token.
std::string Sentence(const TFailure& failure) {
  const std::string token = failure.token.Empty() ? "" : Printable(Shortened(failure.token.Narrow())) + ": ";
  return Within(failure.within) + token + failure.reason;
}

constexpr const char* kMore = "more tokens may fail; these are the first";

/// One way to show resolutions.
class TReport {
 public:
  virtual ~TReport() = default;
  virtual void Show(std::size_t number, const TResolution& resolution) = 0;
  virtual void Finish(std::size_t, std::size_t) {}
};

/// Results on standard output, the rest on standard error.
class TPlainReport final : public TReport {
 public:
  TPlainReport(TData& data, TDiagnostics& diagnostics) : data_(data), diagnostics_(diagnostics) {}

  void Show(std::size_t number, const TResolution& resolution) override {
    const std::string where = "template " + std::to_string(number) + ": ";
    for (const TFailure& failure : resolution.failures.list) diagnostics_.Line({where, Sentence(failure)});
    if (resolution.failures.more) diagnostics_.Line({where, kMore});
    for (const std::string& hint : resolution.hints) diagnostics_.Line({where, "note: ", hint});
    data_.Line(resolution.result.Narrow());
  }

 private:
  TData& data_;
  TDiagnostics& diagnostics_;
};

/// All of a template's lines together: the columns need no alignment, whatever the width of the characters.
class TTableReport final : public TReport {
 public:
  explicit TTableReport(TData& data) : data_(data) {}

  void Show(std::size_t number, const TResolution& resolution) override {
    const std::string first = std::to_string(number);
    data_.Line(std::string(first.size() < 3 ? 3 - first.size() : 0, ' ') + first + "  " +
               Printable(resolution.text.Narrow()));
    Row(resolution.ok ? "=" : "!", Printable(resolution.result.Narrow()));
    for (const TFailure& failure : resolution.failures.list) Row(" ", Sentence(failure));
    if (resolution.failures.more) Row(" ", kMore);
    for (const std::string& hint : resolution.hints) Row(" ", "note: " + hint);
  }

  void Finish(std::size_t templates, std::size_t failed) override {
    const auto count = [](std::size_t n) {
      return n == 1 ? std::string("1 template") : std::to_string(n) + " templates";
    };
    data_.Line("");
    data_.Line(failed == 0 ? count(templates) + ", all resolved"
                           : count(templates) + ", " + std::to_string(failed) + " with failed tokens");
  }

 private:
  void Row(const std::string& sign, const std::string& text) { data_.Line("  " + sign + "  " + text); }

  TData& data_;
};

/// One object per template.
class TJsonReport final : public TReport {
 public:
  explicit TJsonReport(TData& data) : data_(data) {}

  void Show(std::size_t, const TResolution& resolution) override {
    TJson line = {{"template", Utf8(resolution.text)}, {"result", Utf8(resolution.result)}, {"ok", resolution.ok}};
    line["failures"] = TJson::array();
    for (const TFailure& failure : resolution.failures.list) line["failures"].push_back(ObjectOf(failure));
    if (resolution.failures.more) line["moreFailures"] = true;
    line["notes"] = resolution.hints;
    data_.Line(line.dump());
  }

 private:
  static TJson ObjectOf(const TFailure& failure) {
    TJson object = {{"token", Utf8(failure.token)}, {"kind", failure.kind}, {"reason", failure.reason}};
    object["within"] = TJson::array();
    for (const NQ_TString& key : failure.within) object["within"].push_back(Utf8(key));
    return object;
  }

  TData& data_;
};

std::unique_ptr<TReport> ReportFor(const TOptions& options, TData& data, TDiagnostics& diagnostics) {
  switch (options.form.value_or(TOptions::TForm::Plain)) {
    case TOptions::TForm::Json:
      return std::make_unique<TJsonReport>(data);
    case TOptions::TForm::Table:
      return std::make_unique<TTableReport>(data);
    case TOptions::TForm::Plain:
      break;
  }
  return std::make_unique<TPlainReport>(data, diagnostics);
}

}  // namespace

int RunResolve(TName& names, TEngineLog& log, TServiceCalls& calls, const TOptions& options) {
  TTexts texts(options.texts);
  TData data;
  TDiagnostics diagnostics(texts.FromInput());
  const std::unique_ptr<TReport> report = ReportFor(options, data, diagnostics);
  TResolver resolver(names, log, calls);
  std::size_t failed = 0;
  while (const std::optional<std::string> text = texts.Next()) {
    const TResolution resolution = resolver.Resolve(*text);
    if (!resolution.ok) ++failed;
    report->Show(texts.Count(), resolution);
    diagnostics.Progress(texts.Count());
  }
  report->Finish(texts.Count(), failed);
  if (calls.HaveFailed()) return kExitServiceFailed;
  return failed == 0 ? kExitResolved : kExitFailedTokens;
}
