#pragma once
#include "NQ_TDict.h"
#include "text/Finding.h"
namespace templatenames {
inline void CheckOptions(const NQ_TDict&, TFindings&) {}
}
