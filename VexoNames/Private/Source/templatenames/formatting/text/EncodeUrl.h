// Percent-encoding that leaves the structure of a URL alone.
#pragma once

#include <cstddef>
#include <string_view>

#include "NQ_TString.h"

namespace templatenames {

/// Encodes the value in place as NQ_TURL::HexEncode does, but for what it begins with, which is kept:
///
///   letters ":"                             D:\a b                 D:%5Ca%20b
///   letters "://" letters ":" digits "/"    smb://server:445/a b   smb://server:445/a%20b
///
/// Letters are those of ASCII; each run of letters or digits may be empty. False, with the value unchanged, when the
/// result would be longer than `most` and longer than the value. Takes linear time. Any thread may call.
[[nodiscard]] bool EncodeUrl(std::size_t most, NQ_TString& value);

/// How much of a URL is kept as it is: 0, its scheme and ":", or all up to the "/" behind the port.
std::size_t KeptOfUrl(std::u16string_view url);
/// The same by two regular expressions, which are what it means; tests hold KeptOfUrl to it.
std::size_t KeptOfUrlByRegex(std::u16string_view url);

}  // namespace templatenames
