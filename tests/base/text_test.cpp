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
    for (const auto &[text, line] : std::vector<std::pair<std::string, std::string>>{
             {"a\nb\tc\r\nd", "a b c  d"},
             {std::string("\x1b[31m\x7f\0x", 8), " [31m  x"},
             {"csi \u009b31m, nbsp\u00a0é", "csi  31m, nbsp\u00a0é"},
             {"cut \xc2 A\xc2", "cut \xc2 A\xc2"}})
        EXPECT_EQ(oneLine(text), line);
}

TEST(Text, DisplayWidthIsInTerminalColumnsInAnyLocale) {
    for (const char *locale : {"C", "C.UTF-8"}) {
        ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr);
        for (const auto &[what, text, columns] :
             {std::tuple{"ASCII", "Anna", 4U},
              {"a precomposed letter", "é", 1},
              {"a combining mark", "e\u0301", 1},
              {"Thai vowels and tones", "นี้ที่", 2},
              {"Thai sara am", "กำ", 2},
              {"Hindi", "हिन्दी", 5},
              {"Tamil", "தமிழ்", 4},
              {"pointed Hebrew", "שָׁלוֹם", 4},
              {"pointed Arabic", "مُحَمَّد", 4},
              {"Chinese", "各位", 4},
              {"Korean", "한국", 4},
              {"Korean in jamo", "\u1112\u1161\u11ab", 2},
              {"half-width katakana", "ｱ", 1},
              {"full-width letters", "ＡＢ", 4},
              {"emoji outside the newer blocks", "✅⭐", 4},
              {"emoji", "👩", 2},
              {"a variation selector", "❤\ufe0f", 1},
              {"a zero-width joiner", "\u200d", 0},
              {"bidirectional controls", "\u200e\u202a\u2069", 0},
              {"not UTF-8", "a\xff\xc3", 3}})
            EXPECT_EQ(displayWidth(text), columns) << what << " in " << locale;
    }
    std::setlocale(LC_ALL, "C");
}

} // namespace
} // namespace ellwynd
