// Days in the local time zone, and the formats of days and times.
#pragma once

#include "base/date.h"

namespace ellwynd {

/// Days and times of day in the current time zone. A change of the zone takes effect while the
/// program runs, as far as the C library notices it.
namespace calendar {

/// The first instant of the day that `date` falls on.
[[nodiscard]] Date startOfDay(Date date);
/// The first instant of the day after it.
[[nodiscard]] Date startOfNextDay(Date date);

/// The same time of day, `days` calendar days earlier.
[[nodiscard]] Date daysBefore(Date date, std::int64_t days);

/// Calendar days from the day of `from` to the day of `to`; negative when `to` is earlier.
[[nodiscard]] std::int64_t daysBetween(Date from, Date to);

/// "2026-09-03": a day's key in files and exports, the same in every locale.
[[nodiscard]] std::string dayKey(Date date);

/// "Sep 3", with the month's name in the user's language.
[[nodiscard]] std::string shortDay(Date date);

/// The time of day in the short style of the user's locale, such as "9:41 AM".
[[nodiscard]] std::string shortTime(Date date);

/// "yesterday", or else "Wed, Sep 23"; empty for the day of `now`.
[[nodiscard]] std::string relativeDay(Date date, Date now);

/// "Wed, Sep 23"; with the year if it differs from the year of `now`.
[[nodiscard]] std::string shortDay(Date date, Date now);

} // namespace calendar

} // namespace ellwynd
