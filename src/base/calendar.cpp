#include "base/calendar.h"

#include <QDateTime>
#include <QLocale>

#include <fmt/format.h>

namespace ellwynd::calendar {

namespace {

// Without a zone argument Qt uses local time. The argument differs before and after Qt 6.5.

QDateTime local(Date date) {
    const auto ms = std::chrono::floor<std::chrono::milliseconds>(date.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(ms);
}

Date instant(const QDateTime &moment) {
    return Date{std::chrono::milliseconds{moment.toMSecsSinceEpoch()}};
}

} // namespace

Date startOfDay(Date date) {
    return instant(local(date).date().startOfDay());
}

Date startOfNextDay(Date date) {
    return instant(local(date).date().addDays(1).startOfDay());
}

Date daysBefore(Date date, std::int64_t days) {
    return instant(local(date).addDays(-days));
}

std::int64_t daysBetween(Date from, Date to) {
    return local(from).date().daysTo(local(to).date());
}

std::string dayKey(Date date) {
    const QDate day = local(date).date();
    return fmt::format("{:04}-{:02}-{:02}", day.year(), day.month(), day.day());
}

std::string shortDay(Date date) {
    return QLocale().toString(local(date).date(), QStringLiteral("MMM d")).toStdString();
}

std::string shortTime(Date date) {
    return QLocale().toString(local(date).time(), QLocale::ShortFormat).toStdString();
}

std::string relativeDay(Date date, Date now) {
    const std::int64_t days = daysBetween(date, now);
    if (days == 0)
        return {};
    return days == 1 ? "yesterday" : shortDay(date, now);
}

std::string shortDay(Date date, Date now) {
    const QDate day = local(date).date();
    const bool thisYear = day.year() == local(now).date().year();
    return QLocale::c()
        .toString(day, thisYear ? QStringLiteral("ddd, MMM d") : QStringLiteral("ddd, MMM d, yyyy"))
        .toStdString();
}

} // namespace ellwynd::calendar
