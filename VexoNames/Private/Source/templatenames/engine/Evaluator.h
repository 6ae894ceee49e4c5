// Templates to text: the one road that every token goes.
//
// An evaluator is made for one call of TName, with the lock held and a budget begun (TRun). Of a token it looks up the
// name, asks the lookup for the value, resolves the tokens in that, writes it as text, cuts it by the stages, and
// applies the formatting options. Each step either succeeds or says why the token fails; one function then truncates
// what was written, counts, logs and reports.
//
//   TSilent observer;
//   TEvaluator<TSilent> evaluator(engine, observer);
//   evaluator.Append(text, result);
//   return evaluator.Count() == 0;
//
// Most tokens are a name whose text or number is stored and known as it is: for those the walk over the template has a
// shorter way (AppendKnown), unless somebody wants to see each step.
#pragma once

#include "engine/Engine.h"
#include "engine/Observer.h"
#include "engine/Template.h"
#include "engine/TextInHand.h"
#include "engine/Token.h"
#include "text/Stages.h"

namespace templatenames {

/// What a lookup gave.
struct TValue {
  enum class TKind : std::uint8_t { Text, Number, Other, Unknown };

  TKind kind = TKind::Other;
  bool plain = false;   // of a text: it holds no token
  bool isUrl = false;   // the text is that of a URL
  bool stored = false;  // it is what the entry holds
  std::int32_t number = 0;
  const NQ_TString* text = nullptr;
  const NQ_TAny* any = nullptr;  // as the lookup gave it; null when it is the text in hand
};

/// How a value becomes text.
struct TWriter {
  TRecipe::TWriting writing = TRecipe::TWriting::None;
  std::u16string_view key;
  NQ_TDict* entry = nullptr;
  const TPrintfFormat* format = nullptr;  // null: refused, or not of this kind
  std::u16string_view formatText;         // the token's, else the entry's
  std::u16string_view tokenFormat;        // what handlers of the caller's are given
  bool counts = false;
};

/// One stage: what the token asks for, and what the entry does.
struct TStage {
  std::u16string_view key;
  std::u16string_view attribute;
  const NQ_TAny* own = nullptr;
  TNameProblem::TNameProblem_Kind problem = TNameProblem::TNameProblem_KindElem;  // when it fails

  /// Whether there is anything to do.
  bool Asks() const { return !attribute.empty() || own != nullptr; }
};

/// How the log names a stage.
struct TStageLines {
  const char* handler;
  const char* word;
};

template <class TObserver>
class TEvaluator {
 public:
  TEvaluator(TEngine& engine, TObserver& observer) : engine_(engine), budget_(engine.budget), observer_(observer) {}
  TEvaluator(const TEvaluator&) = delete;
  TEvaluator& operator=(const TEvaluator&) = delete;

  /// How many tokens failed, those in values included.
  int Count() const { return count_; }

  // ---- templates and tokens

  /// Appends the text with its tokens resolved. A text that begins with the literal marker is appended without it.
  void Append(const NQ_TString& text, NQ_TString& out);
  /// The same with those markers, and no literal marker.
  void AppendScanned(const NQ_TString& text, const TMarkers& markers, NQ_TString& out);
  /// Appends the value of one token; false, with nothing appended, when it failed and was counted.
  bool AppendToken(TToken& token, NQ_TString& out);

  // ---- single steps, for the built-in handlers. False when the token fails for it.

  enum class TLookup : std::uint8_t { Found, Failed, Unknown };

  /// Take the value that is stored, if any.
  TLookup AskStored(const NQ_TString& key, const NQ_TAny* stored, NQ_TAny& value);
  TLookup AskTime(const NQ_TString& key, const NQ_TAny* stored, NQ_TAny& value);
  TLookup AskSql(const NQ_TString& key, NQ_TAny& value);
  /// Writes the value.
  bool Write(const TWriter& writer, const TValue& value, TTextInHand& text);
  /// Cut the text in hand.
  bool CutElem(const TStage& stage, TTextInHand& text);
  bool CutExtract(const TStage& stage, TTextInHand& text);
  bool CutRegex(const TStage& stage, TToken* token, TTextInHand& text);
  bool CutPattern(const TStage& stage, TTextInHand& text) { return CutRegex(stage, nullptr, text); }
  /// What a lookup gave, as the other steps take it.
  void SetValueFrom(const NQ_TAny& any, TValue& value) const;
  /// Logs why a step failed; always false.
  bool EndStep();

 private:
  /// A token in a template, and the text between it and the one before.
  struct TPlace {
    std::u16string_view literal;
    std::u16string_view written;  // with its markers
    std::size_t begin = 0;        // of that, in the template
    std::size_t end = 0;
  };

