#include "base/date.h"

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

    /// Exactly `count` decimal digits.
    std::optional<int> digits(std::size_t count) {
        if (rest.size() < count)
            return std::nullopt;
        int value = 0;
        for (const char c : rest.substr(0, count)) {
            if (c < '0' || c > '9')
                return std::nullopt;
            value = value * 10 + (c - '0');
        }
        rest.remove_prefix(count);
        return value;
    }

    /// The digits after a decimal point as microseconds; further digits are dropped.
    std::optional<microseconds> fraction() {
        std::int64_t value = 0;
        std::size_t count = 0;
        while (!rest.empty() && rest.front() >= '0' && rest.front() <= '9') {
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
        const auto hour = digits(2);
        if (!hour || *hour > 23)
            return std::nullopt;
        int minute = 0;
        if (!atEnd()) {
            take(':');
            const auto read = digits(2);
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
    Scanner scanner(text);
    const auto y = scanner.digits(4);
    if (!y || !scanner.take('-'))
        return std::nullopt;
    const auto m = scanner.digits(2);
    if (!m || !scanner.take('-'))
        return std::nullopt;
    const auto d = scanner.digits(2);
    if (!d || !scanner.take('T'))
        return std::nullopt;
    const auto hh = scanner.digits(2);
    if (!hh || *hh > 23 || !scanner.take(':'))
        return std::nullopt;
    const auto mm = scanner.digits(2);
    if (!mm || *mm > 59 || !scanner.take(':'))
        return std::nullopt;
    const auto ss = scanner.digits(2);
    if (!ss || *ss > 59)
        return std::nullopt;
    microseconds fraction{0};
    if (scanner.take('.')) {
        const auto read = scanner.fraction();
        if (!read)
            return std::nullopt;
        fraction = *read;
    }
    const auto offset = scanner.zone();
    const year_month_day date{year{*y}, month(unsigned(*m)), day(unsigned(*d))};
    if (!offset || !date.ok())
        return std::nullopt;
    const Date result =
        Date{sys_days{date}} + hours{*hh} + minutes{*mm} + seconds{*ss} + fraction - *offset;
    // An offset can move the year outside 0000 to 9999.
    const Date first = sys_days{year{0} / 1 / 1};
    const Date end = sys_days{year{10000} / 1 / 1};
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
