// Names from records: small trees that say all about one name each.
//
// The public forms of TName::Define go through here, and so do the system names. Any thread: each locks the registry
// for one record at a time.
#pragma once

#include "definitions/DefinitionOutcome.h"
#include "engine/Engine.h"

namespace templatenames {

/// Defines the name as the record says.
TDefinitionOutcome DefineRecord(TEngine& engine, const NQ_TString& name, const NQ_TTree& definition, bool userDefined);
/// Defines every name of a tree of records; a duplicate is passed over. False at the first record that fails. The
/// source is where the tree came from, for messages.
bool DefineTree(TEngine& engine, const NQ_TTree& definitions, const NQ_TString& source, bool userDefined);

/// Keeps the error code and the reason of an outcome, which stands in that source; whether it defined the name.
bool NoteOutcome(TEngine& engine, const TDefinitionOutcome& outcome, const NQ_TString& source = {});

/// The file that names without one of their own get.
void SetDefaultLocalizationFile(TEngine& engine, const NQ_TString& file);
void SetLocalizationFile(TEngine& engine, const NQ_TString& key, const NQ_TString& file);

}  // namespace templatenames
