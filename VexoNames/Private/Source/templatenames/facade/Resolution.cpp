// TName: templates to text. A resolution holds the registry lock for the whole template; nested ones share its budget.
#include "TName.h"
#include "engine/KeptTemplates.h"
#include "engine/NameStore.h"
#include "engine/Token.h"
#include "text/Log.h"
#include "text/Scan.h"

using templatenames::kLiteralMarker;
using templatenames::Log;
using templatenames::TKeptTemplate;
using templatenames::TMarkers;
using templatenames::TScannedToken;
using templatenames::TScanner;
using templatenames::TToken;

/// One public call: takes the lock, and gives the outermost call a fresh budget.
class TName::TRun {
 public:
  explicit TRun(TName& names) : names_(names), guard_(names.lock_) {
    if (names_.budget_.depth++ == 0) {
      names_.budget_.tokens = names_.limits_.tokens;
      names_.budget_.characters = names_.limits_.characters;
      names_.budget_.regexMilliseconds = names_.limits_.regexMilliseconds;
      names_.budget_.regexLook = 0;
      names_.budget_.regexSearches = TBudget::kSearchesPerLook;
      names_.budget_.queries = names_.limits_.queries;
      names_.budget_.queryMilliseconds = names_.limits_.queryMilliseconds;
    }
  }
  TRun(const TRun&) = delete;
  TRun& operator=(const TRun&) = delete;
  ~TRun() { --names_.budget_.depth; }

 private:
  TName& names_;
  std::lock_guard<NQ_TMutex> guard_;
};

/// Silences the log while it lives.
class TName::TQuiet {
 public:
  explicit TQuiet(TName& names) : names_(names), level_(names.SetDebugLevel(0)) {}
  TQuiet(const TQuiet&) = delete;
  TQuiet& operator=(const TQuiet&) = delete;
  ~TQuiet() { names_.SetDebugLevel(level_); }

 private:
  TName& names_;
  int level_;
};

// ---- the public forms

bool TName::Resolve(const NQ_TString& text, NQ_TString& result) {
  int count = 0;
  Resolve(text, result, count);
  return count == 0;
}

bool TName::Resolve(const NQ_TString& text, const NQ_TString& beginMarker, const NQ_TString& endMarker,
                    NQ_TString& result) {
  // Copies, because result may be any of them.
  const NQ_TString source = text;
  const NQ_TString begin = beginMarker;
  const NQ_TString end = endMarker;
  int count = 0;
  const TRun run(*this);
  AppendScanned(source, {begin.StringView(), end.StringView()}, result, count);
  return count == 0;
}

bool TName::Resolve(const NQ_TString& text, NQ_TURL& url) {
  if (Logs(1)) Log(1, "TName::Resolve (string,url): In = \"", text, '"');
  int count = 0;
  NQ_TString resolved;
  {
    const TRun run(*this);  // first: the level is changed and put back by one thread at a time
    const TQuiet quiet(*this);
    ResolveInto(text, resolved, count);
  }
  bool ok = count == 0;
  const int slashes = resolved.Find("//");
  const int hostBegin = slashes + 2;
  const int hostEnd = slashes == 0 || slashes == 5 ? resolved.Find('/', hostBegin) : -1;
  if (hostEnd >= hostBegin) {
    url.SetScheme("file");
    url.SetHost(resolved.Substring(hostBegin, hostEnd - hostBegin));
    url.SetPath(resolved.Substring(hostEnd + 1));
    if (Logs(2)) Log(2, "TName::Resolve (string,url): Host = \"", url.Host(), '"');
    if (Logs(2)) Log(2, "TName::Resolve (string,url): Path = \"", url.Path(), '"');
  } else {
    ok = false;
  }
  if (Logs(1)) Log(1, "TName::Resolve (string,url): return code = ", ok ? 1 : 0);
  return ok;
}

bool TName::Resolve(const NQ_TURL& in, NQ_TURL& out) {
  const TRun run(*this);
  out = in;
  int hostCount = 0;
  int pathCount = 0;
  NQ_TString resolved;
  ResolveInto(out.Host(), resolved, hostCount);
  out.SetHost(resolved);
  ResolveInto(out.Path(), resolved, pathCount);
  out.SetPath(resolved);
  return hostCount == 0 && pathCount == 0;
}

