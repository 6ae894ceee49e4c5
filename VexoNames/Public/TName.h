// Names and templates.
//
// A TName keeps, for one job or task, a registry of names and resolves templates with them:
//
//   TName names;
//   names.Define("customer", TName::TName_TypeString, TName::TName_LookupValue);
//   names.SetValue("customer", NQ_TString("Acme"));
//   NQ_TString path;
//   bool all = names.Resolve("out/<<customer/>>.pdf", path);   // out/Acme.pdf, true
//
// A token that cannot be resolved stays in the text and is counted; Resolve then returns false. Templates, values and
// definitions are untrusted: a bad one fails its token, never the program (TNameLimits.h).
//
// Threads: every operation may be called from any thread. Each locks the registry for its whole run, a resolution for
// the whole template; handlers run with the lock held, on the resolving thread, and may call back into the same TName.
// Only the debug level and the proxy provider are read and set without the lock, and a translator is called without it.
//
// Failures: an operation on one name throws NQ_ENoSuchKey with the name when it is not defined; nothing is changed.
// Define, UnDefine and IsDefined throw nothing. Nothing is stored when an operation throws.
//
// Log: one line per event on standard output, or to the host's sink (SetLogSink), when the debug level reaches the
// line's level: 1 for whole templates, 2 for single names and tokens. A few lines are written at every level, 0 too:
// what the regex stage has to say (no match, no group, an expression that cannot be compiled or searched), formatting
// options without a known "DataFormat", dates that cannot be read or written, and duplicate, invalid and (on standard
// error) failed definitions.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>

#include "NQ_TAny.h"
#include "NQ_TDict.h"
#include "NQ_TList.h"
#include "NQ_TString.h"
#include "NQ_TTime.h"
#include "NQ_TTree.h"
#include "NQ_TURL.h"
#include "TNameExplanation.h"
#include "TNameLimits.h"
#include "TNameLookupHandler.h"
#include "TNameReport.h"
#include "TNameTranslator.h"
#include "TNameWarnLookupHandler.h"

class CFS_TProxy;
class TNameProxyProvider;

namespace templatenames {
struct TEngine;
}  // namespace templatenames

class NQ_EXPORT TName {
 public:
  /// What kind of value a name has.
  enum TName_Type : std::int32_t {
    TName_TypeString = 0,      // NQ_TString
    TName_TypeURL = 1,         // NQ_TURL
    TName_TypeNumber = 2,      // 32-bit integer
    TName_TypeTime = 3,        // NQ_TTime
    TName_TypeAutoNumber = 4,  // 32-bit integer, counted up by one at each resolution
  };

  /// Where the value of a name comes from.
  enum TName_Lookup : std::int32_t {
    TName_LookupValue = 0,               // what SetValue stored
    TName_LookupServerQuery = 1,         // a service; the reply is kept
    TName_LookupServerQueryNoCache = 2,  // a service, asked each time
    TName_LookupSQLQuery = 3,            // not carried out: the token fails
    TName_LookupTime = 4,                // the stored time, or the current one
  };

  /// The last failure that a handler or the loading of definitions left.
  enum TName_Error : std::int32_t {
    TName_ErrorNone = 0,
    TName_ErrorAlreadyDefined = 1,
    TName_ErrorNoType = 2,
    TName_ErrorUnknownType = 3,
    TName_ErrorElemSyntax = 4,     // elem: no separator
    TName_ErrorElemIndex = 5,      // elem: negative index
    TName_ErrorExtractIndex = 6,   // extract: negative start
    TName_ErrorExtractSyntax = 7,  // extract: no separator
    TName_ErrorSQLQuery = 8,
    TName_ErrorServerQuery = 9,
    TName_ErrorServerQueryException = 11,
  };

  /// Computes the value of a name; see TNameLookupHandler::Lookup.
  using TLookupFunction = bool (*)(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value);
  /// Turns the value of a name into text. The format is the token's, empty when it gives none.
  using TTypeFunction = bool (*)(const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format, NQ_TDict* entry,
                                 TName* names, NQ_TString& result);
  /// Cuts the text of a name. The attribute is the token's, empty when it gives none; result holds the input on entry.
  using TStageFunction = bool (*)(const NQ_TString& key, const NQ_TString& input, const NQ_TString& attribute,
                                  NQ_TDict* entry, TName* names, NQ_TString& result);
  /// Takes a line of the log, without its end, and its level: 0 for lines that are written at every debug level.
  using TLogSink = std::function<void(int level, const std::string& line)>;
  /// Is told of a token before it is looked up; see TNameWarnLookupHandler.
  using TWarnFunction = void (*)(const NQ_TString& key, TName* names);

