#include "engine/Engine.h"

#include "NQ_ENoSuchKey.h"
#include "engine/BuiltIns.h"

namespace templatenames {

THooks::THooks() : elem(&TNameElemHandler), extract(&TNameExtractHandler), regex(&TNameRegexHandler) {}

void THooks::Note() {
  const bool hooked = warnObject != nullptr || warnFunction != nullptr || userLookup != nullptr;
  areOwn = !hooked && elem == &TNameElemHandler && extract == &TNameExtractHandler && regex == &TNameRegexHandler;
}

TEntry& TEngine::EntryOf(const NQ_TString& key) {
  TEntry* const entry = store.Find(key);
  if (entry == nullptr) nq::Throw(NQ_ENoSuchKey(key));
  return *entry;
}

}  // namespace templatenames
