#include "Cause.h"

#include "Text.h"

namespace {

// A message that the engine ends a failed token with: how it begins after the key, and what that means. The texts of
// the reasons are completed by the name in quotes where they end in a blank.
struct TSaying {
  std::string_view message;
  const char* kind;
  const char* reason;
};

constexpr TSaying kSayings[] = {
    {" Lookup function failed", "no-value", "there is no value for "},
    {" No lookup handler defined", "lookup", "nothing says where to look up "},
    {" No type handler defined", "type", "nothing says how to write "},
    {" The counter is at its end", "counter", "2147483647 is the last number; it was reached by "},
    {" Nested deeper", "limit", "too many values within values at "},
    {" More tokens", "limit", "too many tokens at "},
    {" More characters", "limit", "too much text at "},
};

// What the stages leave in the error code.
struct TErrorText {
  TName::TName_Error error;
  const char* kind;
  const char* reason;
};

constexpr TErrorText kErrorTexts[] = {
    {TName::TName_ErrorElemSyntax, "elem", "is not \"separator,index\", such as \"_,1\""},
    {TName::TName_ErrorElemIndex, "elem", "has a negative index; the first element is 0"},
    {TName::TName_ErrorExtractIndex, "extract", "has a negative start; the first character is 0"},
    {TName::TName_ErrorExtractSyntax, "extract", "is not \"start,length\", such as \"0,3\""},
};

// The text between the first and the last double quote.
std::string Quoted(std::string_view message) {
  const std::size_t begin = message.find('"');
  const std::size_t end = message.rfind('"');
  if (begin == std::string_view::npos || begin == end) return {};
  return Printable(Shortened(message.substr(begin + 1, end - begin - 1)));
}

// ‘ Format "%5q" refused: the format has ...’
TCause FormatCause(std::string_view message) {
  const std::size_t reason = message.rfind(" refused: ");
  const std::string_view why = reason == std::string_view::npos ? "refused" : message.substr(reason + 10);
  return {"format", "format \"" + Quoted(message.substr(0, reason)) + "\": " + std::string(why)};
}

// The matcher's codes for having reached a limit: of steps, of recursion.
bool TakesTooLong(std::string_view message) {
  return message.ends_with("':match error -8") || message.ends_with("':match error -21");
}

}  // namespace

TCause CauseOf(const NQ_TString& key, std::string_view message, TName::TName_Error error, const std::string& failure) {
  const std::string name = '\'' + Printable(key.Narrow()) + '\'';
  const std::string opening = "TName::ResolveTokenEx: \tKey: \"" + std::string(key.Narrow()) + '"';
  if (message.starts_with(opening)) {
    const std::string_view said = message.substr(opening.size());
    if (said.starts_with(" Format \"")) return FormatCause(said);
    if (said.starts_with(" Lookup function failed")) {
      if (!failure.empty()) return {"service", failure};
      if (error == TName::TName_ErrorServerQuery) return {"service", "the host of the query of " + name + " fails"};
      if (error == TName::TName_ErrorServerQueryException) return {"service", name + " does not say what to ask"};
    }
    for (const TSaying& row : kSayings) {
      if (said.starts_with(row.message)) return {row.kind, row.reason + name};
    }
  }
  if (message.starts_with("TName::TNameElemHandler") || message.starts_with("TName::TNameExtractHandler")) {
    for (const TErrorText& row : kErrorTexts) {
      if (row.error == error) return {row.kind, std::string(row.kind) + " \"" + Quoted(message) + "\" " + row.reason};
    }
  }
  if (message.starts_with("TName:Compilation of regex '") || message.starts_with("TName:'"))
    return {"regex", Printable(Shortened(message.substr(6))) + (TakesTooLong(message) ? ", too many steps" : "")};
  return {"type", "the value of " + name + " could not be written as text"};
}
