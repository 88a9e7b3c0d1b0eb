#include "outputs/snapshot/snapshotfiles.h"
#include "support/accessibility.h"
#include "support/snapshots.h"
#include "support/temporaryfolder.h"
#include "widgets/courserow.h"
#include "widgets/summaryview.h"
#include "widgets/termbutton.h"
#include "widgets/textbutton.h"
#include "widgets/widgetboard.h"

#include <QApplication>
#include <QScreen>
#include <QTest>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Date &currentTime() {
    static Date time;
    return time;
}

struct WidgetsTest : testing::Test {
    QFont desktopFont = QApplication::font();
    test::TemporaryFolder folder;
    std::filesystem::path container = folder.path() / "data" / "container";
    std::filesystem::path stateFile = folder.path() / "state" / "Widgets.json";
    WidgetSnapshotWriter writer{container, [] {}};
    UserDefaults defaults{folder.path() / "Preferences.json", {}};
    SnapshotSource source{container};
    std::vector<std::string> opened;
    /// With which links are opened.
    std::optional<std::string> failure;
    std::unique_ptr<WidgetBoard> board;

    void SetUp() override {
        currentTime() = test::noon;
        writer.write(test::twoTerms());
        source.check();
        start({{}});
    }
    ~WidgetsTest() override {
        board.reset();
        QApplication::setFont(desktopFont);
    }

    /// Replaces all widgets by these.
    void start(const std::vector<PlacedWidget> &widgets) {
        board.reset();
        savePlacedWidgets(stateFile, widgets);
        restart();
    }

    /// Starts again from the saved state.
    void restart() {
        board.reset();
        board = std::make_unique<WidgetBoard>(
            source, defaults, stateFile, false,
            [this](const QString &link) {
                opened.push_back(link.toStdString());
                return failure;
            },
            [] { return currentTime(); });
        board->show();
    }

    [[nodiscard]] WidgetWindow &window(std::size_t index = 0) const {
        return *board->windows().at(index);
    }

    /// The texts of the visible labels.
    [[nodiscard]] static std::vector<std::string> labels(const WidgetWindow &window) {
        std::vector<std::string> texts;
        for (const QLabel *label : window.findChildren<QLabel *>()) {
            if (label->isVisible())
                texts.push_back(label->text().toStdString());
        }
        for (const TextButton *button : {window.messageButton(), window.moreButton()}) {
            if (button->isVisible())
                texts.push_back(button->shownText().toStdString());
        }
        return texts;
    }
    [[nodiscard]] static std::vector<std::string> courses(const WidgetWindow &window) {
        std::vector<std::string> texts;
        for (const CourseRow *row : window.rows())
            texts.push_back(row->row().label);
        return texts;
    }
    [[nodiscard]] static std::string title(const WidgetWindow &window) {
        return window.termButton()->accessibleName().toStdString();
    }

    /// The entries of a menu, the checked one with a check mark before it.
    [[nodiscard]] static std::vector<std::string> entries(const QMenu &menu) {
        std::vector<std::string> texts;
        for (const QAction *action : menu.actions()) {
            if (!action->isSeparator())
                texts.push_back((action->isChecked() ? "✓ " : "") + action->text().toStdString());
        }
        return texts;
    }
    [[nodiscard]] static std::vector<std::string> termEntries(WidgetWindow &window) {
        const std::unique_ptr<QMenu> menu(window.makeTermMenu(nullptr));
        return entries(*menu);
    }