bool TName::Resolve(const NQ_TAny& in, NQ_TURL& out) {
  if (const auto* url = in.As<NQ_TURL>()) return Resolve(*url, out);
  if (const auto* text = in.As<NQ_TString>()) return Resolve(*text, out);
  return false;
}

bool TName::ResolveTokenEx(const NQ_TString& tokenText, NQ_TString& result) {
  const NQ_TString source = tokenText;  // result may be the same string
  int count = 0;
  const TRun run(*this);
  TToken token(source.StringView());
  return ResolveTokenEx(token, result, count);
}

// ---- whole templates

void TName::Resolve(const NQ_TString& text, NQ_TString& result, int& count) {
  const TRun run(*this);
  ResolveInto(text, result, count);
}

// The same within a call that has begun.
void TName::ResolveInto(const NQ_TString& text, NQ_TString& result, int& count) {
  if (&text == &result) {
    const NQ_TString source = text;
    return ResolveInto(source, result, count);
  }
  if (Logs(1)) Log(1, "TName::Resolve: \"", text, '"');
  result.Clear();
  AppendResolved(text, result, count);
}

// Appends the text with its tokens resolved. The literal marker counts at the beginning of the text. The text of the
// outermost template is free: only what values add to it is bounded.
void TName::AppendResolved(const NQ_TString& text, NQ_TString& out, int& count) {
  const std::u16string_view units = text.StringView();
  if (budget_.depth > 1) budget_.characters -= static_cast<std::int64_t>(units.size());
  if (units.starts_with(kLiteralMarker)) {
    AppendUnits(units.substr(kLiteralMarker.size()), out);
    return;
  }
  if (const auto kept = names_->Templates().Find(text); kept != nullptr && !Logs(1)) {
    AppendKept(*kept, out, count);
  } else {
    const NQ_TString source = text;  // a handler may change the caller's
    AppendScanned(source, templatenames::ChooseMarkers(units), out, count);
  }
}

void TName::AppendScanned(const NQ_TString& text, const TMarkers& markers, NQ_TString& out, int& count) {
  const std::u16string_view units = text.StringView();
  out.Reserve(out.Length() + text.Length());  // values are about as long as their tokens
  TScanner scanner(units, markers);
  for (TScannedToken place; scanner.Next(place);) {
    const std::u16string_view literal = units.substr(place.literal, place.begin - place.literal);
    const std::u16string_view tokenText = units.substr(place.textBegin, place.textEnd - place.textBegin);
    if (!AppendPiece(literal, tokenText, out, count))
      AppendUnits(units.substr(place.begin, place.end - place.begin), out);
  }
  AppendUnits(units.substr(scanner.Done()), out);
  if (!Logs(1)) return;
  if (scanner.SyntaxError()) Log(1, "TE: Template name syntax error: no begin token found in ", text);
  Log(1, "TName::Resolve: \"", text, "\" = \"", out, '"');
}

void TName::AppendKept(TKeptTemplate& kept, NQ_TString& out, int& count) {
  const std::u16string_view units = kept.source.StringView();
  for (const TKeptTemplate::TPiece& piece : kept.pieces) {
    const std::u16string_view literal = units.substr(piece.literal, piece.begin - piece.literal);
    if (!AppendPiece(literal, kept.tokens[piece.token], out, count))
      AppendUnits(units.substr(piece.begin, piece.end - piece.begin), out);
  }
  AppendUnits(units.substr(kept.done), out);
}

// ---- single tokens

// An empty token is an empty text, formatted by no name's options.
bool TName::ResolveEmptyToken(int& count) {
  if (const char* limit = ExceededLimit()) {
    LogToken({}, limit);
    ++count;
    return false;
  }
  --budget_.tokens;
  if (Logs(2)) Log(2, "TName::ApplyFormattingOptions: key = \"\"");
  return true;
}

bool TName::ResolveTokenEx(TToken& token, NQ_TString& result, int& count) {
  result = NQ_TString();
  if (token.text.empty()) return ResolveEmptyToken(count);
  if (Logs(2)) {
    Log(2, "TName::ResolveTokenEx: \tKey: \"", NQ_TString(token.parts.key), "\"; Format: \"",
        NQ_TString(token.parts.format), "\"; Elem: \"", NQ_TString(token.parts.elem), "\"; Extract: \"",
        NQ_TString(token.parts.extract), "\" RegEx: \"", NQ_TString(token.parts.regex), '"');
  }
  if (ProduceValue(token, result, count)) return true;
  ++count;
  return false;
}
