// JSON as values of the framework.
#pragma once

#include "JsonNode.h"
#include "NQ_TAny.h"
#include "NQ_TTime.h"
#include "NQ_TURL.h"

/// Any value: a string, a boolean, a number (NQ_TInt32 where it is one of 32 bits, else NQ_TDouble), an array
/// (NQ_TArray), an object (NQ_TTree), {"$url": ...}, {"$time": ...}; null is the null value.
NQ_TAny ReadValue(const TJsonNode& node);

/// {"$url": "file://host/path"}, or just the text.
NQ_TURL ReadUrl(const TJsonNode& node);
/// {"$time": "2026-05-17T13:05:00+02:00"}, or milliseconds, in such an object or alone.
NQ_TTime ReadTime(const TJsonNode& node);