  // ---- TName.cpp: the object

  TName();
  ~TName();
  TName(const TName&) = delete;
  TName& operator=(const TName&) = delete;

  void SetError(TName_Error error);
  TName_Error GetError() const;
  /// Returns the level before.
  int SetDebugLevel(int level);
  int GetDebugLevel() const;
  /// Where the log lines of all objects of the process go from now on, those of level 0 and the reports of failed
  /// definitions included; an empty function for standard output (and standard error), as at the start. The sink is
  /// called from any thread, often with a registry locked: it should only take the line. Any thread may set one.
  static void SetLogSink(TLogSink sink);
  void SetLimits(const TNameLimits& limits);
  TNameLimits GetLimits() const;
  /// For the library's own parts; opaque to programs.
  templatenames::TEngine& Engine() const { return *engine_; }

  // ---- Registry.cpp: names, values and attributes

  /// Creates the name, or creates it anew, with the defaults of its type; false when something inside threw, with the
  /// definition as far as it got. A type outside the enumeration leaves the name undefined and returns true.
  bool Define(const NQ_TString& key, TName_Type type, TName_Lookup lookup);
  void UnDefine(const NQ_TString& key);
  void UnDefine();
  bool IsDefined(const NQ_TString& key) const;
  TName_Type GetType(const NQ_TString& key) const;
  /// The names, each as an NQ_TString, in the order of their definition.
  NQ_TList GetTNames() const;

  /// Each form takes the values of its type only: another one throws NQ_EIncompatibleType with the name.
  void SetValue(const NQ_TString& key, const NQ_TString& value);
  void SetValue(const NQ_TString& key, const int& value);
  void SetValue(const NQ_TString& key, const NQ_TTime& value);
  void SetValue(const NQ_TString& key, const NQ_TURL& value);
  void SetValue(const NQ_TString& key, const char* utf8) { SetValue(key, NQ_TString(utf8)); }
  /// Not to be narrowed or misread.
  template <class T>
  requires std::is_floating_point_v<T> || std::same_as<T, bool> || std::is_null_pointer_v<T>
  void SetValue(const NQ_TString& key, T value) = delete;
  /// A copy of the value; illegal when there is none.
  NQ_TAny GetValue(const NQ_TString& key) const;
  bool HasValue(const NQ_TString& key) const;
  void RemValue(const NQ_TString& key);
  /// Counts the value up or down by one and returns it. NQ_ENotAnInt32 when it is no 32-bit integer or would leave the
  /// range of one; NQ_EIncompatibleType when the name is of no number type.
  int Increment(const NQ_TString& key);
  int Decrement(const NQ_TString& key);

  /// Any value of the caller's that travels with the name.
  void SetRawData(const NQ_TString& key, const NQ_TAny& value);
  /// A copy; illegal when there is none.
  NQ_TAny GetRawData(const NQ_TString& key) const;
  void SetUserDefined(const NQ_TString& key, bool userDefined);
  bool IsUserDefined(const NQ_TString& key) const;

  /// String attributes. A getter's reference is valid until that attribute is set again or the name goes; the empty
  /// string stands for an attribute that is not set.
  void SetCategory(const NQ_TString& key, const NQ_TString& value);
  const NQ_TString& GetCategory(const NQ_TString& key) const;
  void SetDescription(const NQ_TString& key, const NQ_TString& value);
  const NQ_TString& GetDescription(const NQ_TString& key) const;
  void SetUserDescription(const NQ_TString& key, const NQ_TString& value);
  const NQ_TString& GetUserDescription(const NQ_TString& key) const;
  void SetUserInfo(const NQ_TString& key, const NQ_TString& value);
  const NQ_TString& GetUserInfo(const NQ_TString& key) const;
  void SetVisibility(const NQ_TString& key, const NQ_TString& value);
  const NQ_TString& GetVisibility(const NQ_TString& key) const;
  void SetLocalization(const NQ_TString& key, const NQ_TString& value);
  const NQ_TString& GetLocalization(const NQ_TString& key) const;
  /// A printf format, used when the token gives none; what it may hold stands with the type handlers.
  void SetFormat(const NQ_TString& key, const NQ_TString& value);
  /// Stage specifications, used when the token gives none.
  void SetElemValue(const NQ_TString& key, const NQ_TString& value);
  void SetExtractValue(const NQ_TString& key, const NQ_TString& value);
  void SetRegExValue(const NQ_TString& key, const NQ_TString& value);

