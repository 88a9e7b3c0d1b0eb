#include "support/mainwindow.h"
#include "ui/dashboard/coursecard.h"
#include "ui/details/studentdetails.h"
#include "ui/help/helpwindow.h"
#include "ui/help/topiclist.h"
#include "ui/sheets/missingworksheet.h"
#include "ui/sidebar/sidebar.h"
#include "uikit/textlink.h"
#include "windowtexts.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QTextBrowser>

#include <set>

namespace ellwynd {
namespace {

using test::CourseWindowTest;
using test::MainWindowTest;
using testing::ElementsAre;
using testing::HasSubstr;

TEST_F(MainWindowTest, OneAlertAtATimeShowsTheLatestError) {
    Q_EMIT controller.errorDidOccur(CanvasError(CanvasError::Kind::unauthorized));
    Q_EMIT controller.errorDidOccur(CanvasError(CanvasError::Kind::timedOut));
    const auto alerts = window.findChildren<QMessageBox *>();
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_TRUE(
        alerts[0]->informativeText().startsWith(QStringLiteral("Canvas took too long to answer.")));
    EXPECT_EQ(button(*alerts[0], "Open Connection Settings…"), nullptr);
    alerts[0]->reject();
    Q_EMIT controller.errorDidOccur(CanvasError(CanvasError::Kind::unauthorized));
    QMessageBox *alert = window.findChild<QMessageBox *>();
    ASSERT_NE(alert, nullptr);
    EXPECT_NE(button(*alert, "Open Connection Settings…"), nullptr);
}

TEST_F(MainWindowTest, ACourseSelectsItsFirstStudent) {
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Ellwynd — Sample Data"));
    EXPECT_FALSE(test::says(window, HasSubstr("refreshing"))) << "loading has ended";
    EXPECT_EQ(window.openMissingWork(), nullptr) << "the dashboard is shown";
    openCourse(900101);
    EXPECT_THAT(selected(), ElementsAre(5002));
    action("Open Grades in Canvas")->trigger();
    EXPECT_THAT(note(), HasSubstr("invented"));
}

TEST_F(MainWindowTest, CardsAreReachedAndOpenedByKeyboard) {
    QApplication::processEvents();
    const auto cards = window.findChildren<CourseCard *>();
    ASSERT_EQ(cards.size(), 6);
    EXPECT_THAT(
        cards[0]->accessibleName().toStdString(),
        testing::StartsWith("CS 101  4021 - Intro to Programming. 10 students flagged: 3 at risk"));
    cards[0]->setFocus();
    QTest::keyClick(cards[0], Qt::Key_Right);
    auto *second = qobject_cast<CourseCard *>(QApplication::focusWidget());
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->courseID(), 900102);
    QTest::keyClick(second, Qt::Key_Return);
    EXPECT_EQ(controller.roster().courseID, 900102);
    EXPECT_FALSE(second->isVisible());
    action("Show Dashboard")->trigger();
    EXPECT_TRUE(second->isVisible());
}

TEST_F(MainWindowTest, EachCommandIsEnabledExactlyWhenItCanWork) {
    // The letters: signed Out, Dashboard, Loading, Term, Course, Student selected.
    const std::map<std::string, std::vector<std::string>> expected{
        {"ODLTCS",
         {"Refresh All Courses", "Leave Sample Data…", "Settings", "Find…", "Compact Rows",
          "Zoom In", "Zoom Out", "Ellwynd Help", "What's New in Ellwynd", "About Ellwynd"}},
        {"--LTCS", {"Refresh This Roster", "Show Dashboard", "Hide Student Details"}},
        {"---TCS",
         {"Export Roster as CSV…", "Export Roster as Markdown…", "Find Student", "Sort By"}},
        {"----CS",
         {"Missing Work by Assignment…", "Risk Thresholds…", "Icon…", "Copy Course Setup…",
          "Open Course in Canvas"}},
        {"-----S", {"Copy Message About Student", "Mark as Contacted", "Open Grades in Canvas"}},
        {"------", {"Undo", "Remove Contact Mark"}}};
    std::map<std::string, std::string> seen;
    const auto record = [&](char state, const MainWindow &where) {
        std::map<QString, bool> enabled;
        for (const auto *command : where.findChildren<QAction *>())
            enabled[QString(command->text()).remove(u'&')] = command->isEnabled();
        // The only command whose name depends on the mode.
        enabled.merge(std::map{std::pair{
            QStringLiteral("Leave Sample Data…"),
            enabled[QStringLiteral("Explore with Sample Data…")]}});
        for (const auto &[command, isEnabled] : enabled)
            seen[command.toStdString()] += isEnabled ? state : '-';
    };
    // The sample college is always connected, so the signed-out state needs objects of its own.
    test::Core unconnected;
    MainWindowController other{
        unconnected.defaults, unconnected.connector, unconnected.stores, unconnected.trends,
        unconnected.sinks};
    const MainWindow signedOut{other, unconnected.defaults, unconnected.stores, unconnected.check,
                               sync,  core.notifications,   appearance};
    other.refresh();
    record('O', signedOut);
    record('D', window);
    const auto loading = QObject::connect(&controller, &MainWindowController::rosterDidChange, [&] {
        if (controller.roster().state == RosterView::State::loading)
            record('L', window);
    });
    controller.select(TermSelection{9103});
    QObject::disconnect(loading);
    QApplication::processEvents();
    table().clearSelection();
    record('T', window);
    openCourse(900101);
    table().clearSelection();
    record('C', window);
    table().selectStudents({{900101, 5002}});
    record('S', window);
    for (const auto &[states, commands] : expected) {
        for (const std::string &command : commands)
            EXPECT_EQ(seen[command], states) << command;
    }
    EXPECT_FALSE(action("Check for Updates…")->isVisible());
    EXPECT_FALSE(action("Send Feedback…")->isVisible());
}

TEST_F(CourseWindowTest, AnAssignmentSelectsTheStudentsMissingIt) {
    window.roster()->findChild<QLineEdit *>()->setText(QStringLiteral("zoe"));
    EXPECT_EQ(table().shownCount(), 1);
    MissingWorkSheet *sheet = window.openMissingWork();
    ASSERT_NE(sheet, nullptr);
    sheet->findChild<QTableView *>()->selectRow(1); // Discussion 3: Diego, Jordan, Omar
    button(*sheet, "Show Students")->click();
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_THAT(selected(), testing::UnorderedElementsAre(5001, 5009, 5016));
}

/// Counts a view's paint events.
struct PaintCount : QObject {
    int paints = 0;
    bool eventFilter(QObject *, QEvent *event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

TEST_F(CourseWindowTest, TilesFollowTheChosenIconAtOnce) {
    PaintCount counter;
    QWidget *list = window.findChild<Sidebar *>()->list()->viewport();
    list->installEventFilter(&counter);
    QApplication::processEvents();
    counter.paints = 0;
    defaults.set("Course.900102.Future", true);
    QApplication::processEvents();
    EXPECT_EQ(counter.paints, 0);
    defaults.set("Course.900102.Icon", std::string("leaf"));
    QApplication::processEvents();
    EXPECT_EQ(counter.paints, 1);
    const auto images = [&] {
        QApplication::processEvents();
        return std::pair{window.roster()->grab().toImage(), list->grab().toImage()};
    };
    const auto before = images();
    defaults.set("Course.900102.IconColor", std::string("slate"));
    EXPECT_EQ(images().first, before.first) << "another course's";
    EXPECT_NE(images().second, before.second);
    defaults.remove("Course.900102.IconColor");
    defaults.set("Course.900101.Icon", std::string("atom"));
    EXPECT_NE(images().first, before.first);
    EXPECT_NE(images().second, before.second);
    defaults.remove("Course.900101.Icon");
    EXPECT_EQ(images(), before);
}

TEST_F(CourseWindowTest, RosterAndSidebarWorkByKeyboard) {
    action("Find Student")->trigger();
    auto *filter = window.roster()->findChild<QLineEdit *>();
    QTest::keyClicks(filter, QStringLiteral("iris"));
    EXPECT_EQ(table().shownCount(), 1);
    QTest::keyClick(filter, Qt::Key_Down);
    EXPECT_TRUE(table().hasFocus());
    EXPECT_EQ(selected().size(), 1U);
    filter->clear();
    table().selectStudents({{900101, 5002}});
    QTest::keyClick(&table(), Qt::Key_Down);
    EXPECT_THAT(selected(), ElementsAre(5001));
    QTest::keyClick(&table(), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(selected().size(), 2U);
    QTest::keyClick(&table(), Qt::Key_Home);
    EXPECT_THAT(selected(), ElementsAre(5002));
    // The last row is the line of the others, which Return opens in its place.
    QTest::keyClick(&table(), Qt::Key_End);
    EXPECT_EQ(table().shownCount(), 10);
    QTest::keyClick(&table(), Qt::Key_Return);
    EXPECT_EQ(table().shownCount(), 26);
    EXPECT_EQ(table().currentIndex().row(), 10);
    QTest::keyClick(&table(), Qt::Key_End);
    EXPECT_THAT(selected(), ElementsAre(5026));

    // The accessible text names hidden work, and Return shows it.
    table().selectStudents({{900101, 5001}});
    EXPECT_THAT(
        test::spokenText(table().currentIndex()),
        testing::EndsWith(", 5 more missing, press to show"));
    defaults.set(preferences::studentDetailsHidden, true);
    QTest::keyClick(&table(), Qt::Key_Return);
    EXPECT_TRUE(window.findChild<StudentDetails *>()->isVisible());
    EXPECT_TRUE(window.findChild<StudentDetails *>()->isAncestorOf(QApplication::focusWidget()));
    table().setFocus();

    QTreeView *sidebar = window.findChild<Sidebar *>()->list();
    QTest::keyClick(sidebar, Qt::Key_Down);
    EXPECT_EQ(controller.roster().courseID, 900102);
}

TEST_F(CourseWindowTest, ARefreshKeepsTheSelectionAndAThirdClickRestoresTheOrder) {
    table().selectStudents({{900101, 5014}});
    controller.refreshRoster();
    EXPECT_THAT(selected(), ElementsAre(5014));
    table().setQuery({.chip = RosterChip::everyone});

    // Also where the teacher has scrolled to, with the selection out of sight.
    table().selectRow(0);
    QApplication::processEvents();
    QScrollBar *scroll = table().verticalScrollBar();
    scroll->setValue(scroll->maximum());
    ASSERT_GT(scroll->value(), 0);
    const int place = scroll->value();
    const auto before = selected();
    table().setFocus();
    controller.refreshRoster();
    QApplication::processEvents();
    EXPECT_EQ(scroll->value(), place);
    EXPECT_EQ(selected(), before);
    EXPECT_TRUE(table().hasFocus());
    openCourse(900102);
    EXPECT_EQ(scroll->value(), 0) << "another course";
    openCourse(900101);
    const QAbstractItemModel &rows = *static_cast<QTableView &>(table()).model();
    const auto first = [&] { return rows.index(0, RosterModel::student).data().toString(); };
    for (const QString &expected : {QStringLiteral("Anya"), QStringLiteral("Zoe"), first()}) {
        Q_EMIT table().horizontalHeader()->sectionClicked(RosterModel::student);
        EXPECT_EQ(first(), expected);
    }
    // The same by keyboard.
    QMenu *sortBy = action("Sort By")->menu();
    Q_EMIT sortBy->aboutToShow();
    EXPECT_TRUE(sortBy->actions().first()->isChecked());
    sortBy->actions().at(2)->trigger();
    EXPECT_EQ(first(), QStringLiteral("Anya"));
}

TEST_F(CourseWindowTest, TheFlaggedStudentsOfACourseAreAllOnTheScreen) {
    ASSERT_EQ(table().shownCount(), 10);
    const auto bottom = [this](int row) {
        return table().rowViewportPosition(row) + table().rowHeight(row);
    };
    EXPECT_LE(bottom(10), table().viewport()->height()) << "with the line of the others";
    EXPECT_EQ(table().verticalScrollBar()->maximum(), 0);
    const int normal = table().rowHeight(0);
    defaults.set(preferences::rosterCompactRows, true);
    EXPECT_LT(table().rowHeight(0), normal);
    defaults.set(preferences::rosterCompactRows, false);
    EXPECT_EQ(table().rowHeight(0), normal);
}

TEST_F(MainWindowTest, RowsAreNeverWiderThanTheRosterAndNamesAreWhole) {
    RosterView roster{.state = RosterView::State::shown, .title = "Term", .courseCount = 2};
    const std::vector<std::string> names{
        "Ana", std::string(90, 'W'), "لمى بنت عبد الرحمن آل سعود الكبير",
        "一二三四五六七八九十一二三四五六七八九十一二三四五六七八九十"};
    std::vector<RiskRow> students;
    for (const std::string &name : names)
        students.push_back(
            {.id = std::int64_t(students.size()),
             .name = name,
             .courseName = "Biology",
             .level = RiskLevel::concern,
             .reasonLines = {{.text = "1 of 9 assignments missing"}}});
    roster.rows = students;
    for (const double scale : {1.0, 1.5, 2.0}) {
        defaults.set(preferences::textScale, scale);
        RosterTable rows(appearance);
        rows.setRoster(roster, {}, systemNow());
        for (const int width : {360, 620, 1000, 2200}) {
            rows.resize(width, 400);
            rows.grab();
            int used = 0;
            for (int column = 0; column < RosterModel::columns; ++column)
                used += rows.columnWidth(column);
            EXPECT_EQ(used, rows.viewport()->width()) << width << " at " << scale;
            EXPECT_EQ(rows.horizontalScrollBar()->maximum(), 0) << width << " at " << scale;
            const QFontMetrics metrics(appearance.font(1, QFont::DemiBold));
            const int lines = metrics.horizontalAdvance(QString::fromStdString(names[1])) /
                rows.columnWidth(RosterModel::student);
            EXPECT_GE(rows.rowHeight(1) - rows.rowHeight(0), lines * metrics.ascent())
                << width << " at " << scale;
        }
    }
}

TEST_F(CourseWindowTest, ChipsFilterTheRosterUntilEscape) {
    std::vector<int> shown;
    for (const Qt::Key key : {Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5, Qt::Key_6, Qt::Key_1}) {
        QTest::keyClick(&window, key, Qt::AltModifier);
        shown.push_back(table().shownCount());
    }
    EXPECT_THAT(shown, ElementsAre(2, 2, 7, 1, 26, 10));
    auto *filter = window.roster()->findChild<QLineEdit *>();
    filter->setText(QStringLiteral("nobody at all"));
    QPushButton *back = button(*window.roster(), "Clear the Filter");
    ASSERT_NE(back, nullptr);
    EXPECT_TRUE(back->isVisible());
    back->click();
    EXPECT_EQ(table().shownCount(), 10);
    EXPECT_EQ(filter->text(), QString());
    filter->setText(QStringLiteral("jordan"));
    EXPECT_EQ(table().shownCount(), 1);
    filter->setFocus();
    QTest::keyClick(filter, Qt::Key_Escape);
    EXPECT_EQ(table().shownCount(), 10);
}

TEST_F(CourseWindowTest, TheCommandsOfTheDetailsStayInSight) {
    table().selectStudents({{900101, 5001}});
    auto *details = window.findChild<StudentDetails *>();
    window.resize(1280, 560);
    QApplication::processEvents();
    auto *scroll = details->findChild<QScrollArea *>();
    ASSERT_GT(scroll->verticalScrollBar()->maximum(), 0);
    scroll->verticalScrollBar()->setValue(20);
    QPushButton *mark = button(*details, "Mark as Contacted");
    EXPECT_FALSE(mark->visibleRegion().isEmpty());
    mark->click();
    QApplication::processEvents();
    EXPECT_EQ(scroll->verticalScrollBar()->value(), 20) << "the same student";

    // They need a student and some width, unless they are asked for.
    window.resize(900, 600);
    QApplication::processEvents();
    EXPECT_FALSE(details->isVisible());
    action("Show Student Details")->trigger();
    EXPECT_TRUE(details->isVisible());
    window.resize(1280, 800);
    QApplication::processEvents();
    EXPECT_TRUE(details->isVisible());
    window.roster()->findChild<QLineEdit *>()->setText(QStringLiteral("nobody at all"));
    EXPECT_FALSE(details->isVisible());
}

TEST_F(MainWindowTest, TheSignForMoreMenusIsTransparentAroundItsArrows) {
    const QImage sign = QApplication::style()
                            ->standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton)
                            .pixmap(16)
                            .toImage();
    std::set<bool> isDrawn;
    for (int x = 0; x < sign.width(); ++x)
        isDrawn.insert(qAlpha(sign.pixel(x, sign.height() / 2)) > 0);
    EXPECT_EQ(qAlpha(sign.pixel(0, 0)), 0);
    EXPECT_EQ(isDrawn.size(), 2U);
}

TEST_F(CourseWindowTest, EachSentenceOfTheDetailsLeadsToItsTopic) {
    table().selectStudents({{900101, 5004}});
    QApplication::processEvents();
    const auto *details = window.findChild<StudentDetails *>();
    std::map<std::string, std::string> topics;
    for (auto *mark : details->findChildren<QAbstractButton *>()) {
        const QString question = QStringLiteral("What does this mean? ");
        if (!mark->accessibleName().startsWith(question))
            continue;
        mark->click();
        const QString sentence = mark->accessibleName().mid(question.size());
        topics[sentence.section(u' ', 0, 1).toStdString()] =
            window.findChild<TopicList *>()->selectedTopic();
    }
    const std::map<std::string, std::string> expected{
        {"2 of", "reasons"},
        {"Current score", "reasons"},
        {"Seen on", "movement"},
        {"Wrote 11", "contacts"}};
    EXPECT_THAT(topics, testing::IsSupersetOf(expected));
    auto *help = window.findChild<HelpWindow *>();
    ASSERT_NE(help, nullptr);
    help->activateWindow();
    const double before = defaults.value(preferences::textScale);
    QTest::keySequence(help, QKeySequence(QKeySequence::ZoomIn));
    EXPECT_GT(defaults.value(preferences::textScale), before) << "in every window";
    action("Keyboard Shortcuts")->trigger();
    EXPECT_TRUE(
        help->findChild<QTextBrowser *>()->toPlainText().contains(QStringLiteral("Ctrl++, Ctrl+=")))
        << "all keys of a command";
}

TEST_F(CourseWindowTest, AMostMissedAssignmentFiltersTheRoster) {
    for (auto *link : window.roster()->findChildren<TextLink *>()) {
        if (link->isVisible() && link->accessibleName().startsWith(QStringLiteral("Homework 5")))
            Q_EMIT link->clicked();
    }
    ASSERT_TRUE(table().query().missing);
    EXPECT_EQ(table().query().missing->name, "Homework 5");
    const int shown = table().shownCount();
    EXPECT_GT(shown, 0);
    EXPECT_LT(shown, 10);
    QPushButton *chip = button(*window.roster(), "Missing Homework 5 ✕");
    ASSERT_NE(chip, nullptr);
    EXPECT_TRUE(chip->isVisible());
    chip->click();
    EXPECT_EQ(table().shownCount(), 10);
}

} // namespace
} // namespace ellwynd
