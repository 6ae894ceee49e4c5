// Definition records: what a context file says about one name.
#pragma once

#include "JsonNode.h"
#include "TName.h"

/// Defines the name, which is the node's key, as the record says. Throws TInputError at the first thing in it that is
/// not as it should be.
void ReadRecord(const TJsonNode& node, TName& names);

/// "Name", "URL", ...: the word that stands for a type in a record.
const char* TypeWord(TName::TName_Type type);
