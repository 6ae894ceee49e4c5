// vexonames resolve
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Errors.h"
#include "ProblemText.h"
#include "Resolution.h"
#include "Streams.h"
#include "Text.h"

namespace {

using TJson = nlohmann::ordered_json;

std::string Utf8(const NQ_TString& text) { return std::string(text.Narrow()); }

/// Where a result belongs: template and input by their numbers, from 1; input 0 is the only one.
struct TPlace {
  std::size_t input = 0;
  std::size_t number = 0;

  std::string Prefix() const {
    return (input == 0 ? "" : "input " + std::to_string(input) + ", ") + "template " + std::to_string(number) + ": ";
  }
};

/// One way to show resolutions.
class TForm {
 public:
  virtual ~TForm() = default;
  /// What is shown next is for that input of the task.
  virtual void Begin(const NQ_TString&) {}
  virtual void Show(const TPlace& place, const TResolution& resolution) = 0;
  virtual void Finish(std::size_t, std::size_t) {}
};

/// Results on standard output, the rest on standard error.
class TPlainForm final : public TForm {
 public:
  TPlainForm(TData& data, TDiagnostics& diagnostics) : data_(data), diagnostics_(diagnostics) {}

  void Show(const TPlace& place, const TResolution& resolution) override {
    const std::string where = place.Prefix();
    const TNameReport& report = resolution.report;
    for (const std::string& line : FailureLines(report)) diagnostics_.Line({where, line});
    for (const TRemark& remark : resolution.remarks) diagnostics_.Line({where, "note: ", remark.text});
    for (const TNameProblem& note : report.Notes()) diagnostics_.Line({where, "note: ", Sentence(note)});
    data_.Result(resolution.result.Narrow());
  }

 private:
  TData& data_;
  TDiagnostics& diagnostics_;
};

/// All of a template's lines together: the columns need no alignment, whatever the width of the characters.
class TTableForm final : public TForm {
 public:
  explicit TTableForm(TData& data) : data_(data) {}

  void Begin(const NQ_TString& input) override { data_.Line("input " + Printable(input.Narrow())); }

  void Show(const TPlace& place, const TResolution& resolution) override {
    const std::string first = std::to_string(place.number);
    data_.Line(std::string(first.size() < 3 ? 3 - first.size() : 0, ' ') + first + "  " +
               Printable(resolution.text.Narrow()));
    Row(resolution.ok ? "=" : "!", Printable(resolution.result.Narrow()));
    for (const std::string& line : FailureLines(resolution.report)) Row(" ", line);
    for (const TRemark& remark : resolution.remarks) Row(" ", "note: " + remark.text);
    for (const TNameProblem& note : resolution.report.Notes()) Row(" ", "note: " + Sentence(note));
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
class TJsonForm final : public TForm {
 public:
  explicit TJsonForm(TData& data) : data_(data) {}

  void Begin(const NQ_TString& input) override { input_ = Utf8(input); }

  void Show(const TPlace&, const TResolution& resolution) override {
    TJson line = {{"template", Utf8(resolution.text)}, {"result", Utf8(resolution.result)}, {"ok", resolution.ok}};
    if (!input_.empty()) line["input"] = input_;
    const TNameReport& report = resolution.report;
    TNamePlaces places(resolution.text);
    line["failures"] = TJson::array();
    for (const TNameProblem& failure : report.Failures()) line["failures"].push_back(JsonOf(failure, places));
    if (report.FailureCount() > report.Failures().size()) line["moreFailures"] = true;
    line["notes"] = TJson::array();
    for (const TRemark& remark : resolution.remarks)
      line["notes"].push_back({{"kind", remark.kind}, {"reason", remark.text}});
    for (const TNameProblem& note : report.Notes()) line["notes"].push_back(JsonOf(note, places));
    if (report.NoteCount() > report.Notes().size()) line["moreNotes"] = true;
    data_.Line(PrintableJson(line.dump()));
  }

 private:
  TData& data_;
  std::string input_;
};

std::unique_ptr<TForm> FormFor(const TOptions& options, TData& data, TDiagnostics& diagnostics) {
  switch (options.form.value_or(TOptions::TForm::Plain)) {
    case TOptions::TForm::Json:
      return std::make_unique<TJsonForm>(data);
    case TOptions::TForm::Table:
      return std::make_unique<TTableForm>(data);
    case TOptions::TForm::Plain:
      break;
  }
  return std::make_unique<TPlainForm>(data, diagnostics);
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
        form_(FormFor(options, data_, diagnostics_)) {}

  /// With the names as they are: those of the first input.
  void ReadAndResolve() {
    const bool more = task_.Inputs() > 1;
    if (task_.IsGiven()) form_->Begin(task_.InputText(0));
    while (std::optional<std::string> text = texts_.Next()) {
      Resolve({more ? 1U : 0U, texts_.Count()}, *text);
      if (more) kept_.push_back(std::move(*text));
    }
  }

  void ResolveKeptFor(std::size_t input) {
    task_.Reset(names_, input, calls_);
    form_->Begin(task_.InputText(input));
    for (std::size_t i = 0; i < kept_.size(); ++i) Resolve({input + 1, i + 1}, kept_[i]);
  }

  int Finish() {
    form_->Finish(done_, failed_);
    if (calls_.HaveFailed()) return kExitServiceFailed;
    return failed_ == 0 ? kExitResolved : kExitFailedTokens;
  }

 private:
  void Resolve(const TPlace& place, const std::string& text) {
    const TResolution resolution = ResolveTemplate(names_, log_, text);
    ++done_;
    if (!resolution.ok) ++failed_;
    form_->Show(place, resolution);
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
  std::unique_ptr<TForm> form_;
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
