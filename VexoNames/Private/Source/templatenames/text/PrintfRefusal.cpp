#include "text/PrintfRefusal.h"

#include "text/Find.h"
#include "text/Sentence.h"

namespace templatenames {
namespace {

using TFault = TPrintfFormat::TFault;
using TKind = TPrintfFormat::TKind;

std::u16string_view ConversionOf(std::u16string_view format, const TPrintfFormat::TRefusal& refusal) {
  return format.substr(refusal.begin, refusal.end - refusal.begin);
}

// "50% off" has no conversion in it.
bool IsPercentSign(std::u16string_view conversion) { return conversion == u"%" || conversion.starts_with(u"% "); }

// A conversion of numbers or texts that writes a value of the other kind, as one that writes this kind: flags and width
// stay, and what says how long a fraction or how much of a text is wanted goes. Empty for other conversions.
NQ_TString Rewritten(std::u16string_view conversion, TKind kind) {
  constexpr std::u16string_view kValues = u"sSdDiuUxXocCfFeEgGaA", kLengths = u"hlLqjzt",
                                kFlagsAndWidth = u"-+ #0'123456789";
  if (kValues.find(conversion.back()) == kNone) return {};
  const std::size_t field = std::min(conversion.find_first_not_of(kFlagsAndWidth, 1), conversion.size() - 1);
  const std::size_t behind = conversion.find_first_not_of(u".0123456789", field);
  if (conversion.find_first_not_of(kLengths, behind) != conversion.size() - 1) return {};
  NQ_TString rewritten = u"%";
  for (const char16_t unit : conversion.substr(1, field - 1))
    if (kind == TKind::Integer || unit == u'-' || (unit >= u'0' && unit <= u'9')) rewritten.Append(unit);
  return rewritten.Append(kind == TKind::Integer ? u'd' : u's');
}

NQ_TString Meant(std::u16string_view conversion, TKind kind, TFault fault) {
  if (fault != TFault::WideField && IsPercentSign(conversion)) return Sentence(u"%", conversion);
  return fault == TFault::OtherKind ? Rewritten(conversion, kind) : NQ_TString();
}

}  // namespace

NQ_TString RefusalReason(std::u16string_view format, TKind kind, const TPrintfFormat::TRefusal& refusal) {
  const NQ_TString conversion = Quoted(ConversionOf(format, refusal));
  const bool isText = kind == TKind::Text;
  switch (refusal.fault) {
    case TFault::Unfinished:
      return Sentence(u"the format ends within ", conversion, u"; a percent sign by itself is written \"%%\"");
    case TFault::Second:
      return Sentence(u"the format has a second conversion, ", conversion,
                      u"; one is allowed, and a percent sign by itself is written \"%%\"");
    case TFault::OtherKind:
      return Sentence(conversion, isText ? u" does not write a text; \"%s\" does"
                                         : u" does not write a whole number; \"%d\" does, and \"%04d\" with zeros");
    case TFault::WideField:
      break;
  }
  return Sentence(u"a width or precision of the format is over ", NumberText(TPrintfFormat::kMaxField));
}

NQ_TString RefusalSuggestion(std::u16string_view format, TKind kind, const TPrintfFormat::TRefusal& refusal) {
  const NQ_TString meant = Meant(ConversionOf(format, refusal), kind, refusal.fault);
  if (meant.Empty()) return {};
  const NQ_TString suggestion = Sentence(format.substr(0, refusal.begin), meant, format.substr(refusal.end));
  return TPrintfFormat::Parse(suggestion.StringView(), kind) ? suggestion : NQ_TString();
}

}  // namespace templatenames
