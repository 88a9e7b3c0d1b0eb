// The sample college beside a teacher's own files.
#include "app/mainwindowcontroller.h"
#include "memory/contactlog.h"
#include "platform/cloud/foldercontents.h"
#include "support/fakecanvas.h"
#include "support/instants.h"
#include "support/loneservice.h"
#include "support/programfolder.h"
#include "support/rosters.h"
#include "support/temporaryfolder.h"
#include "ui/mainwindow/mainwindow.h"
#include "ui/settings/settingswindow.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QListView>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace ellwynd {
namespace {

namespace fs = std::filesystem;

void settle() {
    for (int i = 0; i < 5; ++i)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
}

/// Uses every control of a window once, and those of the windows that open.
class Visitor {
  public:
    explicit Visitor(QWidget &main) : inUse{&main} {}

    void visit(QWidget &window) {
        inUse.push_back(&window);
        const QList<QWidget *> controls = window.findChildren<QWidget *>();
        std::vector<QPointer<QWidget>> alive(controls.begin(), controls.end());
        // Lists last: they change what is shown beside them.
        std::ranges::stable_sort(alive, {}, [](const QPointer<QWidget> &control) {
            return qobject_cast<QListView *>(control.data()) != nullptr;
        });
        for (const QPointer<QWidget> &control : alive) {
            if (control && control->isVisible() && control->isEnabled())
                use(control);
            answerWindows();
        }
        inUse.pop_back();
    }

    void trigger(QAction &action) {
        if (!action.isEnabled() || action.menu() != nullptr)
            return;
        action.trigger();
        ++used;
        settle();
        answerWindows();
    }

    int used = 0;

  private:
    void use(QPointer<QWidget> control) {
        const auto *push = qobject_cast<QPushButton *>(control.data());
        if (push != nullptr && push->menu() != nullptr) {
            // A click would wait for the menu to close.
            Q_EMIT push->menu()->aboutToShow();
            if (!push->menu()->isEmpty())
                trigger(*push->menu()->actions().front());
            return;
        }
        if (auto *button = qobject_cast<QAbstractButton *>(control.data())) {
            button->click();
        } else if (auto *number = qobject_cast<QAbstractSpinBox *>(control.data())) {
            number->stepUp();
        } else if (auto *choice = qobject_cast<QComboBox *>(control.data())) {
            choice->setCurrentIndex((choice->currentIndex() + 1) % std::max(1, choice->count()));
            Q_EMIT choice->activated(choice->currentIndex());
        } else if (auto *text = qobject_cast<QPlainTextEdit *>(control.data())) {
            if (!text->isReadOnly())
                text->setPlainText(QStringLiteral("Dear {name}"));
        } else if (auto *list = qobject_cast<QListView *>(control.data())) {
            for (int row = 0; row < list->model()->rowCount(); ++row)
                list->setCurrentIndex(list->model()->index(row, 0));
        } else {
            return;
        }
        ++used;
        settle();
    }

    /// Uses the windows that opened, and closes them. Alerts are answered as the program asks.
    void answerWindows() {
        for (int round = 0; round < 4; ++round) {
            for (const QPointer<QWidget> window : QApplication::topLevelWidgets()) {
                if (!window->isVisible() || std::ranges::find(inUse, window) != inUse.end())
                    continue;
                if (auto *alert = qobject_cast<QMessageBox *>(window.data())) {
                    alert->buttons().front()->click();
                } else if (qobject_cast<QFileDialog *>(window.data()) == nullptr) {
                    visit(*window);
                }
                if (window)
                    window->close();
                settle();
                break;
            }
        }
    }

    std::vector<const QWidget *> inUse;
};

TEST(SampleCollege, UsingEveryControlLeavesTheTeachersFilesAlone) {
    const test::TemporaryFolder home;
    const fs::path preferencesFile = home.path() / "Preferences.json";
    const fs::path cloud = home.path() / "Ellwynd";
    test::FakeCanvas canvas;
    folderContents::create(cloud);
    (void)home.write("Ellwynd/TextScale.json", R"({"value": 1.2})");
    {
        UserDefaults teachers(preferencesFile, {});
        teachers.update(
            {{"CanvasBaseURL", canvas.address()},
             {"SampleData", true},
             {"SyncSettingsViaICloud", true},
             {"CloudStoreFolder", cloud.string()},
             {"DefaultPassingScore", 65.0},
             {"Course.900101.PassingScore", 55.0},
             {"Course.900101.Icon", "book"},
             {"SidebarExpandedTerms", IDList{1}},
             {"DashboardTermID", std::int64_t{9001}},
             {"MovementNotifications", true}});
        const PreferenceMap notInSampleMode{{"SampleData", false}};
        UserDefaults inUse(preferencesFile, notInSampleMode);
        RosterHistory history(inUse, home.path(), test::noonClock);
        history.record({test::row(5001, "At Risk")}, 4021, test::noon);
        ContactLog contacts(inUse, home.path(), test::noonClock);
        contacts.noteContact(4021, 5001, test::noon);
    }
    fs::create_directory(home.path() / "widgets");
    (void)home.write("widgets/WidgetSnapshot.json", "{}");
    const auto before = home.files();
    ASSERT_EQ(before.size(), 6U);

    test::MemorySecrets secrets;
    secrets.secrets[{TokenStore::service, TokenStore::accountOf(canvas.address())}] =
        "secret-token";
    int relaunches = 0;
    {
        ApplicationEnvironment environment = test::environmentIn(home.path());
        environment.secrets = secrets.shared();
        environment.newInstance = [&relaunches] {
            ++relaunches;
            return "It is a test.";
        };
        test::LoneService service;
        Application program(std::move(environment), service);
        MainWindow &window = program.window();
        window.resize(1280, 800);
        window.show();
        program.controller().refresh();
        settle();
        Visitor visitor(window);
        visitor.visit(window);
        for (const std::int64_t course : {900101, 900102}) {
            program.controller().select(CourseSelection{course});
            settle();
            visitor.visit(window);
        }
        SettingsWindow &settings = window.settings();
        for (int page = SettingsWindow::general; page <= SettingsWindow::sync; ++page) {
            settings.open(SettingsWindow::Page(page));
            settle();
            visitor.visit(settings);
        }
        const QList<QAction *> actions = window.findChildren<QAction *>();
        const std::vector<QPointer<QAction>> alive(actions.begin(), actions.end());
        for (const QPointer<QAction> &action : alive) {
            if (action)
                visitor.trigger(*action);
        }
        EXPECT_GT(visitor.used, 100);
        EXPECT_NE(program.defaults().persistentDomainJSON(), before.at("Preferences.json"));
    }
    EXPECT_GE(relaunches, 1);
    EXPECT_EQ(secrets.calls, 0) << "of the keyring";
    EXPECT_EQ(canvas.requests.size(), 0U);

    auto after = home.files();
    EXPECT_EQ(after.erase("Preferences.sample.json"), 1U);
    after.erase("MessageTemplates.json");
    const auto withoutTheMode = [](const std::string &text) {
        auto object = nlohmann::json::parse(text);
        object.erase("SampleData");
        object.erase("Onboarding.step");
        return object.dump();
    };
    EXPECT_EQ(
        withoutTheMode(after["Preferences.json"]), withoutTheMode(before.at("Preferences.json")));
    after["Preferences.json"] = before.at("Preferences.json");
    EXPECT_EQ(after, before);
}

} // namespace
} // namespace ellwynd
