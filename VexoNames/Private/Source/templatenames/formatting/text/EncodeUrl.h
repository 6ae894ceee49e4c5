// Percent-encoding that leaves the structure of a URL alone.
#pragma once

#include "NQ_TString.h"

namespace templatenames {

/// Encodes the value in place as NQ_TURL::HexEncode does, but for what it begins with, which is kept:
///
///   letters ":"                             D:\a b                 D:%5Ca%20b
///   letters "://" letters ":" digits "/"    smb://server:445/a b   smb://server:445/a%20b
///
/// Letters are those of ASCII; each run of letters or digits may be empty. False, with the value unchanged, when the
/// result is too long (kMostRewritten). Takes linear time. Any thread may call.
bool EncodeUrl(NQ_TString& value);

}  // namespace templatenames
