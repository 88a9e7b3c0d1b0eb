#include "base/date.h"

#include "base/text.h"

#include <fmt/format.h>

namespace ellwynd {

namespace {

using namespace std::chrono;

/// Consumes a text from its front. After a failed call the text as a whole is invalid.
class Scanner {
  public:
    explicit Scanner(std::string_view rest) : rest(rest) {}

    bool take(char wanted) {
        if (rest.empty() || rest.front() != wanted)
            return false;
        rest.remove_prefix(1);
        return true;
    }

    std::optional<int> twoDigits() {
        if (rest.size() < 2 || !isDigit(rest[0]) || !isDigit(rest[1]))
            return std::nullopt;
        const int value = (rest[0] - '0') * 10 + (rest[1] - '0');
        rest.remove_prefix(2);
        return value;
    }

    /// The digits after a decimal point as microseconds; further digits are dropped.
    std::optional<microseconds> fraction() {
        std::int64_t value = 0;
        std::size_t count = 0;
        while (!rest.empty() && isDigit(rest.front())) {
            if (count < 6)
                value = value * 10 + (rest.front() - '0');
            ++count;
            rest.remove_prefix(1);
        }
        if (count == 0)
            return std::nullopt;
        for (; count < 6; ++count)
            value *= 10;
        return microseconds{value};
    }

    /// "Z" or an offset from UTC, to the end of the text.
    std::optional<minutes> zone() {
        if (take('Z'))
            return atEnd() ? std::optional{minutes{0}} : std::nullopt;
        const bool west = take('-');
        if (!west && !take('+'))
            return std::nullopt;
        const auto hour = twoDigits();
        if (!hour || *hour > 23)
            return std::nullopt;
        int minute = 0;
        if (!atEnd()) {
            take(':');
            const auto read = twoDigits();
            if (!read || *read > 59)
                return std::nullopt;
            minute = *read;
        }
        if (!atEnd())
            return std::nullopt;
        const minutes offset = hours{*hour} + minutes{minute};
        return west ? -offset : offset;
    }

    [[nodiscard]] bool atEnd() const { return rest.empty(); }

  private:
    std::string_view rest;
};

} // namespace

Date systemNow() {
    return time_point_cast<microseconds>(system_clock::now());
}

std::optional<Date> parseInstant(std::string_view text) {
    constexpr std::size_t zoneBegin = std::string_view("YYYY-MM-DDTHH:MM:SS").size();
    if (text.size() < zoneBegin || text[4] != '-' || text[7] != '-' || text[10] != 'T' ||
        text[13] != ':' || text[16] != ':')
        return std::nullopt;
    bool onlyDigits = true;
    const auto twoDigits = [&](std::size_t at) {
        onlyDigits = onlyDigits && isDigit(text[at]) && isDigit(text[at + 1]);
        return (text[at] - '0') * 10 + (text[at + 1] - '0');
    };
    const year_month_day date{
        year{twoDigits(0) * 100 + twoDigits(2)}, month(unsigned(twoDigits(5))),
        day(unsigned(twoDigits(8)))};
    const hours hour{twoDigits(11)};
    const minutes minute{twoDigits(14)};
    const seconds second{twoDigits(17)};
    if (!onlyDigits || !date.ok() || hour >= days{1} || minute >= hours{1} || second >= minutes{1})
        return std::nullopt;
    Scanner scanner(text.substr(zoneBegin));
    const auto fraction = scanner.take('.') ? scanner.fraction() : microseconds{0};
    if (!fraction)
        return std::nullopt;
    const auto offset = scanner.zone();
    if (!offset)
        return std::nullopt;
    const Date result = Date{sys_days{date}} + hour + minute + second + *fraction - *offset;
    // An offset can move the year outside 0000 to 9999.
    constexpr Date first = sys_days{year{0} / 1 / 1};
    constexpr Date end = sys_days{year{10000} / 1 / 1};
    return result >= first && result < end ? std::optional{result} : std::nullopt;
}

std::string formatInstant(Date date) {
    const auto midnight = floor<days>(date);
    const year_month_day ymd{midnight};
    const hh_mm_ss time{floor<seconds>(date - midnight)};
    return fmt::format(
        "{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", int(ymd.year()), unsigned(ymd.month()),
        unsigned(ymd.day()), time.hours().count(), time.minutes().count(), time.seconds().count());
}

std::int64_t wholeDaysBetween(Date from, Date to) {
    return duration_cast<days>(to - from).count();
}

} // namespace ellwynd