  // ---- Formatting.cpp: what is done to a text last

  /// Stores a copy of the options in place of earlier ones. "DataFormat" chooses the formatter, "TEXT", "NUMBER" or
  /// "DATETIME"; Docs/formatting-options.md lists what each of them reads.
  void SetFormattingOptions(const NQ_TString& key, const NQ_TDict& options);

  // ---- Handlers.cpp: which handlers produce values

  /// The clear flag removes the name's value too. An object is not owned.
  void SetLookupHandler(const NQ_TString& key, TLookupFunction function, bool clear);
  void SetLookupHandler(const NQ_TString& key, const TNameLookupHandler* handler, bool clear);
  void SetLookupHandler(const NQ_TString& key, TName_Lookup lookup);
  void SetTypeHandler(const NQ_TString& key, TTypeFunction function);
  /// Asked before every name's own lookup; what it answers with true is taken. Null removes it.
  void SetUserLookupHandler(TLookupFunction function);
  /// One warn handler at a time, null for none; an object is not owned.
  void SetWarnLookupHandler(std::nullptr_t) { SetWarnLookupHandler(static_cast<TWarnFunction>(nullptr)); }
  void SetWarnLookupHandler(TWarnFunction function);
  void SetWarnLookupHandler(TNameWarnLookupHandler* handler);
  /// The object set last; null when there is none, or a function.
  TNameWarnLookupHandler* GetWarnLookupHandler() const;
  /// A stage that is null ends the chain: the stages after it are not run.
  void SetElemHandler(TStageFunction function);
  void SetExtractHandler(TStageFunction function);
  void SetRegExHandler(TStageFunction function);

  // ---- Translation.cpp: templates in another form

  /// Whether the text begins with "<<CDATA/>>", which makes the rest literal.
  [[nodiscard]] static bool IsMarked(const NQ_TString& text);
  [[nodiscard]] static NQ_TString AddMarker(const NQ_TString& text);
  [[nodiscard]] static NQ_TString RemoveMarker(const NQ_TString& text);
  /// Makes a name out of any text: "%", " ", "<", ">" and "/" become percent escapes.
  [[nodiscard]] static NQ_TString Encode(const NQ_TString& text);

  /// Replaces every token of a defined name by the translator's prefix, its name for it, and its suffix. The token's
  /// attributes are lost; tokens of other names stay. Throws only what the translator throws.
  void Translate(const NQ_TString& text, const TNameTranslator& translator, NQ_TString& result) const;
  /// Replaces every text between the translator's prefix and suffix by a token. With an empty suffix nothing is
  /// replaced.
  void BackTranslate(const NQ_TString& text, const TNameTranslator& translator, NQ_TString& result) const;

  // ---- Resolution.cpp: templates to text

  /// Resolves a template. True when no token failed; the others stay in the text as written. Throws only what a
  /// handler of the caller's throws.
  bool Resolve(const NQ_TString& text, NQ_TString& result);
  /// The same with markers of the caller's, appended to what result holds.
  bool Resolve(const NQ_TString& text, const NQ_TString& beginMarker, const NQ_TString& endMarker, NQ_TString& result);
  /// Resolves a template to a file URL. False, with the URL unchanged, when the text is neither "//host/path" nor
  /// "file://host/path".
  bool Resolve(const NQ_TString& text, NQ_TURL& url);
  bool Resolve(const char* text, NQ_TURL& url) { return Resolve(NQ_TString(text), url); }
  /// Resolves the host and the path of a URL.
  bool Resolve(const NQ_TURL& in, NQ_TURL& out);
  /// The URL form or the string form, by what the value holds; false, with the URL unchanged, for anything else.
  bool Resolve(const NQ_TAny& in, NQ_TURL& out);
  /// Resolves one token, given without its markers.
  bool ResolveTokenEx(const NQ_TString& tokenText, NQ_TString& result);

  // ---- Reports.cpp: what became of the tokens

