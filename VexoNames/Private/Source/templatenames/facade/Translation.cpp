// TName: templates in another form. The registry is only asked whether names are defined.
#include "TName.h"
#include "engine/Engine.h"
#include "text/Find.h"
#include "text/Log.h"
#include "text/Scan.h"
#include "text/TokenText.h"

using templatenames::kDoubleMarkers;
using templatenames::kLiteralMarker;
using templatenames::kNone;
using templatenames::Log;
using templatenames::TScannedToken;
using templatenames::TScanner;

namespace {

constexpr const char* kSyntaxError = "TE: Template name syntax error: no begin token found in ";

bool TranslateTokenEx(const TName& names, const NQ_TString& tokenText, const TNameTranslator& translator,
                      NQ_TString& out) {
  out = NQ_TString();
  if (tokenText.Empty()) return true;
  const auto parts = templatenames::SplitTokenText(tokenText.StringView());
  const NQ_TString key(parts.key);
  if (names.Engine().Logs(2)) {
    Log(2, "TName::TranslateTokenEx: \tKey: \"", key, "\"; Format: \"", NQ_TString(parts.format), "\"; Elem: \"",
        NQ_TString(parts.elem), "\"; Extract: \"", NQ_TString(parts.extract), "\" RegEx: \"", NQ_TString(parts.regex),
        '"');
  }
  if (!names.IsDefined(key)) return false;
  translator.TranslateName(key, out);
  return true;
}

}  // namespace

bool TName::IsMarked(const NQ_TString& text) { return text.StringView().starts_with(kLiteralMarker); }

NQ_TString TName::AddMarker(const NQ_TString& text) {
  return IsMarked(text) ? text : NQ_TString(kLiteralMarker) + text;
}

NQ_TString TName::RemoveMarker(const NQ_TString& text) {
  return IsMarked(text) ? text.Substring(static_cast<int>(kLiteralMarker.size())) : text;
}

NQ_TString TName::Encode(const NQ_TString& text) {
  return text.Replace("%", "%25").Replace(" ", "%20").Replace("<", "%3C").Replace(">", "%3E").Replace("/", "%2F");
}

void TName::Translate(const NQ_TString& text, const TNameTranslator& translator, NQ_TString& result) const {
  const NQ_TString source = text;  // result may be the same string
  result = NQ_TString();
  if (engine_->Logs(1)) Log(1, "TName::Translate: \"", source, '"');
  if (IsMarked(source)) {
    result = RemoveMarker(source);
    return;
  }
  const NQ_TString prefix = translator.GetPrefix();
  const NQ_TString suffix = translator.GetSuffix();
  const std::u16string_view units = source.StringView();
  TScanner scanner(units, templatenames::ChooseMarkers(units));
  NQ_TString translated;
  for (TScannedToken token; scanner.Next(token);) {
    const auto tokenText = token.TextIn(units);
    if (TranslateTokenEx(*this, NQ_TString(tokenText), translator, translated)) {
      result.Append(units.substr(token.literal, token.begin - token.literal));
      result.Append(prefix).Append(translated).Append(suffix);
    } else {
      result.Append(units.substr(token.literal, token.end - token.literal));
    }
  }
  if (scanner.SyntaxError() && engine_->Logs(1)) Log(1, kSyntaxError, source);
  result.Append(units.substr(scanner.Done()));
  if (engine_->Logs(1)) Log(1, "TName::Translate: \"", source, "\" = \"", result, '"');
}

void TName::BackTranslate(const NQ_TString& text, const TNameTranslator& translator, NQ_TString& result) const {
  const NQ_TString source = text;  // result may be the same string
  result = NQ_TString();
  if (engine_->Logs(1)) Log(1, "TName::BackTranslate: \"", source, '"');
  const NQ_TString suffix = translator.GetSuffix();
  const NQ_TString prefix = translator.GetPrefix();
  const std::u16string_view units = source.StringView();
  TScanner scanner(units, {prefix.StringView(), suffix.StringView()});
  for (TScannedToken token; scanner.Next(token);) {
    NQ_TString name;
    translator.TranslateName(NQ_TString(token.TextIn(units)), name);
    result.Append(units.substr(token.literal, token.begin - token.literal));
    result.Append(kDoubleMarkers.begin).Append(name).Append(kDoubleMarkers.end);
  }
  if (scanner.SyntaxError() && engine_->Logs(1)) Log(1, kSyntaxError, source);
  result.Append(units.substr(scanner.Done()));
  // Unmarked, what stands between a "<" and a "/>" of the text would be read as a token.
  const std::size_t end = units.find(templatenames::kSingleMarkers.end);
  const bool hasDoubleEnd = units.find(kDoubleMarkers.end) != kNone;
  if (scanner.Done() == 0 && !hasDoubleEnd && end != kNone && end > 0) result = NQ_TString(kLiteralMarker) + result;
  if (engine_->Logs(1)) Log(1, "TName::BackTranslate: \"", source, "\" = \"", result, '"');
}
