// The exported exception classes: their glue and their tables of virtual functions are made here, once, and programs
// use them from the library.
#include "NQ_EIncompatibleType.h"
#include "NQ_ENoSuchKey.h"
#include "NQ_ENoSuchUnit.h"
#include "NQ_ENoSuchUnitCategory.h"
#include "NQ_ENotAnInt32.h"
#include "NQ_ETEException.h"
#include "NQ_EUnknownType.h"

template class NQ_TClassOf<NQ_ETEException, NQ_EException, "NQ_ETEException">;
template class NQ_TExceptionOf<NQ_ETEException, NQ_EException, "NQ_ETEException">;
void NQ_ETEException::NQ_Throw() const { throw NQ_ETEException(*this); }

template class NQ_TClassOf<NQ_EIncompatibleType, NQ_ETEException, "NQ_EIncompatibleType">;
template class NQ_TExceptionOf<NQ_EIncompatibleType, NQ_ETEException, "NQ_EIncompatibleType">;
void NQ_EIncompatibleType::NQ_Throw() const { throw NQ_EIncompatibleType(*this); }

template class NQ_TClassOf<NQ_ENoSuchKey, NQ_ETEException, "NQ_ENoSuchKey">;
template class NQ_TExceptionOf<NQ_ENoSuchKey, NQ_ETEException, "NQ_ENoSuchKey">;
void NQ_ENoSuchKey::NQ_Throw() const { throw NQ_ENoSuchKey(*this); }

template class NQ_TClassOf<NQ_ENoSuchUnit, NQ_ETEException, "NQ_ENoSuchUnit">;
template class NQ_TExceptionOf<NQ_ENoSuchUnit, NQ_ETEException, "NQ_ENoSuchUnit">;
void NQ_ENoSuchUnit::NQ_Throw() const { throw NQ_ENoSuchUnit(*this); }

template class NQ_TClassOf<NQ_ENoSuchUnitCategory, NQ_ETEException, "NQ_ENoSuchUnitCategory">;
template class NQ_TExceptionOf<NQ_ENoSuchUnitCategory, NQ_ETEException, "NQ_ENoSuchUnitCategory">;
void NQ_ENoSuchUnitCategory::NQ_Throw() const { throw NQ_ENoSuchUnitCategory(*this); }

template class NQ_TClassOf<NQ_ENotAnInt32, NQ_ETEException, "NQ_ENotAnInt32">;
template class NQ_TExceptionOf<NQ_ENotAnInt32, NQ_ETEException, "NQ_ENotAnInt32">;
void NQ_ENotAnInt32::NQ_Throw() const { throw NQ_ENotAnInt32(*this); }

template class NQ_TClassOf<NQ_EUnknownType, NQ_ETEException, "NQ_EUnknownType">;
template class NQ_TExceptionOf<NQ_EUnknownType, NQ_ETEException, "NQ_EUnknownType">;
void NQ_EUnknownType::NQ_Throw() const { throw NQ_EUnknownType(*this); }
