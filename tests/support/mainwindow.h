// Fixtures for tests of windows.
#pragma once

#include "app/mainwindowcontroller.h"
#include "app/sync/syncservice.h"
#include "support/core.h"
#include "support/until.h"
#include "ui/mainwindow/mainwindow.h"
#include "ui/roster/rosterpane.h"
#include "ui/support/appearance.h"
#include "ui/support/statusnotes.h"

#include <QAction>
#include <QApplication>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

namespace ellwynd::test {

/// What parts of windows need.
struct WindowTest : testing::Test {
    Core core;
    UserDefaults &defaults = core.defaults;
    Settings settings{defaults};
    Appearance appearance{settings, false};

    explicit WindowTest(PreferenceMap arguments = {}) : core(std::move(arguments)) {}
    /// Restores the font of the program.
    ~WindowTest() override { defaults.set(preferences::textScale, 1.0); }

    /// Presses a key in the widget that has the focus.
    static void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

    [[nodiscard]] static QPushButton *button(QWidget &where, QAnyStringView text) {
        // The details are rebuilt in an event of their own.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
        for (auto *candidate : where.findChildren<QPushButton *>()) {
            if (QAnyStringView(candidate->text()) == text && candidate->isVisibleTo(&where))
                return candidate;
        }
        return nullptr;
    }
};

/// The main window on the sample college.
struct MainWindowTest : WindowTest {
    MainWindowController controller{defaults, core.connector, core.stores, core.trends, core.sinks};
    SyncService sync{defaults, core.trends, core.folder.path() / "Seen.json"};
    MainWindow window{controller, defaults,           core.stores, core.check,
                      sync,       core.notifications, appearance};

    explicit MainWindowTest(PreferenceMap arguments = {{"SampleData", true}})
        : WindowTest(std::move(arguments)) {
        window.resize(1280, 800);
        window.show();
    }

    void SetUp() override { controller.refresh(); }

    void openCourse(std::int64_t id) {
        controller.select(CourseSelection{id});
        QApplication::processEvents();
    }

    /// The note over the main window; empty for none.
    [[nodiscard]] std::string note() const {
        return window.findChild<StatusNotes *>()->text().toStdString();
    }

    [[nodiscard]] RosterTable &table() { return *window.roster()->table(); }

    [[nodiscard]] std::vector<std::int64_t> selected() {
        std::vector<std::int64_t> ids;
        for (const RiskRow &row : table().selectedRows())
            ids.push_back(row.id);
        return ids;
    }

    [[nodiscard]] QAction *action(QAnyStringView text) const {
        for (auto *candidate : window.findChildren<QAction *>()) {
            if (QAnyStringView(QString(candidate->text()).remove(u'&')) == text)
                return candidate;
        }
        return nullptr;
    }
};

/// The same with a course shown.
struct CourseWindowTest : MainWindowTest {
    void SetUp() override {
        MainWindowTest::SetUp();
        openCourse(900101);
    }

    [[nodiscard]] std::optional<ContactRecord> contact(std::int64_t student) const {
        return core.stores.contacts.lastContact(900101, student);
    }
};

} // namespace ellwynd::test
