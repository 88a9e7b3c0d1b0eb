#include "theme/courseicon.h"
#include "theme/theme.h"
#include "ui/support/appearance.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

TEST(Theme, EveryTextHasEnoughContrast) {
    constexpr double readable = 4.5;
    for (const bool dark : {false, true}) {
        for (const char *accent :
             {"system", "blue", "indigo", "purple", "teal", "pink", "graphite"}) {
            const Theme theme = makeTheme(dark, accent);
            const QColor backgrounds[] = {
                theme.window, theme.surface, theme.selection, theme.control, theme.sidebar};
            for (const QColor &background : backgrounds) {
                EXPECT_GE(contrast(theme.text, background), readable) << accent << dark;
                EXPECT_GE(contrast(theme.secondaryText, background), readable) << accent << dark;
            }
            EXPECT_GE(contrast(theme.accentText, theme.accent), readable) << accent << dark;
            for (const QColor &background : {theme.window, theme.surface, theme.selection})
                EXPECT_GE(contrast(theme.link, background), readable) << accent << dark;
            EXPECT_GE(contrast(theme.attention, theme.window), readable);
            EXPECT_GE(contrast(theme.attention, theme.selection), readable) << accent << dark;
            for (const LevelColors &level : {theme.atRisk, theme.concern, theme.watch, theme.ok}) {
                EXPECT_GE(contrast(level.text, level.fill), readable);
                EXPECT_GE(contrast(level.text, theme.window), readable);
            }
        }
    }
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.01);
}

TEST(CourseIcon, NamesTheSubject) {
    EXPECT_EQ(courseInitials("CS 101  4021 - Intro"), QStringLiteral("CS"));
    EXPECT_EQ(courseInitials("web210"), QStringLiteral("WEB"));
    EXPECT_EQ(courseInitials("  Économie"), QStringLiteral("ÉCO"));
    EXPECT_EQ(courseInitials("101"), QString());
    for (std::int64_t id = 1; id < 40; ++id)
        EXPECT_GE(contrast(courseColor(id), Qt::white), 4.5) << id;
    EXPECT_NE(courseColor(900101), courseColor(900102));
    EXPECT_TRUE(courseColor(-1).isValid());
}

TEST(CourseIcon, EveryIconAndColourIsDistinct) {
    const auto tile = [](std::string_view icon, std::string_view color) {
        const CourseIcon chosen{.icon = std::string(icon), .color = std::string(color)};
        return courseTile(7, "CS 101", 20, 1, chosen).toImage();
    };
    std::vector<QImage> seen{tile("", "")};
    for (const std::string_view word : courseSettings::iconWords) {
        const QImage image = tile(word, "");
        EXPECT_EQ(std::ranges::find(seen, image), seen.end()) << word;
        seen.push_back(image);
    }
    std::vector<QColor> colors;
    for (const std::string_view word : courseSettings::colorWords) {
        const QColor color = courseColor(7, word);
        EXPECT_GE(contrast(color, Qt::white), 4.5) << word;
        EXPECT_EQ(std::ranges::find(colors, color), colors.end()) << word;
        colors.push_back(color);
        EXPECT_EQ(tile("heart", word).pixelColor(10, 1), color) << word;
    }
    EXPECT_EQ(tile("zebra", "plaid"), seen.front());
}

TEST(CourseIcon, IgnoresUnknownWords) {
    const UserDefaults defaults(
        {}, {{"Course.1.Icon", std::int64_t{5}}, {"Course.1.IconColor", "Teal"}});
    EXPECT_EQ(courseIcon(defaults, 1), CourseIcon{});
}

TEST(Appearance, FollowsItsPreferences) {
    UserDefaults defaults({}, {});
    const QFont desktop = QApplication::font();
    {
        Settings settings(defaults);
        Appearance appearance(settings, true);
        EXPECT_TRUE(appearance.theme().dark);
        int changes = 0;
        QObject::connect(
            &appearance, &Appearance::appearanceDidChange, &appearance, [&] { ++changes; });
        defaults.set(preferences::appearance, std::string("light"));
        EXPECT_FALSE(appearance.theme().dark);
        const double normal = appearance.font().pointSizeF();
        appearance.zoom(1);
        EXPECT_NEAR(appearance.font().pointSizeF(), normal * 1.1, 1e-9);
        defaults.set(preferences::textScale, 9.0);
        EXPECT_NEAR(QApplication::font().pointSizeF(), normal * 2, 1e-9);
        appearance.zoom(1);
        EXPECT_EQ(defaults.value(preferences::textScale), 2.0);
        appearance.zoom(0);
        EXPECT_EQ(appearance.px(100), int(std::lround(100 * normal / 9.75)));
        EXPECT_EQ(changes, 4);
        settings.setTextScale(1.0);
        EXPECT_EQ(changes, 4) << "the same value again";
    }
    QApplication::setFont(desktop);
}

} // namespace
} // namespace ellwynd
