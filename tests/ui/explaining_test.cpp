// The sheets that explain a course.
#include "support/mainwindow.h"
#include "ui/settings/settingswindow.h"
#include "ui/sheets/lookbacksheet.h"
#include "ui/sheets/thresholdssheet.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QTableView>

namespace ellwynd {
namespace {

using test::MainWindowTest;
using testing::ElementsAre;

TEST_F(MainWindowTest, TheLookBackLeadsToAStudent) {
    openCourse(900101);
    for (QAction *command : window.findChildren<QAction *>()) {
        if (command->shortcut() == QKeySequence(Qt::CTRL | Qt::Key_L))
            command->trigger();
    }
    auto *sheet = window.findChild<LookBackSheet *>();
    ASSERT_NE(sheet, nullptr);
    auto *grid = sheet->findChild<QTableView *>();
    EXPECT_EQ(grid->model()->rowCount(), 26);
    const QModelIndex jordan = grid->model()->index(1, grid->model()->columnCount() - 1);
    EXPECT_THAT(
        jordan.data(Qt::AccessibleTextRole).toString().toStdString(),
        testing::MatchesRegex("Jordan, .*: At Risk"));
    Q_EMIT grid->activated(jordan);
    EXPECT_THAT(selected(), ElementsAre(5001));
    EXPECT_FALSE(sheet->isVisible());
}

TEST_F(MainWindowTest, ThresholdsShowWhomTheyWouldFlag) {
    openCourse(900101);
    const auto says = [](const QWidget &where, const QString &text) {
        return std::ranges::any_of(where.findChildren<QLabel *>(), [&](const QLabel *label) {
            return label->isVisible() && label->text() == text;
        });
    };
    const QString line = QStringLiteral("At 60 %: 7 flagged instead of 10.");
    auto *sheet = window.openThresholds();
    sheet->findChild<QCheckBox *>()->click();
    EXPECT_FALSE(says(*sheet, line));
    auto *passing = sheet->findChild<QDoubleSpinBox *>();
    passing->setValue(60);
    EXPECT_TRUE(test::until([&] { return says(*sheet, line); }));
    EXPECT_TRUE(says(
        *sheet, QStringLiteral("Now Watch: Nadia, Theo. No longer flagged: Marcus, Iris, Liam.")));
    sheet->findChild<QCheckBox *>()->click();
    EXPECT_TRUE(test::until([&] { return !says(*sheet, line); }));
    sheet->accept();
    // In Settings, for all courses in memory.
    SettingsWindow &settings = window.settings();
    settings.open(SettingsWindow::riskThresholds);
    defaults.set(preferences::defaultPassingScore, 60.0);
    const auto effect = [&settings] {
        for (const QLabel *label : settings.findChildren<QLabel *>()) {
            if (label->isVisible() && label->text().startsWith(QStringLiteral("At 60 %: ")))
                return true;
        }
        return false;
    };
    EXPECT_TRUE(test::until(effect));
    defaults.set(preferences::defaultPassingScore, 70.0);
    EXPECT_TRUE(test::until([&] { return !effect(); }));
}

} // namespace
} // namespace ellwynd
