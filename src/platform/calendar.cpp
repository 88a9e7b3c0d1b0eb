#include "platform/calendar.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

namespace ellwynd::calendar {

namespace {

QDateTime local(Date date) {
    const auto ms = std::chrono::floor<std::chrono::milliseconds>(date.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(ms, Qt::LocalTime);
}

} // namespace

Date startOfDay(Date date) {
    const QDateTime start = local(date).date().startOfDay(Qt::LocalTime);
    return Date{std::chrono::milliseconds{start.toMSecsSinceEpoch()}};
}

std::int64_t daysBetween(Date from, Date to) {
    return local(from).date().daysTo(local(to).date());
}

std::string dayKey(Date date) {
    return QLocale::c().toString(local(date).date(), QStringLiteral("yyyy-MM-dd")).toStdString();
}

std::string shortTime(Date date) {
    return QLocale().toString(local(date).time(), QLocale::ShortFormat).toStdString();
}

} // namespace ellwynd::calendar
