// What producing the value of a name takes, compiled from the attributes of its entry: where the value comes from, how
// it becomes text, and what of that is known beforehand.
//
// A name whose text is stored, holds no token, and is neither formatted nor cut is known whole (`asIs`): its token is
// its text. Handlers of the caller's are one more kind of source, or of writing.
#pragma once

#include <cstdint>
#include <string_view>

#include "NQ_TAny.h"
#include "TName.h"
#include "text/PrintfFormat.h"

namespace templatenames {

class TEntry;

/// The attributes that producing a value reads; each null when the entry has none of that name.
struct TEntrySlots {
  const NQ_TAny* type = nullptr;
  const NQ_TAny* value = nullptr;
  const NQ_TAny* format = nullptr;
  const NQ_TAny* typeHandler = nullptr;
  const NQ_TAny* lookupHandler = nullptr;
  const NQ_TAny* lookupHandler2 = nullptr;
  const NQ_TAny* elem = nullptr;
  const NQ_TAny* extract = nullptr;
  const NQ_TAny* regex = nullptr;
  const NQ_TAny* formattingOptions = nullptr;

  bool HasStages() const { return elem != nullptr || extract != nullptr || regex != nullptr; }
};

struct TRecipe {
  /// Where the value comes from.
  enum class TSource : std::uint8_t { None, Stored, Time, Sql, Query, UncachedQuery, Function, Object };
  /// How it becomes text.
  enum class TWriting : std::uint8_t { None, Text, Integer, Time, Handler };
  /// What is known of the value: nothing, a text, a number.
  enum class TKnown : std::uint8_t { Nothing, Text, Number };

  TSource source = TSource::None;
  TWriting writing = TWriting::None;
  TKnown known = TKnown::Nothing;
  bool plain = false;  // of a known text: resolving leaves it as it is
  bool asIs = false;   // a plain text that is neither formatted nor cut: the value of a token without attributes
  bool isPlainNumber = false;  // a known number that is neither counted, cut nor formatted by options
  bool stages = false;         // the entry has stages of its own
  bool options = false;        // the entry has formatting options
  bool isUrl = false;          // the known text is that of a URL, which no format changes
  bool counts = false;         // of a number: it counts up each time it is written
  std::int32_t number = 0;
  const NQ_TString* text = nullptr;
  std::u16string_view units;              // of the text
  const TPrintfFormat* format = nullptr;  // the entry's, for a token that gives none; null: refused, or not known

  /// Whether code of the caller's has a part in it.
  bool IsForeign() const {
    return source == TSource::Function || source == TSource::Object || writing == TWriting::Handler;
  }
};

/// Compiles the entry's attributes. `steady` tells whether the recipe holds until one of them is set again; else it
/// must be compiled anew each time.
TRecipe Compile(TEntry& entry, bool& steady);

/// The printf formats "%s" and "%d".
const TPrintfFormat& PlainFormat(TPrintfFormat::TKind kind);

}  // namespace templatenames
