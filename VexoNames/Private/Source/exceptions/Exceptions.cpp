// The object-model glue of the exported exception classes, compiled once, here.
#include "NQ_EIncompatibleType.h"
#include "NQ_ENoSuchKey.h"
#include "NQ_ENoSuchUnit.h"
#include "NQ_ENoSuchUnitCategory.h"
#include "NQ_ENotAnInt32.h"
#include "NQ_ETEException.h"
#include "NQ_EUnknownType.h"

template class NQ_TClassOf<NQ_ETEException, NQ_EException, "NQ_ETEException">;
template class NQ_TExceptionOf<NQ_ETEException, NQ_EException, "NQ_ETEException">;
template class NQ_TClassOf<NQ_ENoSuchKey, NQ_ETEException, "NQ_ENoSuchKey">;
template class NQ_TExceptionOf<NQ_ENoSuchKey, NQ_ETEException, "NQ_ENoSuchKey">;
template class NQ_TClassOf<NQ_EUnknownType, NQ_ETEException, "NQ_EUnknownType">;
template class NQ_TExceptionOf<NQ_EUnknownType, NQ_ETEException, "NQ_EUnknownType">;
template class NQ_TClassOf<NQ_EIncompatibleType, NQ_ETEException, "NQ_EIncompatibleType">;
template class NQ_TExceptionOf<NQ_EIncompatibleType, NQ_ETEException, "NQ_EIncompatibleType">;
template class NQ_TClassOf<NQ_ENotAnInt32, NQ_ETEException, "NQ_ENotAnInt32">;
template class NQ_TExceptionOf<NQ_ENotAnInt32, NQ_ETEException, "NQ_ENotAnInt32">;
template class NQ_TClassOf<NQ_ENoSuchUnit, NQ_ETEException, "NQ_ENoSuchUnit">;
template class NQ_TExceptionOf<NQ_ENoSuchUnit, NQ_ETEException, "NQ_ENoSuchUnit">;
template class NQ_TClassOf<NQ_ENoSuchUnitCategory, NQ_ETEException, "NQ_ENoSuchUnitCategory">;
template class NQ_TExceptionOf<NQ_ENoSuchUnitCategory, NQ_ETEException, "NQ_ENoSuchUnitCategory">;
