#include "platform/cloud/foldercontents.h"
#include "support/fakecanvas.h"
#include "support/mainwindow.h"
#include "ui/settings/settingswindow.h"
#include "ui/settings/syncpane.h"
#include "ui/sidebar/sidebar.h"
#include "windowtexts.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QSpinBox>

namespace ellwynd {
namespace {

using test::MainWindowTest;
using testing::HasSubstr;

TEST_F(MainWindowTest, SettingsTakeEffectAtOnce) {
    SettingsWindow &panes = window.settings();
    panes.open(SettingsWindow::general);
    defaults.set(preferences::sidebarTermLimit, std::int64_t{2});
    EXPECT_EQ(window.findChild<Sidebar *>()->list()->model()->rowCount(), 3);
    defaults.set(preferences::textScale, 2.0);
    EXPECT_EQ(panes.findChild<QSpinBox *>()->value(), 200);
}

TEST_F(MainWindowTest, TheSampleCollegeIsLeftAndIsNotSynced) {
    SettingsWindow &panes = window.settings();
    panes.open(SettingsWindow::connection);
    int switches = 0;
    QObject::connect(&window, &MainWindow::sampleSwitchRequested, &window, [&] { ++switches; });
    button(panes, "Leave Sample Data…")->click();
    EXPECT_EQ(switches, 1);
    panes.open(SettingsWindow::sync);
    EXPECT_TRUE(test::says(panes, HasSubstr("not synced while the sample college")));
    for (const char *text : {"Choose Folder…", "Remove Synced Settings"})
        EXPECT_FALSE(button(panes, text)->isEnabled()) << text;
}

/// On the teacher's own data.
struct ConnectionPaneTest : MainWindowTest {
    ConnectionPaneTest() : MainWindowTest(PreferenceMap{}) {}
};

TEST_F(ConnectionPaneTest, TheConnectionIsSavedTestedAndDeleted) {
    SettingsWindow &panes = window.settings();
    panes.open(SettingsWindow::connection);
    std::map<QString, QLineEdit *> fields;
    for (QLineEdit *field : panes.findChildren<QLineEdit *>())
        fields[field->accessibleName()] = field;
    QLineEdit *address = fields.at(QStringLiteral("Canvas address"));
    QLineEdit *token = fields.at(QStringLiteral("Access token"));
    EXPECT_EQ(token->echoMode(), QLineEdit::Password);
    address->setText(QStringLiteral("https://localhost:9"));
    token->setText(QStringLiteral("t"));
    int changes = 0;
    QObject::connect(&panes, &SettingsWindow::connectionDidChange, &panes, [&] { ++changes; });
    QPushButton *signOut = button(panes, "Sign Out");
    EXPECT_FALSE(signOut->isEnabled()) << "nothing is saved";
    button(panes, "Save")->click();
    EXPECT_TRUE(test::until([&] { return changes == 1 && signOut->isEnabled(); }));
    EXPECT_TRUE(token->text().isEmpty());
    EXPECT_EQ(token->placeholderText(), QStringLiteral("Token saved — leave blank to keep it"));
    EXPECT_EQ(defaults.value(preferences::canvasBaseURL), "https://localhost:9");
    const auto answer = [&](const char *text) {
        signOut->click();
        const std::unique_ptr<QMessageBox> question(panes.findChild<QMessageBox *>());
        ASSERT_NE(question, nullptr);
        button(*question, text)->click();
    };
    answer("Cancel");
    EXPECT_FALSE(core.secrets.secrets.empty());
    answer("Sign Out");
    EXPECT_TRUE(test::until([&] { return changes == 2 && address->text().isEmpty(); }));
    EXPECT_FALSE(signOut->isEnabled());
    EXPECT_TRUE(core.secrets.secrets.empty());
    EXPECT_TRUE(address->text().isEmpty());

    // A token that cannot be deleted is said to be still there.
    core.connectTo("https://localhost:9");
    EXPECT_TRUE(test::until([&] { return signOut->isEnabled(); })) << "saved elsewhere";
    core.secrets.failure = KeychainError(KeychainError::locked, "locked");
    answer("Sign Out");
    const auto says = [&](const char *text) {
        return test::until([&] { return test::says(panes, HasSubstr(text)); });
    };
    EXPECT_TRUE(says("It is still in your keyring"));
    EXPECT_EQ(defaults.value(preferences::canvasBaseURL), "");
    core.secrets.failure.reset();

    // Signing out stops a running test, whose outcome is not shown.
    core.connectTo("https://localhost:9");
    EXPECT_TRUE(says("A token is saved"));
    test::trustAuthority();
    test::FakeCanvas canvas;
    canvas.hold(QStringLiteral("/api/v1/users/self"));
    address->setText(QString::fromStdString(canvas.address()));
    token->setText(QStringLiteral("t"));
    button(panes, "Test Connection")->click();
    ASSERT_TRUE(test::until([&] { return !canvas.requests.empty(); }));
    answer("Sign Out");
    canvas.release();
    EXPECT_TRUE(test::until([&] { return core.session.requestLimiter().inFlight() == 0; }));
    EXPECT_TRUE(says("No token saved yet"));
    EXPECT_TRUE(button(panes, "Test Connection")->isEnabled());

    panes.close();
    core.secrets.failure = KeychainError(KeychainError::locked, "locked");
    defaults.set(preferences::canvasBaseURL, std::string("https://localhost:9"));
    panes.open(SettingsWindow::connection);
    EXPECT_TRUE(test::until([&] { return !token->isEnabled() && !controller.isLoading(); }));
}

using SyncPaneTest = test::WindowTest;

TEST_F(SyncPaneTest, AsksBeforeItTakesTheOtherComputersSettings) {
    const auto folder = core.folder.path() / "cloud";
    folderContents::create(folder);
    core.defaults.update({{"SyncSettingsViaICloud", true}, {"CloudStoreFolder", folder.string()}});
    SyncService service{core.defaults, core.trends, core.folder.path() / "Synced.json"};
    SyncPane pane(core.defaults, service, appearance);
    pane.show();
    ASSERT_TRUE(test::until([&] { return service.status().starts_with("In step"); }));
    button(pane, "Remove Synced Settings")->click();
    const auto *box = pane.findChild<QMessageBox *>();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->informativeText().contains(QStringLiteral("lose theirs")));
    EXPECT_TRUE(core.defaults.value(preferences::syncSettings)) << "nothing happens before";
    ASSERT_EQ(box->buttons().front()->text(), QStringLiteral("Remove Synced Settings"));
    box->buttons().front()->click();
    EXPECT_TRUE(test::until([&] { return service.status().starts_with("Removed"); }));
    EXPECT_FALSE(pane.findChild<QCheckBox *>()->isChecked());
}

} // namespace
} // namespace ellwynd
