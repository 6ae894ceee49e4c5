// Text on the wire: UTF-8, and unpaired surrogates kept.
#pragma once

#include <string>
#include <string_view>

#include "NQ_TString.h"

namespace nq::wire {

/// The bytes of a text: UTF-8, except that an unpaired surrogate gets the three bytes that it would have if it were a
/// character.
std::string FromText(const NQ_TString& text);

/// The text that FromText made the bytes of; other invalid pieces become U+FFFD.
NQ_TString ToText(std::string_view bytes);

}  // namespace nq::wire
