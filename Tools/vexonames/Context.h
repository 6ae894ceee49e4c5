// Context files: what a task knows, as JSON.
//
//   { "names": { "customer": {"Type": "Name", "Value": "Acme"}, "version": {"Type": "Number", "Value": 7} } }
#pragma once

#include <string>

#include "TName.h"

/// Fills the registry with what the file says. Throws TInputError with the file and the place in it when the file
/// cannot be read, is no JSON, or says something that is not understood.
void ReadContext(const std::string& file, TName& names);
