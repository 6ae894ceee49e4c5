// What kind of value an option holds, in words for people.
#pragma once

#include <cstdint>

#include "NQ_TAny.h"
#include "NQ_TString.h"
#include "formatting/OptionTable.h"

namespace templatenames {

/// Whether the value is of the kind that an option of that form is read as; any number of a count, any text of a word.
bool IsOfKind(const NQ_TAny& value, TOptionForm form);

/// "a text", "true or false", "a whole number", "a list": what IsOfKind wants.
std::u16string_view WantedKind(TOptionForm form);

/// What the value is: ‘the text "2"’, ‘a list’.
NQ_TString KindOf(const NQ_TAny& value);

/// The value as one of the right kind, the way a context file would hold it (2, true, "2"); empty where it is not
/// obvious what that would be.
NQ_TString AsKind(const NQ_TAny& value, TOptionForm form);

}  // namespace templatenames
