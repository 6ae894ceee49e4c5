// TName: the object itself, its log and its limits.
#include "TName.h"

#include <algorithm>

#include "engine/Engine.h"
#include "text/Log.h"

using templatenames::TEngine;

TName::TName() : engine_(std::make_unique<TEngine>(*this)) {}

TName::~TName() = default;

void TName::SetError(TName_Error error) {
  const std::lock_guard guard(engine_->lock);
  engine_->SetError(error);
  if (error == TName_ErrorNone) engine_->errorReason.Clear();
}

TName::TName_Error TName::GetError() const {
  const std::lock_guard guard(engine_->lock);
  return engine_->error;
}

int TName::SetDebugLevel(int level) { return engine_->debugLevel.exchange(level, std::memory_order_relaxed); }

int TName::GetDebugLevel() const { return engine_->debugLevel.load(std::memory_order_relaxed); }

void TName::SetLogSink(TLogSink sink) { templatenames::SetLogSink(std::move(sink)); }

void TName::SetLimits(const TNameLimits& limits) {
  const std::lock_guard guard(engine_->lock);
  engine_->limits = limits;
  engine_->limits.characters = std::max<std::int64_t>(limits.characters, -1);
}

TNameLimits TName::GetLimits() const {
  const std::lock_guard guard(engine_->lock);
  return engine_->limits;
}

TNameLookupHandler::~TNameLookupHandler() = default;
TNameWarnLookupHandler::~TNameWarnLookupHandler() = default;
TNameTranslator::~TNameTranslator() = default;
