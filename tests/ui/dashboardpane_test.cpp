#include "support/mainwindow.h"
#include "ui/dashboard/dashboardpane.h"
#include "ui/dashboard/studentlist.h"
#include "ui/mainwindow/panesplitter.h"
#include "ui/sidebar/sidebar.h"
#include "uikit/labels.h"
#include "uikit/textlink.h"
#include "windowtexts.h"

#include <QAbstractItemModelTester>
#include <QSplitter>

namespace ellwynd {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

struct DashboardPaneTest : test::MainWindowTest {
    StudentList &list = *window.findChild<StudentList *>();

    void SetUp() override {
        MainWindowTest::SetUp();
        QApplication::processEvents();
        list.setFocus();
    }

    [[nodiscard]] std::string text(int row) const {
        return test::spokenText(list.model()->index(row, 0));
    }

    [[nodiscard]] QPushButton *chip(const QString &start) const {
        for (auto *candidate : window.findChild<DashboardPane *>()->findChildren<QPushButton *>()) {
            if (candidate->isVisible() && candidate->text().startsWith(start))
                return candidate;
        }
        return nullptr;
    }
};

TEST_F(DashboardPaneTest, ShowsWhatChangedWhileAnotherPaneWasShown) {
    ASSERT_THAT(text(0), AllOf(StartsWith("Jordan"), HasSubstr("awaiting")));
    openCourse(900101);
    const auto &rows = controller.roster().rows;
    controller.actions().markContacted({*std::ranges::find(rows, "Jordan", &RiskRow::name)});
    controller.select(DashboardSelection{});
    QApplication::processEvents();
    EXPECT_THAT(text(0), AllOf(StartsWith("Jordan"), Not(HasSubstr("awaiting"))));
}

TEST_F(DashboardPaneTest, NamesWhoNeedsTheTeacherFirst) {
    const QAbstractItemModelTester tester(
        list.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(list.model()->rowCount(), 39);
    EXPECT_THAT(text(0), StartsWith("Jordan, At Risk, CS 101 4021. 5 of 16 assignments missing"));
    EXPECT_THAT(text(0), HasSubstr("slipped from Concern to At Risk · awaiting"));
    // At 1280 × 800 there are the six cards and at least eight students.
    int visible = 0;
    for (int row = 0; row < 39; ++row) {
        const QRect place = list.visualRect(list.model()->index(row, 0));
        const QPoint lowest = list.viewport()->mapTo(&window, place.bottomLeft());
        visible += lowest.y() < window.height() ? 1 : 0;
    }
    EXPECT_GE(visible, 8);
    EXPECT_EQ(list.height(), 39 * list.visualRect(list.model()->index(0, 0)).height())
        << "the page scrolls, not the list";
}

TEST_F(DashboardPaneTest, ChipsShowAsManyStudentsAsTheyCount) {
    for (const char *name : {"Worse", "Not yet reached", "Awaiting follow-up", "At Risk"}) {
        QPushButton *button = chip(QString::fromUtf8(name));
        ASSERT_NE(button, nullptr) << name;
        button->click();
        EXPECT_EQ(list.model()->rowCount(), button->text().split(u' ').last().toInt()) << name;
        EXPECT_TRUE(button->isChecked()) << name;
    }
    chip(QStringLiteral("At Risk"))->click();
    EXPECT_EQ(list.model()->rowCount(), 39) << "a second click ends the filter";
}

TEST_F(DashboardPaneTest, AnEmptyChipSaysSoAndLeadsBack) {
    QPushButton *awaiting = chip(QStringLiteral("Awaiting follow-up"));
    awaiting->click();
    for (int left = list.model()->rowCount(); left > 0; --left) {
        list.setCurrentIndex(list.model()->index(0, 0));
        chip(QStringLiteral("Mark as Contacted"))->click();
        ASSERT_EQ(list.model()->rowCount(), left - 1);
    }
    EXPECT_TRUE(test::says(window, "No student awaits follow-up."));
    for (TextLink *link : window.findChildren<TextLink *>()) {
        if (link->accessibleName() == QStringLiteral("Show all flagged students"))
            Q_EMIT link->clicked();
    }
    EXPECT_EQ(list.model()->rowCount(), 39);
}

TEST_F(DashboardPaneTest, AStudentIsOpenedAndMarkedByKeyboardAndMenu) {
    EXPECT_EQ(list.currentIndex().row(), 0) << "the first once the list has the focus";
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_THAT(list.selectedRows().front().name, "Ethan");
    QPushButton *mark = chip(QStringLiteral("Mark as Contacted"));
    ASSERT_NE(mark, nullptr);
    EXPECT_EQ(mark->accessibleName().toStdString(), "Mark Ethan as contacted");
    QTest::keyClick(&list, Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), mark);
    mark->click();
    EXPECT_THAT(note(), HasSubstr("Ethan"));
    EXPECT_EQ(list.selectedRows().front().name, "Ethan") << "still current";
    EXPECT_THAT(
        text(list.currentIndex().row()), HasSubstr("slipped from Watch to Concern · wrote"));
    controller.undoStack().undo();
    EXPECT_THAT(text(1), testing::EndsWith("not yet reached"));

    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(controller.roster().courseID, 900102);
    EXPECT_EQ(table().selectedRows().front().name, "Ethan");

    // The menu acts on the current student too.
    controller.select(DashboardSelection{});
    list.setCurrentIndex(list.model()->index(2, 0));
    EXPECT_TRUE(action("Mark as Contacted")->isEnabled());
    EXPECT_FALSE(action("Remove Contact Mark")->isEnabled());
    action("Mark as Contacted")->trigger();
    EXPECT_TRUE(action("Remove Contact Mark")->isEnabled());
    EXPECT_TRUE(core.stores.contacts.lastContact(900101, list.selectedRows().front().id));
}

TEST_F(DashboardPaneTest, TheRightButtonOpensAMenuAndNoCourse) {
    auto *sidebar = window.findChild<Sidebar *>();
    const QModelIndex term = sidebar->list()->model()->index(1, 0);
    const QModelIndex course = sidebar->list()->model()->index(0, 0, term);
    std::optional<Selection> asked;
    QObject::disconnect(sidebar, &Sidebar::menuRequested, nullptr, nullptr);
    QObject::connect(sidebar, &Sidebar::menuRequested, sidebar, [&](const Selection &selection) {
        asked = selection;
    });
    const QPoint at = sidebar->list()->visualRect(course).center();
    QTest::mouseClick(sidebar->list()->viewport(), Qt::RightButton, {}, at);
    QContextMenuEvent menu(
        QContextMenuEvent::Mouse, at, sidebar->list()->viewport()->mapToGlobal(at));
    QApplication::sendEvent(sidebar->list()->viewport(), &menu);
    EXPECT_EQ(asked, Selection(CourseSelection{900101}));
    EXPECT_EQ(controller.roster().state, RosterView::State::nothingSelected);
}

TEST_F(DashboardPaneTest, ThePanesGrowWithTheTextAndAreRemembered) {
    openCourse(900101);
    auto *splitter = window.findChild<QSplitter *>();
    EXPECT_EQ(splitter->sizes().first(), appearance.px(272));
    EXPECT_EQ(splitter->sizes().last(), appearance.px(272));
    defaults.set(preferences::textScale, 1.2);
    EXPECT_EQ(splitter->sizes().first(), appearance.px(272));
    defaults.set(preferences::textScale, 2.0);
    EXPECT_LE(splitter->sizes().first() + splitter->sizes().last(), window.width() * 56 / 100);
    defaults.set(preferences::textScale, 1.0);
    splitter->setSizes({200, 780, 300});
    Q_EMIT splitter->splitterMoved(200, 1);
    window.resize(1400, 800);
    EXPECT_EQ(splitter->sizes().first(), 200);
    ASSERT_TRUE(
        test::until([&] { return defaults.value(preferences::mainWindowColumns) == "200 300"; }));

    for (const auto &[saved, expected] : std::vector<std::pair<const char *, int>>{
             {"150 300", 150}, {"nan 9", 272}, {"-5 1e99", 140}, {"x", 272}, {"", 272}}) {
        defaults.set(preferences::mainWindowColumns, std::string(saved));
        PaneSplitter fresh(appearance, defaults);
        for (int i = 0; i < 3; ++i)
            fresh.addWidget(new QWidget);
        fresh.widget(0)->setMinimumWidth(140);
        fresh.resize(1400, 600);
        fresh.restoreWidths();
        fresh.show();
        EXPECT_NEAR(fresh.sizes().first(), expected, 2) << saved;
    }
}

/// The labels and buttons of a window that are smaller than their texts.
std::vector<std::string> clipped(const QWidget &window) {
    std::vector<std::string> found;
    for (const auto *label : window.findChildren<QLabel *>()) {
        const int needed = label->wordWrap() ? label->heightForWidth(label->width())
                                             : label->minimumSizeHint().height();
        if (label->isVisible() && label->height() < needed)
            found.push_back(label->text().toStdString());
    }
    for (const auto *button : window.findChildren<QPushButton *>()) {
        const bool isCut = button->width() < button->sizeHint().width() ||
            button->height() < button->minimumSizeHint().height();
        if (button->isVisible() && isCut)
            found.push_back(button->text().toStdString());
    }
    return found;
}

TEST_F(DashboardPaneTest, NothingIsClippedInASmallWindowWithLargeText) {
    for (const auto &[width, height, scale] : std::vector<std::tuple<int, int, double>>{
             {900, 600, 1.0}, {1280, 800, 2.0}, {900, 600, 2.0}}) {
        window.resize(width, height);
        defaults.set(preferences::textScale, scale);
        for (const Selection &selection :
             std::initializer_list<Selection>{DashboardSelection{}, CourseSelection{900101}}) {
            controller.select(selection);
            for (int i = 0; i < 3; ++i)
                QApplication::processEvents();
            EXPECT_THAT(clipped(window), testing::IsEmpty()) << width << " at " << scale;
        }
    }
}

} // namespace
} // namespace ellwynd
