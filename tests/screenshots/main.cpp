// Saves PNG screenshots of every window on the sample college, light and dark.
#include "app/mainwindowcontroller.h"
#include "application.h"
#include "canvas/connectioncheck.h"
#include "pictures.h"
#include "support/loneservice.h"
#include "support/memorynotifications.h"
#include "support/memorysecrets.h"
#include "ui/about/aboutwindow.h"
#include "ui/dashboard/studentlist.h"
#include "ui/find/findpanel.h"
#include "ui/help/helpwindow.h"
#include "ui/mainwindow/mainwindow.h"
#include "ui/print/printsheet.h"
#include "ui/roster/rosterpane.h"
#include "ui/settings/settingswindow.h"
#include "ui/sheets/copysetupsheet.h"
#include "ui/sheets/iconsheet.h"
#include "ui/sheets/lookbacksheet.h"
#include "ui/sheets/missingworksheet.h"
#include "ui/sheets/thresholdssheet.h"
#include "ui/support/alert.h"
#include "ui/welcome/welcomewindow.h"
#include "ui/write/writesheet.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>

#include <fmt/format.h>

#include <cstdio>

namespace {

using namespace ellwynd;

/// Courses of the sample college; the first has 26 students with every kind of reason.
constexpr std::int64_t introToProgramming = 900101;
constexpr std::int64_t webInterfaceDesign = 900102;

/// A program in a folder of its own. @param arguments beside those of the appearance.
ApplicationEnvironment environmentIn(
    const QTemporaryDir &home, PreferenceMap arguments, const char *appearance, double scale) {
    const std::filesystem::path folder(home.path().toStdString());
    arguments["Appearance"] = std::string(appearance);
    arguments["TextScale"] = scale;
    return {
        .launchArguments = std::move(arguments),
        .preferencesFile = folder / "Preferences.json",
        .data = folder,
        .state = folder,
        .widgetContainer = folder / "widgets",
        .secrets = std::make_unique<test::MemorySecrets>(),
        .notifications = std::make_unique<test::MemoryNotifications>()};
}

class Screenshots {
  public:
    explicit Screenshots(Pictures &pictures) : pictures(pictures) {}

    void draw(const char *appearanceName, double scale) {
        const QTemporaryDir home;
        // Appearance derives its font sizes from the application's font.
        QApplication::setFont(font);
        pictures.begin(appearanceName, scale);
        test::LoneService service;
        Application program(
            environmentIn(home, {{"SampleData", true}}, appearanceName, scale), service);
        UserDefaults &defaults = program.defaults();
        Appearance &appearance = program.appearance();
        MainWindowController &controller = program.controller();
        MainWindow &window = program.window();
        window.resize(1280, 800);
        window.show();
        controller.refresh();
        pictures.save(window, "dashboard");
        drawDashboard(window);
        controller.select(TermSelection{9001});
        pictures.save(window, "term");

        controller.select(CourseSelection{introToProgramming});
        settle();
        window.roster()->table()->selectStudents({{introToProgramming, 5001}});
        pictures.save(window, "roster");
        drawFind(window);
        drawUndo(controller, window);
        drawWrite(defaults, window);
        drawPrint(controller, window);
        if (auto *sheet = window.openThresholds()) {
            writeSetting(
                defaults, courseSettings::key(introToProgramming, courseSettings::passingScore),
                60.0);
            pictures.save(*sheet, "thresholds");
            sheet->close();
            controller.undoStack().undo();
        }
        trigger(window, [](const QAction &command) {
            return command.text() == QStringLiteral("&Look Back…");
        });
        if (auto *sheet = window.findChild<LookBackSheet *>()) {
            pictures.save(*sheet, "look-back");
            sheet->close();
        }
        drawCourseSheets(defaults, controller, appearance, window);
        defaults.set(preferences::rosterCompactRows, true);
        pictures.save(window, "compact");
        defaults.set(preferences::rosterCompactRows, false);
        drawWidths(window);

        controller.select(CourseSelection{webInterfaceDesign});
        settle();
        if (auto *sheet = window.openMissingWork()) {
            pictures.save(*sheet, "missing-work");
            sheet->close();
        }
        settle();
        drawPieces(pictures, defaults, appearance);
        SettingsWindow &settings = window.settings();
        settings.resize(appearance.px(880), appearance.px(640));
        for (const auto &[page, name] :
             {std::pair{SettingsWindow::general, "settings-general"},
              std::pair{SettingsWindow::connection, "settings-connection"},
              std::pair{SettingsWindow::riskThresholds, "settings-thresholds"},
              std::pair{SettingsWindow::messages, "settings-messages"},
              std::pair{SettingsWindow::notifications, "settings-notifications"},
              std::pair{SettingsWindow::widgets, "settings-widgets"},
              std::pair{SettingsWindow::sync, "settings-sync"},
              std::pair{SettingsWindow::privacy, "settings-privacy"}}) {
            settings.open(page);
            pictures.save(settings, name);
        }
        press(settings, "Delete This History");
        pictures.save(settings, "settings-privacy-deleted");

        HelpWindow help(defaults, appearance, {});
        help.showTopic("signals");
        pictures.save(help, "help");
        help.findChild<QLineEdit *>()->setText(QStringLiteral("missing work"));
        pictures.save(help, "help-search");
        AboutWindow about(appearance);
        about.show();
        pictures.save(about, "about");
        drawWelcome(defaults, controller, appearance);
    }

