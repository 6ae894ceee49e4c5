// Why one token failed, by what the engine said and left behind.
#pragma once

#include <string>
#include <string_view>

#include "TName.h"

struct TCause {
  std::string kind;
  std::string reason;
};

/// The cause, given the engine's last message (at debug level 2), its error code and what a service failed with, if one
/// did, after the token was tried. For a name that is defined.
TCause CauseOf(const NQ_TString& key, std::string_view message, TName::TName_Error error, const std::string& failure);
