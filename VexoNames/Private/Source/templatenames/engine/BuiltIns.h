// The library's own handlers, as entries hold them.
//
// In an entry they stand for a kind of source, of writing or of stage: the evaluator knows them by their address and
// does the step itself. Called as functions, by a handler of the caller's that wraps one of them, they do the same step
// for one value. They throw nothing: an exception inside one makes it return false, and so does a value of another
// class than the name's type implies.
#pragma once

#include "TName.h"

namespace templatenames {

bool LookupHandler(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value);
bool TimeLookupHandler(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value);
bool SQLQueryHandler(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value);
bool ServerQueryHandler(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value);
bool ServerQueryHandlerNoCache(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value);

bool StringTypeHandler(const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format, NQ_TDict* entry,
                       TName* names, NQ_TString& result);
bool IntegerTypeHandler(const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format, NQ_TDict* entry,
                        TName* names, NQ_TString& result);
bool TimeTypeHandler(const NQ_TString& key, const NQ_TAny& value, const NQ_TString& format, NQ_TDict* entry,
                     TName* names, NQ_TString& result);

bool TNameElemHandler(const NQ_TString& key, const NQ_TString& input, const NQ_TString& attribute, NQ_TDict* entry,
                      TName* names, NQ_TString& result);
bool TNameExtractHandler(const NQ_TString& key, const NQ_TString& input, const NQ_TString& attribute, NQ_TDict* entry,
                         TName* names, NQ_TString& result);
bool TNameRegexHandler(const NQ_TString& key, const NQ_TString& input, const NQ_TString& attribute, NQ_TDict* entry,
                       TName* names, NQ_TString& result);

/// The handler of a lookup kind; null for what is none.
TName::TLookupFunction BuiltInLookup(TName::TName_Lookup lookup);

}  // namespace templatenames
