// Handlers as attributes: a function or handler object stored in an entry as a pointer, and back.
#pragma once

#include "NQ_TBoxed.h"
#include "TName.h"

namespace templatenames {

template <class Function>
requires std::is_pointer_v<Function> NQ_TAny AsAny(Function function) {
  if constexpr (std::is_function_v<std::remove_pointer_t<Function>>) {
    return NQ_TAny(NQ_TPointer(reinterpret_cast<void*>(function)));
  } else {
    return NQ_TAny(NQ_TPointer(const_cast<void*>(static_cast<const void*>(function))));
  }
}

/// The pointer in an attribute; null when the attribute is absent or holds something else.
inline void* PointerIn(const NQ_TAny* attribute) {
  const auto* const pointer = attribute == nullptr ? nullptr : attribute->As<NQ_TPointer>();
  return pointer == nullptr ? nullptr : pointer->Value();
}

inline TName::TLookupFunction LookupFunctionIn(const NQ_TAny* attribute) {
  return reinterpret_cast<TName::TLookupFunction>(PointerIn(attribute));
}

inline TName::TTypeFunction TypeFunctionIn(const NQ_TAny* attribute) {
  return reinterpret_cast<TName::TTypeFunction>(PointerIn(attribute));
}

inline const TNameLookupHandler* LookupObjectIn(const NQ_TAny* attribute) {
  return static_cast<const TNameLookupHandler*>(PointerIn(attribute));
}

}  // namespace templatenames