    /// The main window without a token, and an alert over it.
    void drawNotConnected(const char *appearanceName, double scale) {
        const QTemporaryDir home;
        QApplication::setFont(font);
        test::LoneService service;
        Application program(
            environmentIn(
                home, {{"Onboarding.step", std::int64_t{WelcomeWindow::finished}}}, appearanceName,
                scale),
            service);
        program.window().resize(1280, 800);
        program.window().show();
        program.controller().refresh();
        pictures.save(program.window(), "not-connected");
        QMessageBox *alert = plainAlert(
            &program.window(), QStringLiteral("Couldn’t open your email app"),
            QStringLiteral("Write to the address on the page of your institution."));
        alert->addButton(QStringLiteral("OK"), QMessageBox::RejectRole);
        alert->open();
        pictures.save(*alert, "alert");
        alert->close();
    }

  private:
    /// The dashboard with a focused student, with a filter, and in a small and a large window.
    void drawDashboard(MainWindow &window) {
        auto *list = window.findChild<StudentList *>();
        list->setFocus();
        list->setCurrentIndex(list->model()->index(2, 0));
        pictures.save(window, "dashboard-student");
        window.resize(900, 600);
        pictures.save(window, "dashboard-900");
        window.resize(2560, 1440);
        pictures.save(window, "dashboard-2560");
        window.resize(1280, 800);
        list->setCurrentIndex({});
        settle();
    }

    /// The roster in a small and in a large window, with a filter and with several students.
    void drawWidths(MainWindow &window) {
        RosterTable &table = *window.roster()->table();
        window.resize(900, 600);
        pictures.save(window, "roster-900");
        window.resize(2560, 1440);
        table.selectStudents({{introToProgramming, 5001}, {introToProgramming, 5003}});
        pictures.save(window, "roster-2560");
        window.resize(1280, 800);
        table.setQuery(
            {.chip = RosterChip::everyone, .typed = "quiz", .sort = RosterSort::student});
        pictures.save(window, "roster-filter");
        table.setQuery({.typed = "nobody"});
        pictures.save(window, "roster-empty");
        table.setQuery({});
        settle();
    }

    /// The panel that finds anyone, with results, without any, and before anything is typed.
    void drawFind(MainWindow &window) {
        trigger(window, [](const QAction &command) {
            return command.shortcut() == QKeySequence(Qt::CTRL | Qt::Key_K);
        });
        auto *panel = window.findChild<FindPanel *>();
        pictures.save(window, "find-blank");
        panel->findChild<QLineEdit *>()->setText(QStringLiteral("ch"));
        pictures.save(window, "find");
        panel->findChild<QLineEdit *>()->setText(QStringLiteral("nobody"));
        pictures.save(window, "find-nobody");
        panel->open(FindIndex(unusualNames()));
        panel->findChild<QLineEdit *>()->setText(QStringLiteral("b"));
        pictures.save(window, "find-names");
        panel->dismiss();
    }

    /// Names that are long, in other directions and scripts, or look like markup.
    static std::vector<FindEntry> unusualNames() {
        std::vector<FindEntry> entries;
        for (const char *name :
             {"Bartholomew Featherstonehaugh-Cholmondeley de la Tour et Taxis von "
              "Hohenlohe-Langenburg",
              "עידו כהן", "عائشة Bint الزهراء", "山田太郎", "<b>Bob</b>", "Be\u0301la 😀", ""})
            entries.push_back(
                {.title = name,
                 .detail = "An Introduction to the Comparative History of Long and Winding Course "
                           "Names, Section 4021 of Many",
                 .level = RiskLevel::atRisk,
                 .id = std::int64_t(entries.size()),
                 .otherNames = {"b"}});
        return entries;
    }

    /// A note with an Undo button, and the menus of undoing and of contact marks.
    void drawUndo(MainWindowController &controller, MainWindow &window) {
        controller.actions().markContacted(window.roster()->table()->selectedRows());
        pictures.save(window, "undo-note");
        for (QAction *title : window.menuBar()->actions()) {
            const QString name = title->text().remove(u'&');
            if (name != QStringLiteral("Edit") && name != QStringLiteral("Student"))
                continue;
            title->menu()->popup(window.mapToGlobal(QPoint(40, 40)));
            pictures.save(*title->menu(), ("undo-menu-" + name.toLower().toUtf8()).constData());
            title->menu()->close();
        }
        controller.undoStack().undo();
    }

