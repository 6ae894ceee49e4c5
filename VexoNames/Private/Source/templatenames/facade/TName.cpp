// TName: the object itself, its log and its limits.
#include "TName.h"

#include <algorithm>

#include "engine/NameStore.h"
#include "text/Log.h"

using templatenames::TNameStore;

TName::TName()
    : names_(std::make_unique<TNameStore>()),
      elemHandler_(&TNameElemHandler),
      extractHandler_(&TNameExtractHandler),
      regexHandler_(&TNameRegexHandler),
      defaultLocalizationFile_("templates") {}

TName::~TName() = default;

void TName::SetError(TName_Error error) {
  const std::lock_guard guard(lock_);
  error_ = error;
  if (error == TName_ErrorNone) errorReason_.Clear();
}

TName::TName_Error TName::GetError() const {
  const std::lock_guard guard(lock_);
  return error_;
}

int TName::SetDebugLevel(int level) { return debugLevel_.exchange(level, std::memory_order_relaxed); }

int TName::GetDebugLevel() const { return debugLevel_.load(std::memory_order_relaxed); }

void TName::SetLogSink(TLogSink sink) { templatenames::SetLogSink(std::move(sink)); }

void TName::SetLimits(const TNameLimits& limits) {
  const std::lock_guard guard(lock_);
  limits_ = limits;
  limits_.characters = std::max<std::int64_t>(limits.characters, -1);
}

TNameLimits TName::GetLimits() const {
  const std::lock_guard guard(lock_);
  return limits_;
}

TNameLookupHandler::~TNameLookupHandler() = default;
TNameWarnLookupHandler::~TNameWarnLookupHandler() = default;
TNameTranslator::~TNameTranslator() = default;
