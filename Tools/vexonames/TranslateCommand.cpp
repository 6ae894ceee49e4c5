// vexonames translate
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Displayed.h"
#include "Errors.h"
#include "Streams.h"
#include "Suggest.h"
#include "Text.h"

namespace {

using TJson = nlohmann::ordered_json;

struct TTranslation {
  NQ_TString result;
  std::vector<std::string> unknown;  // what could not be translated
  std::vector<std::string> hints;
};

std::string Quoted(const NQ_TString& text) { return '\'' + Printable(Shortened(text.Narrow())) + '\''; }

class TTranslatorOfTexts {
 public:
  TTranslatorOfTexts(TName& names, const TOptions& options)
      : names_(names),
        back_(options.back),
        prefix_(std::string_view(options.prefix)),
        suffix_(std::string_view(options.suffix)),
        displayed_(names, prefix_, suffix_) {
    for (const auto& [from, to] : back_ ? displayed_.ByText() : displayed_.ByKey()) known_.push_back(from);
  }

  TTranslation Translate(const NQ_TString& text) { return back_ ? Backward(text) : Forward(text); }

 private:
  // The engine leaves tokens of unknown names alone. Attributes have no place in the translation.
  TTranslation Forward(const NQ_TString& text) {
    TTranslation translation;
    names_.Translate(text, TMapTranslator(displayed_.ByKey(), prefix_, suffix_), translation.result);
    const TNameExplanation explained = displayed_.Explain(text);
    for (const TNameProblem& failure : explained.Report().Failures()) {
      if (failure.Kind() == TNameProblem::TNameProblem_KindUndefined)
        translation.unknown.push_back(Quoted(failure.Token()) + " names nothing that is defined");
    }
    for (const TNameExplanation::TToken& token : explained.Tokens()) {
      if (displayed_.ByKey().contains(token.key) && token.token.Find("=\"") >= 0)
        translation.hints.push_back(Quoted(token.token) + ": its attributes are left out");
    }
    return translation;
  }

  TTranslation Backward(const NQ_TString& text) const {
    TTranslation translation;
    const TMapTranslator translator(displayed_.ByText(), prefix_, suffix_);
    names_.BackTranslate(text, translator, translation.result);
    for (const NQ_TString& unknown : translator.Unknown())
      translation.unknown.push_back("no name is called " + Quoted(unknown) + Suggestion(unknown, known_));
    return translation;
  }

  TName& names_;
  bool back_;
  NQ_TString prefix_;
  NQ_TString suffix_;
  TDisplayed displayed_;
  std::vector<NQ_TString> known_;
};

void ShowJson(const NQ_TString& text, const TTranslation& translation, TData& data) {
  const TJson line = {{"text", std::string(text.Narrow())},
                      {"result", std::string(translation.result.Narrow())},
                      {"ok", translation.unknown.empty()},
                      {"failures", translation.unknown},
                      {"notes", translation.hints}};
  data.Line(PrintableJson(line.dump()));
}

void Show(std::size_t number, const TTranslation& translation, TData& data, TDiagnostics& diagnostics) {
  const std::string where = "text " + std::to_string(number) + ": ";
  for (const std::string& unknown : translation.unknown) diagnostics.Line({where, unknown});
  for (const std::string& hint : translation.hints) diagnostics.Line({where, "note: ", hint});
  data.Result(translation.result.Narrow());
}

}  // namespace

int RunTranslate(TName& names, const TOptions& options) {
  TTexts texts(options.texts);
  TData data;
  TDiagnostics diagnostics(texts.FromInput());
  TTranslatorOfTexts translator(names, options);
  bool all = true;
  while (const std::optional<std::string> utf8 = texts.Next()) {
    const NQ_TString text{std::string_view(*utf8)};
    const TTranslation translation = translator.Translate(text);
    all = all && translation.unknown.empty();
    if (options.form == TOptions::TForm::Json) {
      ShowJson(text, translation, data);
    } else {
      Show(texts.Count(), translation, data, diagnostics);
    }
    diagnostics.Progress(texts.Count());
  }
  return all ? kExitResolved : kExitFailedTokens;
}
