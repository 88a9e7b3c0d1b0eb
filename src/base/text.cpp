#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cwchar>
#include <locale.h>

namespace ellwynd {

namespace {

/// Sets a UTF-8 character type locale for this thread, whatever locale the program runs in.
class Utf8Locale {
  public:
    Utf8Locale() : previous(::uselocale(utf8())) {}
    ~Utf8Locale() { ::uselocale(previous); }
    Utf8Locale(const Utf8Locale &) = delete;
    Utf8Locale &operator=(const Utf8Locale &) = delete;

  private:
    static locale_t utf8() {
        static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t());
        return locale;
    }

    locale_t previous;
};

} // namespace

std::string_view trim(std::string_view text, std::string_view characters) {
    const std::size_t first = text.find_first_not_of(characters);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

std::string oneLine(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        // U+0080 to U+009F are control characters as well, two bytes each in UTF-8.
        const auto next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0U;
        const bool c1 = byte == 0xc2 && next >= 0x80 && next < 0xa0;
        if (c1)
            ++i;
        line += c1 || byte < 0x20 || byte == 0x7f ? ' ' : text[i];
    }
    return line;
}

std::string shortened(std::string_view text, std::size_t maxLength) {
    const std::string line = oneLine(text);
    std::size_t length = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        // Not a continuation byte of UTF-8.
        const bool begins = (static_cast<unsigned char>(line[i]) & 0xC0U) != 0x80U;
        if (begins && ++length > maxLength)
            return std::string(trim(std::string_view(line).substr(0, i))) + "…";
    }
    return std::string(trim(line));
}

std::string plural(std::int64_t count, std::string_view noun) {
    return fmt::format("{} {}{}", count, noun, pluralForm(count, "", "s"));
}

std::string join(const std::vector<std::string> &texts, std::string_view separator) {
    std::string joined;
    for (const std::string &text : texts) {
        if (&text != &texts.front())
            joined += separator;
        joined += text;
    }
    return joined;
}

std::size_t displayWidth(std::string_view text) {
    const Utf8Locale locale;
    std::size_t width = 0;
    std::mbstate_t state{};
    while (!text.empty()) {
        wchar_t character = 0;
        std::size_t length = std::mbrtowc(&character, text.data(), text.size(), &state);
        int columns = 1;
        if (length > text.size()) {
            // Not UTF-8: terminals draw a replacement character for each such byte.
            length = 1;
            state = {};
        } else {
            length = std::max<std::size_t>(length, 1);
            // Negative for control characters and for those that the C library does not know.
            columns = ::wcwidth(character);
        }
        width += columns < 0 ? 1 : std::size_t(columns);
        text.remove_prefix(length);
    }
    return width;
}

} // namespace ellwynd
