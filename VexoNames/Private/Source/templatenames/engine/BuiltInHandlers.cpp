// TName: the library's own lookup and type handlers. They throw nothing: an exception inside one makes it return false,
// and so does a value of another class than the name's type implies.
#include <limits>

#include "NQ_TBoxed.h"
#include "TName.h"
#include "engine/AttributeKeys.h"
#include "engine/Attributes.h"
#include "engine/Entry.h"
#include "text/Log.h"
#include "text/PrintfRefusal.h"

using templatenames::Keys;
using templatenames::Log;
using templatenames::TPrintfFormat;

namespace {

/// False instead of an exception.
template <class Handler>
bool Guarded(const Handler& handler) {
  try {
    return handler();
  } catch (...) {
    return false;
  }
}

/// The token's format, else the name's, else the type's.
NQ_TString FormatOf(const NQ_TString& format, const NQ_TDict& entry, const char* typeFormat) {
  if (!format.Empty()) return format;
  const auto* const own = templatenames::TextIn(entry.ValueOfKey(Keys().format));
  return own == nullptr ? NQ_TString(typeFormat) : *own;
}

NQ_TString WhyRefused(const NQ_TString& pattern, TPrintfFormat::TKind kind) {
  TPrintfFormat::TRefusal refusal;
  TPrintfFormat::Parse(pattern.StringView(), kind, &refusal);
  return templatenames::RefusalReason(pattern.StringView(), kind, refusal);
}

}  // namespace

TName::TLookupFunction TName::BuiltInLookup(TName_Lookup lookup) {
  switch (lookup) {
    case TName_LookupValue:
      return &LookupHandler;
    case TName_LookupSQLQuery:
      return &SQLQueryHandler;
    case TName_LookupTime:
      return &TimeLookupHandler;
    case TName_LookupServerQuery:
      return &ServerQueryHandler;
    case TName_LookupServerQueryNoCache:
      return &ServerQueryHandlerNoCache;
    default:
      return nullptr;
  }
}

bool TName::LookupHandler(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) {
  return Guarded([&] {
    if (names->Logs(2)) Log(2, "TName::LookupHandler: Called function");
    const NQ_TAny* const stored = std::as_const(*entry).ValueOfKey(Keys().value);
    if (stored == nullptr) return false;
    value = *stored;
    if (names->Logs(2)) Log(2, "TName::LookupHandler: Key = \"", key, "\", Value = ", value);
    return true;
  });
}

bool TName::TimeLookupHandler(const NQ_TString&, NQ_TDict* entry, TName* names, NQ_TAny& value) {
  return Guarded([&] {
    if (names->Logs(2)) Log(2, "TName::TimeLookupHandler: Called function");
    const NQ_TAny* const stored = std::as_const(*entry).ValueOfKey(Keys().value);
    if (stored != nullptr && stored->As<NQ_TTime>() == nullptr) return false;
    value = stored == nullptr ? NQ_TAny(NQ_TTime()) : *stored;
    return true;
  });
}

bool TName::SQLQueryHandler(const NQ_TString&, NQ_TDict*, TName* names, NQ_TAny& value) {
  return Guarded([&] {
    if (names->Logs(2)) Log(2, "TName::SQLQueryHandler: Called function");
    value = "(unknown)";
    names->SetError(TName_ErrorSQLQuery);
    return false;
  });
}

bool TName::StringTypeHandler(const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format, NQ_TDict* entry,
                              TName* names, NQ_TString& result) {
  return Guarded([&] {
    if (const auto* text = value.As<NQ_TString>()) {
      const NQ_TString pattern = FormatOf(format, *entry, "%s");
      if (pattern == u"%s") {
        result = *text;
        return true;
      }
      const auto printf = TPrintfFormat::Parse(pattern.StringView(), TPrintfFormat::TKind::Text);
      if (!printf)
        return names->LogFormat(key, pattern, WhyRefused(pattern, TPrintfFormat::TKind::Text).c_str()), false;
      result = NQ_TString();
      printf->AppendText(text->StringView(), result);
      return true;
    }
    if (const auto* url = value.As<NQ_TURL>()) {
      result = templatenames::FileText(*url);
      return true;
    }
    result = NQ_TString();
    return false;
  });
}

bool TName::IntegerTypeHandler(const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format, NQ_TDict* entry,
                               TName* names, NQ_TString& result) {
  return Guarded([&] {
    const auto* const number = value.As<NQ_TInt32>();
    if (number == nullptr) return false;
    int n = number->Value();
    const NQ_TString pattern = FormatOf(format, *entry, "%d");
    const auto printf = TPrintfFormat::Parse(pattern.StringView(), TPrintfFormat::TKind::Integer);
    if (!printf)
      return names->LogFormat(key, pattern, WhyRefused(pattern, TPrintfFormat::TKind::Integer).c_str()), false;
    const auto* const type = std::as_const(*entry).Get<NQ_TInt32>(Keys().type);
    if (type != nullptr && type->Value() == TName_TypeAutoNumber) {
      if (n == std::numeric_limits<int>::max()) return names->LogToken(key, " The counter is at its end"), false;
      ++n;
    }
    entry->Add(Keys().value, n);
    result = NQ_TString();
    printf->AppendInteger(n, result);
    return true;
  });
}

bool TName::TimeTypeHandler(const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format, NQ_TDict* entry,
                            TName* names, NQ_TString& result) {
  return Guarded([&] {
    const auto* const time = value.As<NQ_TTime>();
    if (time == nullptr) return false;
    const NQ_TString pattern = FormatOf(format, *entry, "%X");
    auto text = time->TryFormat(pattern);
    if (!text) return names->LogFormat(key, pattern, "the text is over 65536 bytes, or the year out of range"), false;
    result = std::move(*text);
    return true;
  });
}

void TName::LogFormat(const NQ_TString& key, const NQ_TString& format, const char* reason) const {
  LogToken(key, (NQ_TString(" Format \"") + format + "\" refused: " + reason).Narrow());
}
