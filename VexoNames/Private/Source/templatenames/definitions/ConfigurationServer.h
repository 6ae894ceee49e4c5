// Reading the configuration server. Any thread that the proxy may be used on.
#pragma once

#include "CFS/Server/cfs_tproxy.h"

class NQ_TArray;
class NQ_TTree;

namespace templatenames {

/// The value at the path: from what the proxy keeps, else asked for, compressed on its way when `zipped` is set. Throws
/// NQ_EException, which says which path cannot be read and why.
NQ_TAny ReadPath(CFS_TProxy& cfs, const NQ_TString& path, bool zipped);

/// The values at several paths, asked for at once: a dictionary by path, unless the server replies something else.
/// Throws as `ReadPath`; `place` is what the message names.
NQ_TAny ReadPaths(CFS_TProxy& cfs, const NQ_TArray& paths, const NQ_TString& place);

/// What was read at the path: the resources of a list, as the text "A,B"; a tree of records. Throw
/// NQ_EIllegalCastFromAny, with what stands there instead.
const NQ_TString& ListIn(const NQ_TAny& value, const NQ_TString& path);
const NQ_TTree& RecordsIn(const NQ_TAny& value, const NQ_TString& path);

/// Why something failed, in a sentence. To be called where an exception is being handled.
NQ_TString ReasonInHand();

}  // namespace templatenames