  // EvaluatorTokens.h
  bool Scan(const NQ_TString& text, const TMarkers& markers, NQ_TString& out);
  void AppendParts(TTemplate& kept, NQ_TString& out);
  void AppendPiece(const TPlace& place, TToken& token, NQ_TString& out);
  void AppendOverlapping(const TPlace& place, NQ_TString& out);
  void AppendLogged(const TPlace& place, TToken& token, NQ_TString& out);
  bool AppendKnown(std::u16string_view literal, TToken& token, NQ_TString& out);
  bool AppendAsIs(std::u16string_view literal, TToken& token, const TRecipe& recipe, NQ_TString& out);
  bool AppendNumber(std::u16string_view literal, TToken& token, const TRecipe& recipe, NQ_TString& out);
  bool FindGroup(TToken& token, std::u16string_view& text);
  bool Produce(TToken& token, NQ_TString& out);
  bool ProduceEmpty();
  void Warn(const TToken& token);
  TEntry* FindEntry(TToken& token) const;
  void LogSplit(const TToken& token) const;
  void LogEnd(const NQ_TString& text, bool syntaxError, unsigned int begin, const NQ_TString& out) const;
  void NoteSyntax(std::u16string_view text);
  void NoteAt(const TSyntaxNote& note, std::u16string_view text);
  void FailToken(unsigned int begin, NQ_TString& out);
  bool FailLimit(TLimit limit, std::u16string_view key);
  bool FailUndefined(const TToken& token);

  // EvaluatorSteps.h
  bool TakeKnown(const TRecipe& recipe, TValue& value);
  TLookup LookUp(TToken& token, TEntry& entry, NQ_TAny& value);
  TLookup AskService(const NQ_TString& key, TEntry& entry, bool keeps, NQ_TAny& value);
  TLookup AskHandler(const NQ_TString& key, TEntry& entry, TName::TLookupFunction function,
                     const TNameLookupHandler* object, NQ_TAny& value);
  template <class TMakeProblem>
  TLookup FailLookup(const NQ_TString& key, TMakeProblem problem);
  bool Make(TToken& token, TEntry& entry, TValue& value, NQ_TString& out);
  bool MakeIn(TToken& token, TEntry& entry, TValue& value, NQ_TString& out);
  void ResolveNested(TValue& value, TTextInHand& text);
  TWriter WriterOf(TToken& token, TEntry& entry) const;
  bool WriteText(const TWriter& writer, const TValue& value, TTextInHand& text);
  bool WriteInteger(const TWriter& writer, const TValue& value, TTextInHand& text);
  bool WriteTime(const TWriter& writer, const TValue& value, TTextInHand& text);
  bool WriteByHandler(const TWriter& writer, const TValue& value, TTextInHand& text);
  bool FailFormat(const TWriter& writer, TPrintfFormat::TKind kind);
  bool FailType(const TWriter& writer, const TValue& value);
  bool ApplyOptions(TToken& token, std::int64_t left, TTextInHand& text);
  bool Format(std::u16string_view key, const NQ_TDict& options, std::int64_t left, NQ_TString& value,
              TTextInHand& text);

  // EvaluatorCuts.h
  bool Cut(TToken& token, TEntry& entry, TTextInHand& text);
  bool CutByHandler(TName::TStageFunction function, const TStage& stage, TEntry& entry, TTextInHand& text);
  bool ReadSpecification(const TStage& stage, std::u16string_view& specification);
  bool FailStage(const TStage& stage, TStageError error, std::u16string_view specification);
  bool TakeUnmatched(const TStage& stage, const TRegexResult& result, const NQ_TString& pattern, TTextInHand& text);
  void LogStage(const TStageLines& lines, const TStage& stage) const;
  void LogSpecification(const TStageLines& lines, std::u16string_view specification) const;
  void LogCut(const TStageLines& lines, const TStage& stage, const TTextInHand& text) const;

  // EvaluatorNotes.h: what is noted where there is a report
  void NoteToken(TToken& token, std::u16string_view written);
  void NoteRecipe(TToken& token, TEntry& entry);

  /// Runs code of the caller's.
  template <class TAction>
  bool Foreign(TAction action);
  template <class TAction>
  bool ForeignWith(const NQ_TDict& entry, TAction action);

  // ---- failing

  bool Logs(int level) const {
    if constexpr (TObserver::kLogs) return engine_.Logs(level);
    return false;
  }
  /// Says why the token in hand fails, to the log what stands behind its name; always false. The problem is asked for
  /// only where there is a report.
  template <class TMakeProblem>
  bool Fail(std::u16string_view key, std::string_view log, TMakeProblem problem) {
    if constexpr (TObserver::kLogs || TObserver::kReports) {
      failure_.key = NQ_TString(key);
      failure_.log = log;
    }
    if constexpr (TObserver::kReports) failure_.problem = problem();
    return false;
  }
  template <class TAction>
  void Reported(TAction action) {
    if constexpr (TObserver::kReports) action(observer_);
  }

  /// Why the token in hand fails.
  struct TFailure {
    NQ_TString key;
    std::string log;
    TProblem problem;
  };

  TEngine& engine_;
  TBudget& budget_;
  TObserver& observer_;
  struct TNothing {};

  int count_ = 0;
  [[no_unique_address]] std::conditional_t<TObserver::kLogs || TObserver::kReports, TFailure, TNothing> failure_;
};

extern template class TEvaluator<TSilent>;
extern template class TEvaluator<TLogging>;
extern template class TEvaluator<TReporting>;
extern template class TEvaluator<TChecking>;

}  // namespace templatenames