  /// Resolves a template as the form without a report does, with the same text, count and side effects, and tells what
  /// became of its tokens; what the report held before is dropped. Errors of unit conversion and of formatting options
  /// are failures of their token here, where the other form throws them. An exception of a handler of the caller's
  /// leaves, with the report saying which token it was.
  bool Resolve(const NQ_TString& text, NQ_TString& result, TNameReport& report);
  /// Tells what can be known of a template without calling a handler, asking a service, counting anything up or
  /// writing to the log: names that are not defined, formats and specifications that cannot be used, and what a stored
  /// value becomes. True when there is no failure among that.
  bool Check(const NQ_TString& text, TNameReport& report) const;
  /// Resolves a template as far as nothing is lost by it: counters stand still, and what only a service could tell
  /// fails. Handlers of the caller's are called.
  bool Preview(const NQ_TString& text, NQ_TString& result, TNameReport& report);
  /// Resolves a template and tells of each token how it came to its text; with `asPreview`, as Preview does.
  [[nodiscard]] TNameExplanation Explain(const NQ_TString& text, bool asPreview = false);

  // ---- ServerQuery.cpp: values from services

  /// Records a query: host (a template), server ("#" and a port, or the name of a service), method, parameters. The
  /// lookup kinds for services carry it out when the name is resolved, unless it has a value; the registry stays locked
  /// meanwhile. When the service gives no reply the token fails.
  void SetServerQuery(const NQ_TString& key, NQ_TString host, NQ_TString server, NQ_TString method, NQ_TDict params);
  /// One request, {"M": method} with the parameters beside it. False, with the result unchanged, when there is no
  /// reply; what was thrown is in the log at level 1. Throws nothing. Does not lock the registry.
  bool DoQueryRPC(const NQ_TString& host, const NQ_TString& server, const NQ_TString& method, const NQ_TDict& params,
                  NQ_TAny& result);
  /// Drops the reply that a cached query keeps, of one name or of all. Values that were set stay.
  void ClearCache(const NQ_TString& key);
  void ClearCaches();
  /// Where queries get their clients; empty for a client per query, as at the start. Takes no lock: call it before
  /// anything is resolved.
  void SetTNameProxyProvider(std::shared_ptr<TNameProxyProvider> provider);

  // ---- DefinitionRecords.cpp: names from trees

  /// Defines the name as the record says; Docs/definition-records.md lists its keys. False, with nothing changed, when
  /// the name is defined already, or the record has no type or one that is not known: the error code tells. False, too,
  /// when a key holds a value of another class than it takes: the name then stays as far as it got, standard error
  /// tells why, and the error code stays as it was. `GetErrorReason` tells in all cases.
  bool Define(const NQ_TString& name, const NQ_TTree& definition, bool userDefined);
  /// Why the last definition failed, in one sentence: which record of which resource, what was found there, and what
  /// belongs there; of a resource that could not be read, which one and why. A duplicate in a tree, which is passed
  /// over, counts too. Empty when nothing has failed since the start or `SetError(TName_ErrorNone)`.
  NQ_TString GetErrorReason() const;

  // ---- ConfigurationDefinitions.cpp: names from the configuration server

  /// Defines what the configuration server holds for a name set: the names of one scope, or of all with "*"; of one
  /// scope only the given name unless that is "*". False when something could not be read or defined; what was defined
  /// before that stays. Several resources may hold the same name: with "*" the first one counts, and the others are
  /// said on standard output; a name that is asked for alone gives false then. Throws nothing; `GetErrorReason` tells
  /// which resource or record it was. Reads without locking the registry.
  bool Define(CFS_TProxy& cfs, const NQ_TString& serverTree, const NQ_TString& nameSet, const NQ_TString& scope,
              const NQ_TString& name, bool userDefined);
  /// The same from the server "CFS" on the host that the environment variable NQ_SERVER names; the local one when it is
  /// not set.
  bool Define(const NQ_TString& serverTree, const NQ_TString& nameSet, const NQ_TString& scope, const NQ_TString& name,
              bool userDefined);
  /// Where the texts of names are.
  NQ_TString GetDefaultLocalizationFile() const;
  const NQ_TString& GetLocalizationFile(const NQ_TString& key) const;
  /// The files of all names, each once, in the order in which names use them first.
  NQ_TList GetLocalizationFiles() const;

 private:
  std::unique_ptr<templatenames::TEngine> engine_;
};
