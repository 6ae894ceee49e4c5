// Replacing every occurrence of a text.
#pragma once

#include <cstddef>
#include <string_view>

#include "NQ_TString.h"

namespace templatenames {

/// Replaces every occurrence of `find` in the value, from left to right; what was put in is not looked at again. An
/// empty `find` replaces nothing. False, with the value unchanged, when the result would be longer than `most` and
/// longer than the value. Takes time linear in value and result, whatever the texts. The texts must not lie in the
/// value. Any thread may call.
[[nodiscard]] bool ReplaceText(std::u16string_view find, std::u16string_view replace, std::size_t most,
                               NQ_TString& value);

}  // namespace templatenames
