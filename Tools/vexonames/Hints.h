// What in a template is probably not what its author meant, although nothing fails.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "TName.h"

/// A sentence for each: an end marker that stops the search for tokens, a name between "<" and ">" without the "/", a
/// single-marker token in a template with double markers, an attribute that does not exist. At most a few.
std::vector<std::string> HintsFor(const TName& names, const NQ_TString& text);

/// The same for what the engine said while it resolved: an expression that matched nothing and so made the text empty,
/// parameters that could not be read from XML files.
std::vector<std::string> HintsFrom(std::string_view engineSaid);
