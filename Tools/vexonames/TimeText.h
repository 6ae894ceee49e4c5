// Times as people and programs write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "NQ_TTime.h"

/// Reads "2026-05-17T13:05:09.250+02:00" (seconds and fraction may be missing; the zone may not: "Z" or an offset), or
/// milliseconds since 1970-01-01T00:00:00Z. Nothing when the text is neither, or no such time exists.
std::optional<NQ_TTime> ParseTime(std::string_view text);

/// Whether the milliseconds lie in the years 0 to 9999, which all the forms here can show.
bool IsSensibleTime(double milliseconds);

/// The time as "2026-05-17T11:05:09.250Z"; the fraction only when there is one.
std::string TimeText(const NQ_TTime& time);

/// Makes the process's local time that of the zone, such as "Europe/Paris". False when the system knows no such zone.
bool UseZone(const std::string& name);
