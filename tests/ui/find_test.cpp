#include "support/fakecanvas.h"
#include "support/mainwindow.h"
#include "support/servedcourse.h"
#include "ui/find/findlist.h"
#include "ui/find/findpanel.h"
#include "windowtexts.h"

#include <QLineEdit>
#include <QMenuBar>

namespace ellwynd {
namespace {

struct FindTest : test::MainWindowTest {
    using MainWindowTest::MainWindowTest;

    void SetUp() override {
        MainWindowTest::SetUp();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    [[nodiscard]] FindPanel *panel() const { return window.findChild<FindPanel *>(); }
    [[nodiscard]] QLineEdit *field() const { return panel()->findChild<QLineEdit *>(); }
    [[nodiscard]] FindList *list() const { return panel()->findChild<FindList *>(); }
    [[nodiscard]] bool isOpen() const { return panel() != nullptr && panel()->isVisible(); }

    /// Opens the panel from the keyboard and types.
    void find(const char *typed) const {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_K, Qt::ControlModifier);
        ASSERT_TRUE(isOpen());
        ASSERT_EQ(QApplication::focusWidget(), field());
        QTest::keyClicks(field(), QString::fromUtf8(typed));
    }

    [[nodiscard]] std::string text(int row) const {
        return test::spokenText(list()->model()->index(row, 0));
    }
    [[nodiscard]] std::string currentText() const {
        return test::spokenText(list()->currentIndex());
    }
    [[nodiscard]] int rows() const { return list()->model()->rowCount(); }
};

TEST_F(FindTest, ReturnOpensWhatIsSelected) {
    find("jordan");
    EXPECT_EQ(text(0), "Jordan, At Risk, CS 101 4021 - Intro to Programming");
    QTest::keyClick(field(), Qt::Key_Return);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(controller.roster().courseID, 900101);
    EXPECT_THAT(selected(), testing::ElementsAre(5001));
    EXPECT_EQ(QApplication::focusWidget(), &table());

    find("php");
    EXPECT_EQ(currentText(), "CS 230 5140 - PHP with SQL, Course, Fall 2026");
    QTest::keyClick(field(), Qt::Key_Enter);
    EXPECT_EQ(controller.roster().courseID, 900103);

    find("fall 20");
    EXPECT_EQ(currentText(), "Fall 2026, Term, 6 courses");
    QTest::keyClick(field(), Qt::Key_Return);
    EXPECT_EQ(controller.selection(), Selection(TermSelection{9001}));

    find("compact");
    EXPECT_EQ(currentText(), "Compact Rows, Command, View · Ctrl+Shift+C");
    QTest::keyClick(field(), Qt::Key_Return);
    EXPECT_TRUE(defaults.value(preferences::rosterCompactRows));

    // A student without a flag, whom the roster does not show at first.
    find("zoe");
    const auto student = list()->current();
    ASSERT_TRUE(student);
    EXPECT_FALSE(student->level);
    QTest::keyClick(field(), Qt::Key_Return);
    EXPECT_EQ(controller.roster().courseID, student->courseID);
    EXPECT_THAT(selected(), testing::ElementsAre(*student->id));
}

TEST_F(FindTest, EscapeAndAClickElsewhereGiveTheFocusBack) {
    openCourse(900101);
    table().setFocus();
    find("jor");
    QTest::keyClick(field(), Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(QApplication::focusWidget(), &table());

    find("jor");
    QTest::mouseClick(window.menuBar(), Qt::LeftButton, {}, {window.menuBar()->width() - 2, 2});
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(QApplication::focusWidget(), &table());

    find("");
    EXPECT_EQ(field()->text(), QString()) << "nothing is remembered of what was typed";
    QTest::mouseClick(field(), Qt::LeftButton);
    EXPECT_TRUE(isOpen());
    window.roster()->focusFilter();
    EXPECT_FALSE(isOpen()) << "the focus has moved";
    EXPECT_NE(QApplication::focusWidget(), &table());
}

/// Takes every key for itself before shortcuts do, as text fields do with some.
struct GreedyField : QLineEdit {
    using QLineEdit::QLineEdit;
    bool event(QEvent *event) override {
        if (event->type() != QEvent::ShortcutOverride)
            return QLineEdit::event(event);
        event->accept();
        return true;
    }
};

TEST_F(FindTest, IsOpenedFromEveryControl) {
    GreedyField greedy(&window);
    greedy.show();
    greedy.setFocus();
    QTest::keyClick(&greedy, Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget(), &greedy) << "another command's keys are the field's";
    ASSERT_NO_FATAL_FAILURE(find(""));
    QTest::keyClick(field(), Qt::Key_Escape);
    EXPECT_EQ(QApplication::focusWidget(), &greedy);
}

TEST_F(FindTest, KeysMoveTheSelectionWhileTheFieldHasTheFocus) {
    find("c");
    ASSERT_GT(rows(), 20);
    const auto press = [this](Qt::Key key) {
        QTest::keyClick(field(), key);
        return list()->currentIndex().row();
    };
    EXPECT_EQ(list()->currentIndex().row(), 0);
    EXPECT_EQ(press(Qt::Key_Down), 1);
    EXPECT_EQ(press(Qt::Key_Up), 0);
    EXPECT_EQ(press(Qt::Key_Up), 0);
    const int page = press(Qt::Key_PageDown);
    EXPECT_GT(page, 3);
    EXPECT_EQ(press(Qt::Key_PageUp), 0);
    EXPECT_EQ(QApplication::focusWidget(), field());

    QTest::keyClick(field(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), list());
    QTest::keyClick(list(), Qt::Key_Down);
    EXPECT_EQ(list()->currentIndex().row(), 1);
    QTest::keyClick(list(), Qt::Key_H);
    EXPECT_EQ(QApplication::focusWidget(), field());
    EXPECT_EQ(field()->text(), QStringLiteral("ch"));
    EXPECT_EQ(list()->currentIndex().row(), 0) << "new results";

    const FindEntry second = *list()->at(list()->model()->index(1, 0));
    const QRect row = list()->visualRect(list()->model()->index(1, 0));
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, row.center());
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(controller.roster().courseID, second.courseID);
}

TEST_F(FindTest, ABlankFieldSuggestsStudentsAndNobodyIsSaid) {
    find("");
    EXPECT_EQ(rows(), 12);
    EXPECT_EQ(text(0), "Jordan, At Risk, CS 101 4021 - Intro to Programming");
    QTest::keyClicks(field(), QStringLiteral("zzzz"));
    EXPECT_EQ(rows(), 0);
    EXPECT_FALSE(list()->isVisible());
    EXPECT_EQ(
        panel()->accessibleDescription(), QStringLiteral("Nobody and nothing is named like that."));
    QTest::keyClick(field(), Qt::Key_Return);
    EXPECT_TRUE(isOpen());
}

TEST_F(FindTest, OnlyCommandsThatCanRunAreListed) {
    const auto finds = [this](const char *typed, const char *command) {
        find(typed);
        bool found = false;
        for (int row = 0; row < rows(); ++row)
            found = found || text(row).starts_with(command);
        QTest::keyClick(field(), Qt::Key_Escape);
        return found;
    };
    EXPECT_FALSE(finds("missing work", "Missing Work by Assignment…, Command"));
    openCourse(900101);
    EXPECT_TRUE(finds("missing work", "Missing Work by Assignment…, Command"));
    EXPECT_FALSE(finds("find", "Find…, Command"));
    EXPECT_TRUE(finds("find", "Find Student, Command"));
}

TEST_F(FindTest, FitsIntoTheWindowAtEverySize) {
    find("c");
    for (const QSize size : {QSize(640, 400), QSize(900, 600), QSize(2560, 1440)}) {
        for (const double scale : {0.8, 1.0, 2.0}) {
            settings.setTextScale(scale);
            window.resize(size);
            QApplication::processEvents();
            EXPECT_TRUE(window.rect().contains(panel()->geometry())) << size.width() << scale;
        }
    }
}

/// On a course with so many students.
struct ConnectedFindTest : FindTest, testing::WithParamInterface<int> {
    test::FakeCanvas canvas;
    test::FakeCanvas otherCanvas;