    /// The Write sheet over a small window, beside a browser, and at its end.
    void drawWrite(UserDefaults &defaults, MainWindow &window) {
        window.resize(900, 600);
        settle();
        std::vector<RiskRow> students;
        for (const RiskRow &row : window.roster()->table()->roster().rows()) {
            if (students.size() < 12)
                students.push_back(row);
        }
        students[2].name = "Wolfeschlegelsteinhausenbergerdorff, <b>Maria</b>\nTheodora";
        WriteSheet *sheet = window.openWriteSheet(students);
        settle();
        press(*sheet, "Copy and Next");
        press(*sheet, "Skip");
        pictures.save(*sheet, "write");
        sheet->resize(
            sheet->fontMetrics().averageCharWidth() * 42, sheet->fontMetrics().height() * 30);
        pictures.save(*sheet, "write-narrow");
        press(*sheet, "Copy All Together");
        sheet->resize(560, 420);
        pictures.save(*sheet, "write-end");
        press(*sheet, "Undo");
        sheet->reject();
        settle();
        defaults.remove(preferences::writeWindowGeometry.name);
        window.resize(1280, 800);
        settle();
    }

    /// The Print sheet, and the PDFs of a roster and of a student.
    void drawPrint(MainWindowController &controller, MainWindow &window) {
        trigger(window, [](const QAction &command) {
            return command.shortcut() == QKeySequence(QKeySequence::Print);
        });
        if (auto *sheet = window.findChild<PrintSheet *>()) {
            pictures.save(*sheet, "print");
            sheet->reject();
        }
        RosterView roster = controller.roster();
        const RiskRow student = window.roster()->table()->selectedRows().front();
        pictures.savePDF(
            printedStudent(student, controller.studentHistory(student), systemNow()),
            "print-student");
        std::vector<RiskRow> rows(roster.rows.begin(), roster.rows.end());
        while (rows.size() < 500)
            rows.push_back(rows[rows.size() % 26]);
        rows[3].name = "Wolfeschlegelsteinhausenbergerdorff " + std::string(80, 'W');
        roster.rows = std::move(rows);
        pictures.savePDF(printedRoster(roster, false, systemNow()), "print-roster");
    }

    void drawCourseSheets(
        UserDefaults &defaults, const MainWindowController &controller,
        const Appearance &appearance, MainWindow &window) {
        writeSetting(defaults, "Course.900101.Icon", std::string("code"));
        writeSetting(defaults, "Course.900102.Icon", std::string("palette"));
        writeSetting(defaults, "Course.900102.IconColor", std::string("purple"));
        auto *icon = new IconSheet(
            introToProgramming, controller.roster().title, defaults, appearance, &window);
        icon->show();
        pictures.save(*icon, "icon");
        icon->accept();

        std::vector<Course> courses;
        for (const TermGroup &group : controller.courses().sidebarTerms())
            courses.insert(courses.end(), group.courses.begin(), group.courses.end());
        for (const Course &course : courses) {
            if (course.term && course.term->id != courses.front().term->id)
                writeSetting(
                    defaults, courseSettings::key(course.id, courseSettings::passingScore), 65.0);
        }
        auto *copy = new CopySetupSheet(introToProgramming, courses, defaults, appearance, &window);
        copy->show();
        pictures.save(*copy, "copy-setup");
        copy->reject();
        pictures.save(window, "icons");
    }

    void drawWelcome(
        UserDefaults &defaults, MainWindowController &controller, const Appearance &appearance) {
        test::MemorySecrets secrets;
        AsyncTokenStore tokens(secrets.shared());
        CanvasSession session;
        ConnectionCheck check(defaults, tokens, session);
        auto *welcome = new WelcomeWindow(defaults, check, controller, appearance);
        welcome->show();
        pictures.save(*welcome, "welcome-1");
        press(*welcome, "Continue");
        welcome->findChild<QLineEdit *>()->setText(QStringLiteral("canvas.example.edu"));
        press(*welcome, "Connect");
        pictures.save(*welcome, "welcome-2");
        welcome->close();
        settle();
    }

    QFont font = QApplication::font();
    Pictures &pictures;
};

} // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    if (argc < 2) {
        fmt::print(stderr, "Usage: ellwynd-screenshots FOLDER [TEXT-SCALE]\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const double scale = argc > 2 ? QByteArray(argv[2]).toDouble() : 1.0;
    Pictures pictures(folder);
    Screenshots screenshots(pictures);
    for (const char *appearance : {"light", "dark"}) {
        screenshots.draw(appearance, scale);
        screenshots.drawNotConnected(appearance, scale);
    }
    return pictures.failed() ? 1 : 0;
}
