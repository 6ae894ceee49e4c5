// TName: templates to text. A resolution holds the registry lock for the whole template; nested ones share its budget.
#include "TName.h"
#include "engine/Evaluator.h"
#include "text/Log.h"

using templatenames::Log;
using templatenames::TEngine;
using templatenames::TEvaluator;
using templatenames::TLogging;
using templatenames::TRun;
using templatenames::TSilent;
using templatenames::TToken;

namespace {

/// Silences the log while it lives.
class TQuiet {
 public:
  explicit TQuiet(TName& names) : names_(names), level_(names.SetDebugLevel(0)) {}
  TQuiet(const TQuiet&) = delete;
  TQuiet& operator=(const TQuiet&) = delete;
  ~TQuiet() { names_.SetDebugLevel(level_); }

 private:
  TName& names_;
  int level_;
};

/// Evaluates something within a call that has begun; how many tokens failed.
template <class TAction>
int Evaluate(TEngine& engine, TAction action) {
  if (engine.Logs(1)) {
    TLogging observer;
    TEvaluator<TLogging> evaluator(engine, observer);
    action(evaluator);
    return evaluator.Count();
  }
  TSilent observer;
  TEvaluator<TSilent> evaluator(engine, observer);
  action(evaluator);
  return evaluator.Count();
}

int Resolve(TEngine& engine, const NQ_TString& text, NQ_TString& result) {
  if (&text == &result) {
    const NQ_TString source = text;
    return Resolve(engine, source, result);
  }
  result.Clear();
  return Evaluate(engine, [&](auto& evaluator) { evaluator.Append(text, result); });
}

}  // namespace

bool TName::Resolve(const NQ_TString& text, NQ_TString& result) {
  const TRun run(*engine_);
  return ::Resolve(*engine_, text, result) == 0;
}

bool TName::Resolve(const NQ_TString& text, const NQ_TString& beginMarker, const NQ_TString& endMarker,
                    NQ_TString& result) {
  // Copies, because result may be any of them.
  const NQ_TString source = text;
  const NQ_TString begin = beginMarker;
  const NQ_TString end = endMarker;
  const TRun run(*engine_);
  return Evaluate(*engine_, [&](auto& evaluator) {
           evaluator.AppendScanned(source, {begin.StringView(), end.StringView()}, result);
         }) == 0;
}

bool TName::Resolve(const NQ_TString& text, NQ_TURL& url) {
  const TEngine& engine = *engine_;
  if (engine.Logs(1)) Log(1, "TName::Resolve (string,url): In = \"", text, '"');
  int count = 0;
  NQ_TString resolved;
  {
    const TRun run(*engine_);  // first: the level is changed and put back by one thread at a time
    const TQuiet quiet(*this);
    count = ::Resolve(*engine_, text, resolved);
  }
  bool ok = count == 0;
  const int slashes = resolved.Find("//");
  const int hostBegin = slashes + 2;
  const int hostEnd = slashes == 0 || slashes == 5 ? resolved.Find('/', hostBegin) : -1;
  if (hostEnd >= hostBegin) {
    url.SetScheme("file");
    url.SetHost(resolved.Substring(hostBegin, hostEnd - hostBegin));
    url.SetPath(resolved.Substring(hostEnd + 1));
    if (engine.Logs(2)) Log(2, "TName::Resolve (string,url): Host = \"", url.Host(), '"');
    if (engine.Logs(2)) Log(2, "TName::Resolve (string,url): Path = \"", url.Path(), '"');
  } else {
    ok = false;
  }
  if (engine.Logs(1)) Log(1, "TName::Resolve (string,url): return code = ", ok ? 1 : 0);
  return ok;
}

bool TName::Resolve(const NQ_TURL& in, NQ_TURL& out) {
  const TRun run(*engine_);
  out = in;
  NQ_TString resolved;
  const int hostCount = ::Resolve(*engine_, out.Host(), resolved);
  out.SetHost(resolved);
  const int pathCount = ::Resolve(*engine_, out.Path(), resolved);
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
  const TRun run(*engine_);
  TToken token(source.StringView());
  result = NQ_TString();
  bool resolved = false;
  Evaluate(*engine_, [&](auto& evaluator) { resolved = evaluator.AppendToken(token, result); });
  return resolved;
}
