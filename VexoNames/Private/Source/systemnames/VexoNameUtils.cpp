// VexoNameUtils: the object.
#include "VexoNameUtils.h"

#include <chrono>

#include "Handlers.h"

namespace {

std::int64_t SteadyClock() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace

VexoNameUtils::VexoNameUtils() : handlers_(std::make_unique<const THandlers>(*this)), clock_(SteadyClock) {}

VexoNameUtils::~VexoNameUtils() = default;

void VexoNameUtils::SetClock(TClock clock) { clock_ = clock == nullptr ? SteadyClock : clock; }
