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

/// Where a result belongs: template and input by their numbers, from 1; input 0 is the only one.
struct TPlace {
  std::size_t input = 0;
  std::size_t number = 0;

  std::string Prefix() const {
    return (input == 0 ? "" : "input " + std::to_string(input) + ", ") + "template " + std::to_string(number) + ": ";
  }
};

/// One way to show resolutions.
class TReport {
 public:
  virtual ~TReport() = default;
  /// What is shown next is for that input of the task.
  virtual void Begin(const NQ_TString&) {}
  virtual void Show(const TPlace& place, const TResolution& resolution) = 0;
  virtual void Finish(std::size_t, std::size_t) {}
};

/// Results on standard output, the rest on standard error.
class TPlainReport final : public TReport {
 public:
  TPlainReport(TData& data, TDiagnostics& diagnostics) : data_(data), diagnostics_(diagnostics) {}

  void Show(const TPlace& place, const TResolution& resolution) override {
    const std::string where = place.Prefix();
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

  void Begin(const NQ_TString& input) override { data_.Line("input " + Printable(input.Narrow())); }

  void Show(const TPlace& place, const TResolution& resolution) override {
    const std::string first = std::to_string(place.number);
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

  void Begin(const NQ_TString& input) override { input_ = Utf8(input); }

  void Show(const TPlace&, const TResolution& resolution) override {
    TJson line = {{"template", Utf8(resolution.text)}, {"result", Utf8(resolution.result)}, {"ok", resolution.ok}};
    if (!input_.empty()) line["input"] = input_;
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
  std::string input_;
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

/// Templates to resolve, once for each input of a task: those read are kept when another input comes.
class TBatch {
 public:
  TBatch(TName& names, TTask& task, TEngineLog& log, TServiceCalls& calls, const TOptions& options)
      : names_(names),
        task_(task),
        log_(log),
        calls_(calls),
        texts_(options.texts),
        diagnostics_(texts_.FromInput()),
        report_(ReportFor(options, data_, diagnostics_)) {}

  /// With the names as they are: those of the first input.
  void ReadAndResolve() {
    const bool more = task_.Inputs() > 1;
    if (task_.IsGiven()) report_->Begin(task_.InputText(0));
    TResolver resolver(names_, log_, calls_);
    while (std::optional<std::string> text = texts_.Next()) {
      Resolve(resolver, {more ? 1U : 0U, texts_.Count()}, *text);
      if (more) kept_.push_back(std::move(*text));
    }
  }

  void ResolveKeptFor(std::size_t input) {
    task_.Reset(names_, input, calls_);
    report_->Begin(task_.InputText(input));
    TResolver resolver(names_, log_, calls_);
    for (std::size_t i = 0; i < kept_.size(); ++i) Resolve(resolver, {input + 1, i + 1}, kept_[i]);
  }

  int Finish() {
    report_->Finish(done_, failed_);
    if (calls_.HaveFailed()) return kExitServiceFailed;
    return failed_ == 0 ? kExitResolved : kExitFailedTokens;
  }

 private:
  void Resolve(TResolver& resolver, const TPlace& place, const std::string& text) {
    const TResolution resolution = resolver.Resolve(text);
    ++done_;
    if (!resolution.ok) ++failed_;
    report_->Show(place, resolution);
    // Some names have a value also when their service fails; nothing else would tell why the tool ends as it does.
    const std::string failure = calls_.TakeFailure();
    if (resolution.ok && !failure.empty()) diagnostics_.Line({place.Prefix(), "a service failed: ", failure});
    diagnostics_.Progress(done_);
  }

  TName& names_;
  TTask& task_;
  TEngineLog& log_;
  TServiceCalls& calls_;
  TTexts texts_;
  TData data_;
  TDiagnostics diagnostics_;
  std::unique_ptr<TReport> report_;
  std::vector<std::string> kept_;
  std::size_t done_ = 0;
  std::size_t failed_ = 0;
};

}  // namespace

int RunResolve(TName& names, TTask& task, TEngineLog& log, TServiceCalls& calls, const TOptions& options) {
  TBatch batch(names, task, log, calls, options);
  batch.ReadAndResolve();
  for (std::size_t input = 1; input < task.Inputs(); ++input) batch.ResolveKeptFor(input);
  return batch.Finish();
}