    static void trigger(const QMenu &menu, const QString &text) {
        for (QAction *action : menu.actions()) {
            if (action->menu() != nullptr)
                trigger(*action->menu(), text);
            else if (action->text() == text)
                action->trigger();
        }
    }
    static void choose(WidgetWindow &window, const char *text) {
        QMenu *menu = window.makeMenu();
        trigger(*menu, QString::fromUtf8(text));
        delete menu;
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

TEST_F(WidgetsTest, RowsOpenTheirCourseByMouseAndKeyboard) {
    EXPECT_EQ(title(window()), "Term: Fall 2026");
    EXPECT_THAT(courses(window()), ElementsAre("Bio", "Chem"));
    EXPECT_THAT(labels(window()), ElementsAre("as of 07:00:00"));
    EXPECT_EQ(
        window().rows()[0]->accessibleName(),
        QStringLiteral("Bio, 7 flagged, 4 At Risk, 2 Concern, 1 Watch"));
    QTest::mouseClick(window().rows()[0], Qt::LeftButton);
    // The keyboard goes from the title to every row.
    window().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    QTest::keyClick(&window(), Qt::Key_Tab);
    EXPECT_TRUE(window().termButton()->hasFocus());
    QTest::keyClick(window().focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(window().summaryButton()->hasFocus());
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Down, Qt::Key_Return})
        QTest::keyClick(window().focusWidget(), key);
    EXPECT_THAT(opened, ElementsAre("ellwynd://course/4021", "ellwynd://course/4022"));
    EXPECT_THAT(test::unnamedElements(window()), IsEmpty());
    EXPECT_THAT(test::unreachableControls(window()), IsEmpty());
}

TEST_F(WidgetsTest, EveryPartOpensEllwynd) {
    WidgetSnapshotFile file = test::twoTerms();
    file.terms[0].courses.assign(9, file.terms[0].courses[0]);
    writer.write(file);
    source.check();
    const auto press = [this](QAbstractButton *part) {
        opened.clear();
        EXPECT_TRUE(part->isVisible());
        QTest::mouseClick(part, Qt::LeftButton);
        QTest::keyClick(part, Qt::Key_Return);
        EXPECT_THAT(opened, ElementsAre("", ""));
        EXPECT_NE(part->accessibleName(), QString());
    };
    press(window().summaryButton());
    press(window().moreButton());
    choose(window(), "Open Ellwynd");
    EXPECT_EQ(opened.size(), 3U);
    writer.clear();
    source.check();
    press(window().messageButton());
}

TEST_F(WidgetsTest, AFailedOpeningIsShownUntilTheNextOne) {
    start({{WidgetSize::small}, {WidgetSize::medium}});
    failure = "/usr/bin/ellwynd could not be started: No such file or directory";
    QTest::mouseClick(window(1).rows()[0], Qt::LeftButton);
    const std::string shown = "Ellwynd couldn’t be opened. " + *failure;
    EXPECT_THAT(labels(window(1)), ElementsAre(shown));
    EXPECT_EQ(window(1).accessibleName().toStdString(), shown);
    EXPECT_THAT(courses(window(1)), IsEmpty());
    EXPECT_THAT(labels(window(0)), ElementsAre("as of 07:00:00"));
    failure.reset();
    QTest::mouseClick(window(1).messageButton(), Qt::LeftButton);
    EXPECT_THAT(courses(window(1)), ElementsAre("Bio", "Chem"));
}

TEST_F(WidgetsTest, ACardOfAnAbsentScreenReturnsToIt) {
    const QPoint away(4000, 300);
    for (const WidgetSize size : {WidgetSize::small, WidgetSize::large}) {
        start({{.size = size, .place = away}});
        EXPECT_TRUE(window().screen()->availableGeometry().contains(window().frameGeometry()));
        board->refresh();
        choose(window(), "Summer 2026");
        board.reset();
        EXPECT_EQ(readPlacedWidgets(stateFile).at(0).place, away);
        // Dragging it gives it a new place. A course drags it too, without a click.
        restart();
        QWidget *handle = &window();
        if (size == WidgetSize::large)
            handle = window().rows()[0];
        const QPoint grip = handle->rect().center();
        QTest::mousePress(handle, Qt::LeftButton, {}, grip);
        QTest::mouseMove(handle, grip - QPoint(30, 0));
        QTest::mouseMove(handle, grip - QPoint(60, 0));
        QTest::mouseRelease(handle, Qt::LeftButton, {}, grip);
        EXPECT_NE(window().placed().place, away);
        EXPECT_EQ(window().placed().place, window().pos());
        EXPECT_THAT(opened, IsEmpty());
    }
    QTest::mouseClick(window().rows()[0], Qt::LeftButton);
    EXPECT_EQ(opened.size(), 1U) << "a click is a click again";
}

TEST_F(WidgetsTest, TheFileMayBeReplacedRemovedAndMoved) {
    const auto shows = [this](const std::vector<std::string> &expected) {
        return QTest::qWaitFor([&] { return courses(window()) == expected; });
    };
    WidgetSnapshotFile file = test::twoTerms();
    file.terms[0].courses = {{.id = 1, .name = "Art", .watch = 1, .total = 3}};
    writer.write(file);
    EXPECT_TRUE(shows({"Art"})) << "replaced";

    writer.clear();
    EXPECT_TRUE(shows({})) << "deleted";
    EXPECT_THAT(labels(window()), ElementsAre("Open Ellwynd to load your courses"));
    EXPECT_FALSE(window().termButton()->isVisible());

    writer.write(file);
    EXPECT_TRUE(shows({"Art"})) << "written again";
    std::filesystem::remove_all(container.parent_path());
    EXPECT_TRUE(shows({})) << "the parent folder was removed";
    writer.write(test::twoTerms());
    EXPECT_TRUE(shows({"Bio", "Chem"})) << "both folders were created again";

    (void)std::filesystem::rename(container, folder.path() / "elsewhere");
    EXPECT_TRUE(shows({})) << "the folder was moved away";
    std::filesystem::rename(folder.path() / "elsewhere", container);
    EXPECT_TRUE(shows({"Bio", "Chem"})) << "and back";

    files::replace(container / widgetFiles::versionTwo, "{\"terms\":");
    EXPECT_TRUE(shows({})) << "not a snapshot";
}

TEST_F(WidgetsTest, AChosenTermIsKeptWhileItIsNotListed) {
    EXPECT_THAT(termEntries(window()), ElementsAre("✓ Automatic", "Fall 2026", "Summer 2026"));
    choose(window(), "Summer 2026");
    EXPECT_EQ(title(window()), "Term: Summer 2026");
    EXPECT_EQ(window().windowTitle(), QStringLiteral("Summer 2026 — Ellwynd"));

    WidgetSnapshotFile file = test::twoTerms();
    file.terms.pop_back();
    writer.write(file);
    source.check();
    EXPECT_EQ(title(window()), "Term: Fall 2026");
    EXPECT_THAT(termEntries(window()), ElementsAre("✓ Automatic", "Fall 2026"));

    restart();
    writer.write(test::twoTerms());
    source.check();
    EXPECT_EQ(title(window()), "Term: Summer 2026");
    EXPECT_THAT(termEntries(window()), ElementsAre("Automatic", "Fall 2026", "✓ Summer 2026"));
    choose(window(), "Automatic");
    EXPECT_EQ(title(window()), "Term: Fall 2026");
}

TEST_F(WidgetsTest, EachWidgetIsSavedSeparately) {
    choose(window(), "Add Another Widget");
    ASSERT_EQ(board->windows().size(), 2U);
    EXPECT_FALSE(window(0).frameGeometry().intersects(window(1).frameGeometry()));
    choose(window(1), "Large");
    choose(window(1), "Summer 2026");
    window(1).move(40, 50);
    const std::vector<PlacedWidget> both{window(0).placed(), window(1).placed()};
    restart();
    ASSERT_EQ(board->windows().size(), 2U);
    EXPECT_EQ(window(0).placed(), both[0]);
    EXPECT_EQ(window(1).placed(), both[1]);
    EXPECT_EQ(window(1).pos(), QPoint(40, 50));
    EXPECT_EQ(window(1).placed().size, WidgetSize::large);

    int finished = 0;
    QObject::connect(board.get(), &WidgetBoard::quitRequested, board.get(), [&] { ++finished; });
    choose(window(0), "Remove Widget");
    EXPECT_THAT(readPlacedWidgets(stateFile), ElementsAre(both[1]));
    choose(window(0), "Quit");
    EXPECT_EQ(finished, 1);
    // Quitting closes the windows without removing the widgets.
    window(0).close();
    EXPECT_THAT(readPlacedWidgets(stateFile), ElementsAre(both[1]));
    choose(window(0), "Remove Widget");
    EXPECT_EQ(finished, 2);
    restart();
    EXPECT_EQ(board->windows().size(), 1U) << "a first one";
}

TEST_F(WidgetsTest, TheDayIsNamedAfterMidnight) {
    currentTime() = test::at("2026-09-25T05:00:00Z");
    board->refresh();
    EXPECT_THAT(labels(window()), ElementsAre("as of Thu, Sep 24, 07:00:00"));
}

TEST_F(WidgetsTest, AppearanceFollowsThePreferences) {
    const auto background = [this] {
        const QImage image = window().grab().toImage();
        return image.pixelColor(image.width() / 2, 4);
    };
    const int width = window().width();
    EXPECT_EQ(background(), makeTheme(false, "blue").window);
    board->setDesktopIsDark(true);
    EXPECT_EQ(background(), makeTheme(true, "blue").window);
    board->setDesktopIsDark(false);
    defaults.set(preferences::appearance, std::string("dark"));
    EXPECT_EQ(background(), makeTheme(true, "blue").window);
    defaults.set(preferences::textScale, 1.5);
    EXPECT_NEAR(window().width(), width * 1.5, 1);
}

TEST_F(WidgetsTest, TilesShowTheChosenIconUnlessTheNameIsHidden) {
    const auto tile = [this] { return window().rows()[0]->grab().toImage(); };
    const QImage letters = tile();
    defaults.set("Course.4021.Icon", std::string("leaf"));
    const QImage leaf = tile();
    EXPECT_NE(leaf, letters);
    defaults.set("Course.4022.Icon", std::string("atom"));
    EXPECT_EQ(tile(), leaf) << "another course's";
    WidgetSnapshotFile file = test::twoTerms();
    file.terms[0].courses[0].name.reset();
    writer.write(file);
    source.check();
    const QImage hidden = tile();
    defaults.remove("Course.4021.Icon");
    EXPECT_EQ(tile(), hidden);
    defaults.set("Course.4021.IconColor", std::string("pink"));
    EXPECT_NE(tile(), hidden);
}

TEST_F(WidgetsTest, LongNamesAndListsFitInEverySize) {
    WidgetSnapshotFile file = test::twoTerms();
    const std::string name = std::string(300, 'x') + "<b>R&D</b>";
    file.terms[0].courses.assign(40, {.id = 1, .name = name, .atRisk = 99, .total = 99});
    file.terms[0].title = "A & B " + name;
    writer.write(file);
    source.check();
    start({{WidgetSize::small}, {WidgetSize::medium}, {WidgetSize::large}});
    EXPECT_THAT(labels(window(0)), ElementsAre("as of 07:00:00"));
    EXPECT_THAT(labels(window(1)), ElementsAre("as of 07:00:00", "37 more in Ellwynd"));
    EXPECT_THAT(labels(window(2)), ElementsAre("as of 07:00:00", "34 more in Ellwynd"));
    for (const auto &each : board->windows()) {
        // Parts neither overlap nor extend beyond the card, and markup is shown as text.
        QRect taken;
        for (const CourseRow *row : each->rows()) {
            EXPECT_TRUE(each->rect().contains(row->geometry()));
            EXPECT_FALSE(taken.intersects(row->geometry()));
            taken |= row->geometry();
            EXPECT_TRUE(row->toolTip().contains(QStringLiteral("&lt;b&gt;R&amp;D")));
        }
        for (const QLabel *label : each->findChildren<QLabel *>())
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_TRUE(each->rect().contains(each->termButton()->geometry()));
        EXPECT_TRUE(each->termButton()->toolTip().contains(QStringLiteral("A &amp; B")));
        EXPECT_TRUE(termEntries(*each)[1].starts_with("A && B xxx"));
    }
}

TEST_F(WidgetsTest, FilesThatAreUnavailableAreKept) {
    const auto snapshot = source.snapshot();
    ASSERT_TRUE(snapshot);
    // Links to themselves can be replaced but not read.
    const auto file = container / widgetFiles::versionTwo;
    board.reset();
    for (const auto &each : {file, stateFile}) {
        std::filesystem::remove(each);
        std::filesystem::create_symlink(each.filename(), each);
    }
    source.check();
    EXPECT_EQ(source.snapshot(), snapshot);
    restart();
    EXPECT_EQ(board->windows().size(), 1U);
    board.reset();
    EXPECT_TRUE(std::filesystem::is_symlink(stateFile));

    std::filesystem::remove(file);
    source.check();
    EXPECT_EQ(source.snapshot(), std::nullopt);
}

} // namespace
} // namespace ellwynd
