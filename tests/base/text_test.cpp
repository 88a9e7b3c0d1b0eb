#include "base/text.h"

#include <gtest/gtest.h>

#include <clocale>

namespace ellwynd {
namespace {

TEST(Text, TrimPluralAndJoin) {
    EXPECT_EQ(trim(" \t a b\r\n"), "a b");
    EXPECT_EQ(trim(" \n"), "");
    EXPECT_EQ(trim("<<a>>", "<>"), "a");
    EXPECT_EQ(plural(1, "course"), "1 course");
    EXPECT_EQ(plural(0, "course"), "0 courses");
    EXPECT_EQ(plural(2, "inactivity day"), "2 inactivity days");
    EXPECT_EQ(join({}, ", "), "");
    EXPECT_EQ(join({"", "b", ""}, ", "), ", b, ");
}

TEST(Text, OneLineReplacesControlCharacters) {
    struct Row {
        std::string text;
        std::string line;
    };
    for (const Row &row : std::vector<Row>{
             {"a\nb\tc\r\nd", "a b c  d"},
             {std::string("\x1b[31m\x7f\0x", 8), " [31m  x"},
             {"csi \xc2\x9b"
              "31m, nbsp\xc2\xa0"
              "é",
              "csi  31m, nbsp\xc2\xa0é"},
             {"cut \xc2"
              "A\xc2",
              "cut \xc2"
              "A\xc2"}})
        EXPECT_EQ(oneLine(row.text), row.line);
}

TEST(Text, DisplayWidthIsInTerminalColumnsInAnyLocale) {
    struct Row {
        const char *what;
        const char *text;
        std::size_t columns;
    };
    for (const char *locale : {"C", "C.UTF-8"}) {
        ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr);
        for (const Row &row :
             {Row{"ASCII", "Anna", 4},
              Row{"a precomposed letter", "é", 1},
              Row{"a combining mark", "e\u0301", 1},
              Row{"Thai vowels and tones", "นี้ที่", 2},
              Row{"Thai sara am", "กำ", 2},
              Row{"Hindi", "हिन्दी", 5},
              Row{"Tamil", "தமிழ்", 4},
              Row{"pointed Hebrew", "שָׁלוֹם", 4},
              Row{"pointed Arabic", "مُحَمَّد", 4},
              Row{"Chinese", "各位", 4},
              Row{"Korean", "한국", 4},
              Row{"Korean in jamo", "\u1112\u1161\u11ab", 2},
              Row{"half-width katakana", "ｱ", 1},
              Row{"full-width letters", "ＡＢ", 4},
              Row{"emoji outside the newer blocks", "✅⭐", 4},
              Row{"emoji", "👩", 2},
              Row{"a variation selector", "❤\ufe0f", 1},
              Row{"a zero-width joiner", "\u200d", 0},
              Row{"bidirectional controls", "\u200e\u202a\u2069", 0},
              Row{"not UTF-8", "a\xff\xc3", 3}})
            EXPECT_EQ(displayWidth(row.text), row.columns) << row.what << " in " << locale;
    }
    std::setlocale(LC_ALL, "C");
}

} // namespace
} // namespace ellwynd