    ConnectedFindTest() : FindTest(PreferenceMap{}) { test::trustAuthority(); }

    void SetUp() override {
        FindTest::SetUp();
        auto course = test::inventCourse(4021, {.students = 0, .assignments = 0}, systemNow());
        course.course.name = "Bio";
        for (std::int64_t id = 1; id <= GetParam(); ++id) {
            course.enrollments.push_back(
                {.userID = id,
                 .user = EnrolledUser{.id = id, .name = "Zoe " + std::to_string(id)},
                 .grades = Grades{}});
        }
        test::serve(canvas, std::span(&course, 1));
        otherCanvas.serve(QStringLiteral("/api/v1/courses"), {});
    }
    void TearDown() override {
        EXPECT_TRUE(test::until([&] { return core.session.requestLimiter().inFlight() == 0; }));
    }
};

TEST_P(ConnectedFindTest, FindsWhatIsInMemoryOfThisAccountAlone) {
    action("Find…")->trigger();
    EXPECT_EQ(rows(), 0);
    field()->setText(QStringLiteral("settings"));
    EXPECT_EQ(rows(), 1) << "commands are found before there is an account";
    const std::string last = "Zoe " + std::to_string(GetParam());
    field()->setText(QString::fromStdString(last));
    core.connectTo(canvas.address());
    EXPECT_TRUE(test::until([&] { return rows() == 1; })) << "shown when it has been read";
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(text(0), last + ", OK, Bio");
    EXPECT_EQ(field()->text().toStdString(), last);

    panel()->dismiss();
    find(last.c_str());
    EXPECT_TRUE(test::until([&] { return rows() == 1; })) << "opened after it has been read";

    // While the names of a large roster are prepared again.
    panel()->dismiss();
    action("Find…")->trigger();
    core.connectTo(otherCanvas.address());
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(rows(), 0) << "no name is kept";
    action("Find…")->trigger();
    field()->setText(QStringLiteral("settings"));
    EXPECT_TRUE(test::until([&] { return rows() == 1; }));
    field()->setText(QStringLiteral("zoe"));
    EXPECT_EQ(rows(), 0) << "of the other account";
}

// The names of so many are prepared by a thread.
INSTANTIATE_TEST_SUITE_P(FindTest, ConnectedFindTest, testing::Values(1, 2500));

using FindListTest = test::WindowTest;

TEST_F(FindListTest, ShowsNamesAsPlainTextOnOneLine) {
    FindList list(appearance);
    std::vector<FindEntry> entries;
    for (const char *name : {"<b>Bob</b>", "שלום\nכהן", "山田太郎", "", "Ada\t\u202eevil"})
        entries.push_back(
            {.title = name, .detail = "<i>Bio</i>", .level = RiskLevel::watch, .id = 1});
    list.show(entries, "b", std::nullopt);
    const QModelIndex bob = list.model()->index(0, 0);
    EXPECT_EQ(test::spokenText(bob), "<b>Bob</b>, Watch, <i>Bio</i>");
    EXPECT_EQ(test::spokenText(bob.siblingAtRow(1)), "שלום כהן, Watch, <i>Bio</i>");
    EXPECT_EQ(
        bob.data(Qt::ToolTipRole).toString(),
        QStringLiteral("<span>&lt;b&gt;Bob&lt;/b&gt; · &lt;i&gt;Bio&lt;/i&gt;</span>"));
    list.resize(list.sizeHint());
    EXPECT_FALSE(list.grab().isNull());
}

} // namespace
} // namespace ellwynd
