// Replacing every occurrence of a text.
#pragma once

#include <string_view>

#include "NQ_TString.h"

namespace templatenames {

/// Replaces every occurrence of `find` in the value, from left to right; what was put in is not looked at again. An
/// empty `find` replaces nothing. False, with the value unchanged, when the result is too long (kMostRewritten). Takes
/// time linear in value and result, whatever the texts. The texts must not lie in the value. Any thread may call.
bool ReplaceText(std::u16string_view find, std::u16string_view replace, NQ_TString& value);

}  // namespace templatenames
