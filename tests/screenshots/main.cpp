// Saves PNG screenshots of every window on the sample college, light and dark.
#include "app/mainwindowcontroller.h"
#include "application.h"
#include "base/files.h"
#include "canvas/connectioncheck.h"
#include "support/loneservice.h"
#include "support/memorynotifications.h"
#include "support/memorysecrets.h"
#include "ui/about/aboutwindow.h"
#include "ui/dashboard/dashboardpane.h"
#include "ui/dashboard/studentlist.h"
#include "ui/details/studentdetails.h"
#include "ui/details/termchart.h"
#include "ui/find/findpanel.h"
#include "ui/help/helpwindow.h"
#include "ui/mainwindow/mainwindow.h"
#include "ui/print/printsheet.h"
#include "ui/roster/insightband.h"
#include "ui/roster/rosterpane.h"
#include "ui/settings/settingswindow.h"
#include "ui/sheets/copysetupsheet.h"
#include "ui/sheets/iconsheet.h"
#include "ui/sheets/lookbacksheet.h"
#include "ui/sheets/missingworksheet.h"
#include "ui/sheets/thresholdssheet.h"
#include "ui/support/alert.h"
#include "ui/support/appearance.h"
#include "ui/welcome/welcomewindow.h"
#include "ui/write/writesheet.h"

#include <QApplication>
#include <QDir>
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

void settle() {
    for (int i = 0; i < 8; ++i)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
}

class Screenshots {
  public:
    explicit Screenshots(const QString &folder) : target(folder), font(QApplication::font()) {}

    void draw(const char *appearanceName, double scale) {
        const QTemporaryDir home;
        // Appearance derives its font sizes from the application's font.
        QApplication::setFont(font);
        const std::filesystem::path folder(home.path().toStdString());
        ApplicationEnvironment environment{
            .launchArguments =
                {{"SampleData", true},
                 {"Appearance", std::string(appearanceName)},
                 {"TextScale", scale}},
            .preferencesFile = folder / "Preferences.json",
            .data = folder,
            .state = folder,
            .widgetContainer = folder / "widgets",
            .secrets = std::make_unique<test::MemorySecrets>(),
            .notifications = std::make_unique<test::MemoryNotifications>()};
        test::LoneService service;
        Application program(std::move(environment), service);
        UserDefaults &defaults = program.defaults();
        Appearance &appearance = program.appearance();
        MainWindowController &controller = program.controller();
        MainWindow &window = program.window();
        suffix = QString::fromUtf8(appearanceName) +
            (scale == 1.0 ? QString() : QStringLiteral("-x%1").arg(scale));
        window.resize(1280, 800);
        window.show();
        controller.refresh();
        settle();
        save(window, "dashboard");
        drawDashboard(window);
        controller.select(TermSelection{9001});
        settle();
        save(window, "term");

        controller.select(CourseSelection{introToProgramming});
        settle();
        window.roster()->table()->selectStudents({{introToProgramming, 5001}});
        settle();
        save(window, "roster");
        drawFind(window);
        drawUndo(controller, window);
        drawWrite(defaults, window);
        drawPrint(controller, window);
        if (auto *sheet = window.openThresholds()) {
            writeSetting(
                defaults, courseSettings::key(introToProgramming, courseSettings::passingScore),
                60.0);
            settle();
            save(*sheet, "thresholds");
            sheet->close();
            controller.undoStack().undo();
        }
        for (QAction *command : window.findChildren<QAction *>()) {
            if (command->text() == QStringLiteral("&Look Back…"))
                command->trigger();
        }
        settle();
        if (auto *sheet = window.findChild<LookBackSheet *>()) {
            save(*sheet, "look-back");
            sheet->close();
        }
        drawCourseSheets(defaults, controller, appearance, window);
        defaults.set(preferences::rosterCompactRows, true);
        settle();
        save(window, "compact");
        defaults.set(preferences::rosterCompactRows, false);
        drawWidths(window);

        controller.select(CourseSelection{webInterfaceDesign});
        settle();
        if (auto *sheet = window.openMissingWork()) {
            settle();
            save(*sheet, "missing-work");
            sheet->close();
        }
        settle();
        drawTermWithGaps(appearance);
        drawExplained(appearance);
        drawCoverage(appearance);
        drawLargeRoster(appearance);
        for (const int courses : {0, 1, 12, 40})
            drawCards(defaults, appearance, courses);
        SettingsWindow &settings = window.settings();
        settings.resize(appearance.px(880), appearance.px(640));
        settings.open(SettingsWindow::general);
        settle();
        save(settings, "settings-general");
        settings.open(SettingsWindow::connection);
        settle();
        save(settings, "settings-connection");
        settings.open(SettingsWindow::riskThresholds);
        settle();
        save(settings, "settings-thresholds");
        settings.open(SettingsWindow::messages);
        settle();
        save(settings, "settings-messages");
        settings.open(SettingsWindow::notifications);
        settle();
        save(settings, "settings-notifications");
        settings.open(SettingsWindow::widgets);
        settle();
        save(settings, "settings-widgets");
        settings.open(SettingsWindow::privacy);
        settle();
        save(settings, "settings-privacy");
        for (auto *button : settings.findChildren<QPushButton *>()) {
            if (button->text() == QStringLiteral("Delete This History"))
                button->click();
        }
        settle();
        save(settings, "settings-privacy-deleted");
        settings.open(SettingsWindow::sync);
        settle();
        save(settings, "settings-sync");

        HelpWindow help(defaults, appearance, {});
        help.showTopic("signals");
        settle();
        save(help, "help");
        help.findChild<QLineEdit *>()->setText(QStringLiteral("missing work"));
        settle();
        save(help, "help-search");
        AboutWindow about(appearance);
        about.show();
        settle();
        save(about, "about");
        drawWelcome(defaults, controller, appearance);
    }

    /// A dashboard with that many courses, some with very long names.
    void drawCards(UserDefaults &defaults, const Appearance &appearance, int courses) {
        Dashboard dashboard(defaults);
        DashboardTerm term{.id = 1, .title = "Fall"};
        for (int i = 0; i < courses; ++i) {
            const bool isLong = i % 3 == 1;
            term.cards.push_back(
                {.courseID = i + 1,
                 .name = isLong ? "An Introduction to the Comparative History of Long and "
                                  "Winding Course Names, Section 4021 of Many"
                                : "CS " + std::to_string(100 + i),
                 .label =
                     {.name = isLong ? "An Introduction to the Comparative History of Long and "
                                       "Winding Course Names, Section 4021 of Many"
                                     : "Computing",
                      .code = "CS " + std::to_string(100 + i)},
                 .levels =
                     i % 4 == 0 ? LevelCounts{} : LevelCounts{i * 7 % 120, i * 5 % 90, i * 3 % 60},
                 .total = 300,
                 .slipped = i % 5,
                 .improved = i % 3,
                 .awaitingFollowUp = i % 2,
                 .trend = {3, 3, i % 7, 9, i % 5},
                 .mostMissed =
                     MostMissed{isLong ? term.title + std::string(90, 'x') : "Lab 1", i}});
        }
        std::vector<DashboardStudent> students;
        for (const RiskRow &row : unusualRows(courses == 0 ? 0 : courses == 40 ? 500 : 5))
            students.push_back(
                {.row = std::make_shared<const RiskRow>(row), .courseCode = "CS 101"});
        term.students = std::move(students);
        dashboard.prepareTerms({{.term = Term{.id = 1, .name = "Fall"}, .courses = {}}}, {});
        term.updatedAt = *parseInstant("2026-09-03T05:00:00Z");
        dashboard.termScored(std::move(term));
        DashboardPane pane(dashboard, defaults, appearance);
        pane.resize(1050, 760);
        pane.show();
        settle();
        save(pane, QByteArray("cards-" + QByteArray::number(courses)).constData());
    }

    /// Flagged students with names that are long, of other scripts, and like markup.
    static std::vector<RiskRow> unusualRows(int count) {
        const std::vector<const char *> names{
            "Bartholomew Featherstonehaugh-Cholmondeley de la Tour", "עידו כהן", "김 지수",
            "<b>Bob</b>", "Maximilian 😀 von und zu Hohenlohe-Langenburg"};
        std::vector<RiskRow> rows;
        for (int i = 0; i < count; ++i) {
            RiskRow row{
                .id = i + 1,
                .name = names[std::size_t(i) % names.size()],
                .level = allRiskLevels[std::size_t(i) % allRiskLevels.size()],
                .courseID = 1};
            row.reasonLines = {{.text = "3 of 8 assignments missing — 44% of the grade"}};
            rows.push_back(std::move(row));
        }
        return rows;
    }

    void drawLargeRoster(const Appearance &appearance) {
        RosterTable table(appearance);
        table.setRoster(
            {.state = RosterView::State::shown, .courseID = 1, .rows = unusualRows(500)}, {},
            *parseInstant("2026-09-03T05:00:00Z"));
        table.resize(734, 600);
        table.show();
        settle();
        save(table, "roster-500");
    }

    /// A term chart with a gap of 14 days, which is joined, and one of 15, which is not.
    void drawTermWithGaps(const Appearance &appearance) {
        using std::chrono::days;
        const Date first = *parseInstant("2026-09-03T05:00:00Z");
        TermChart chart(
            {.points =
                 {{first, RiskLevel::watch},
                  {first + days(14), RiskLevel::concern},
                  {first + days(29), RiskLevel::concern},
                  {first + days(31), RiskLevel::atRisk},
                  {first + days(36), std::nullopt}}},
            {.wroteAt = first + days(20), .levelDiffers = true, .level = RiskLevel::watch},
            appearance);
        chart.resize(chart.sizeHint() * 2);
        save(chart, "term-with-gaps");
    }

    /// The details of a new student whose score a rule has raised, and who is flagged elsewhere.
    void drawExplained(const Appearance &appearance) {
        RiskRow row{
            .id = 1,
            .name = "Robin",
            .courseName = "CS 101 - Computing",
            .score = 0.5,
            .floor = ScoreFloor::mostWorkMissing,
            .level = RiskLevel::atRisk,
            .currentScore = 74,
            .missingCount = 3};
        row.signals[Signal::missing] = 0.22;
        row.signals[Signal::pastDue] = 0.02;
        row.signals[Signal::grade] = 0;
        row.reasonLines = {{.text = "3 of 5 assignments missing"}};
        StudentDetails details(appearance);
        details.show(
            {row},
            {.isNew = true,
             .otherCourses = {
                 {.courseName = "Web Interface Design", .level = RiskLevel::concern}}});
        details.resize(appearance.px(272), 700);
        details.show();
        settle();
        save(details, "explained");
    }

    /// The whole course insight of a course that lacks some data.
    void drawCoverage(const Appearance &appearance) {
        InsightBand band(appearance);
        band.setInsight(
            {.sentences = {"At Risk: 4 now, up from 2 earlier."},
             .outreachLine = "Nobody is flagged.",
             .coverage = {
                 {.signal = Signal::missing, .counts = true},
                 {.signal = Signal::pastDue, .counts = true},
                 {.signal = Signal::time, .note = "Canvas reports no time in course."},
                 {.signal = Signal::grade, .counts = true},
                 {.signal = Signal::inactivity, .counts = true}}});
        for (const bool collapsed : {false, true}) {
            band.setCollapsed(collapsed);
            band.resize(700, band.sizeHint().height());
            band.show();
            settle();
            save(band, collapsed ? "coverage-line" : "coverage");
        }
    }

    /// The main window without a token, and an alert over it.
    void drawNotConnected(const char *appearanceName, double scale) {
        const QTemporaryDir home;
        QApplication::setFont(font);
        const std::filesystem::path folder(home.path().toStdString());
        test::LoneService service;
        Application program(
            {.launchArguments =
                 {{"Appearance", std::string(appearanceName)},
                  {"TextScale", scale},
                  {"Onboarding.step", std::int64_t{WelcomeWindow::finished}}},
             .preferencesFile = folder / "Preferences.json",
             .data = folder,
             .state = folder,
             .widgetContainer = folder / "widgets",
             .secrets = std::make_unique<test::MemorySecrets>(),
             .notifications = std::make_unique<test::MemoryNotifications>()},
            service);
        program.window().resize(1280, 800);
        program.window().show();
        program.controller().refresh();
        settle();
        save(program.window(), "not-connected");
        QMessageBox *alert = plainAlert(
            &program.window(), QStringLiteral("Couldn’t open your email app"),
            QStringLiteral("Write to the address on the page of your institution."));
        alert->addButton(QStringLiteral("OK"), QMessageBox::RejectRole);
        alert->open();
        settle();
        save(*alert, "alert");
        alert->close();
    }

    [[nodiscard]] bool failed() const { return anyFailed; }

  private:
    /// The dashboard with a focused student, with a filter, and in a small and a large window.
    void drawDashboard(MainWindow &window) {
        auto *list = window.findChild<StudentList *>();
        list->setFocus();
        list->setCurrentIndex(list->model()->index(2, 0));
        settle();
        save(window, "dashboard-student");
        window.resize(900, 600);
        settle();
        save(window, "dashboard-900");
        window.resize(2560, 1440);
        settle();
        save(window, "dashboard-2560");
        window.resize(1280, 800);
        list->setCurrentIndex({});
        settle();
    }

    /// The roster in a small and in a large window, with a filter and with several students.
    void drawWidths(MainWindow &window) {
        RosterTable &table = *window.roster()->table();
        window.resize(900, 600);
        settle();
        save(window, "roster-900");
        window.resize(2560, 1440);
        table.selectStudents({{introToProgramming, 5001}, {introToProgramming, 5003}});
        settle();
        save(window, "roster-2560");
        window.resize(1280, 800);
        table.setQuery(
            {.chip = RosterChip::everyone, .typed = "quiz", .sort = RosterSort::student});
        settle();
        save(window, "roster-filter");
        table.setQuery({.typed = "nobody"});
        settle();
        save(window, "roster-empty");
        table.setQuery({});
        settle();
    }

    /// The panel that finds anyone, with results, without any, and before anything is typed.
    void drawFind(MainWindow &window) {
        for (QAction *command : window.findChildren<QAction *>()) {
            if (command->shortcut() == QKeySequence(Qt::CTRL | Qt::Key_K))
                command->trigger();
        }
        auto *panel = window.findChild<FindPanel *>();
        settle();
        save(window, "find-blank");
        panel->findChild<QLineEdit *>()->setText(QStringLiteral("ch"));
        settle();
        save(window, "find");
        panel->findChild<QLineEdit *>()->setText(QStringLiteral("nobody"));
        settle();
        save(window, "find-nobody");
        panel->open(FindIndex(unusualNames()));
        panel->findChild<QLineEdit *>()->setText(QStringLiteral("b"));
        settle();
        save(window, "find-names");
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
        settle();
        save(window, "undo-note");
        for (QAction *title : window.menuBar()->actions()) {
            const QString name = title->text().remove(u'&');
            if (name != QStringLiteral("Edit") && name != QStringLiteral("Student"))
                continue;
            title->menu()->popup(window.mapToGlobal(QPoint(40, 40)));
            settle();
            save(*title->menu(), ("undo-menu-" + name.toLower().toUtf8()).constData());
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
        const auto press = [sheet](const QString &text) {
            for (auto *button : sheet->findChildren<QPushButton *>()) {
                if (button->text() == text)
                    button->click();
            }
            settle();
        };
        settle();
        press(QStringLiteral("Copy and Next"));
        press(QStringLiteral("Skip"));
        save(*sheet, "write");
        sheet->resize(
            sheet->fontMetrics().averageCharWidth() * 42, sheet->fontMetrics().height() * 30);
        settle();
        save(*sheet, "write-narrow");
        press(QStringLiteral("Copy All Together"));
        sheet->resize(560, 420);
        settle();
        save(*sheet, "write-end");
        press(QStringLiteral("Undo"));
        sheet->reject();
        settle();
        defaults.remove(preferences::writeWindowGeometry.name);
        window.resize(1280, 800);
        settle();
    }

    /// The Print sheet, and the PDFs of a roster and of a student.
    void drawPrint(MainWindowController &controller, MainWindow &window) {
        for (QAction *title : window.menuBar()->actions()) {
            for (QAction *command : title->menu()->actions()) {
                if (command->shortcut() == QKeySequence(QKeySequence::Print))
                    command->trigger();
            }
        }
        settle();
        if (auto *sheet = window.findChild<PrintSheet *>()) {
            save(*sheet, "print");
            sheet->reject();
        }
        RosterView roster = controller.roster();
        const RiskRow student = window.roster()->table()->selectedRows().front();
        savePDF(
            printedStudent(student, controller.studentHistory(student), systemNow()),
            "print-student");
        std::vector<RiskRow> rows(roster.rows.begin(), roster.rows.end());
        while (rows.size() < 500)
            rows.push_back(rows[rows.size() % 26]);
        rows[3].name = "Wolfeschlegelsteinhausenbergerdorff " + std::string(80, 'W');
        roster.rows = std::move(rows);
        savePDF(printedRoster(roster, false, systemNow()), "print-roster");
    }

    void savePDF(const PrintedDocument &document, const char *name) {
        QFile file(
            target.filePath(QStringLiteral("%1-%2.pdf").arg(QString::fromUtf8(name), suffix)));
        const bool written = file.open(QIODevice::WriteOnly) && file.write(pdf(document)) > 0;
        anyFailed = anyFailed || !written;
        fmt::print("{}\n", file.fileName().toStdString());
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
        settle();
        save(*icon, "icon");
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
        settle();
        save(*copy, "copy-setup");
        copy->reject();
        settle();
        save(window, "icons");
    }

    void drawWelcome(
        UserDefaults &defaults, MainWindowController &controller, const Appearance &appearance) {
        test::MemorySecrets secrets;
        AsyncTokenStore tokens(secrets.shared());
        CanvasSession session;
        ConnectionCheck check(defaults, tokens, session);
        auto *welcome = new WelcomeWindow(defaults, check, controller, appearance);
        welcome->show();
        settle();
        save(*welcome, "welcome-1");
        const auto press = [welcome](const QString &text) {
            for (auto *button : welcome->findChildren<QPushButton *>()) {
                if (button->text() == text)
                    button->click();
            }
            settle();
        };
        press(QStringLiteral("Continue"));
        welcome->findChild<QLineEdit *>()->setText(QStringLiteral("canvas.example.edu"));
        press(QStringLiteral("Connect"));
        save(*welcome, "welcome-2");
        welcome->close();
        settle();
    }

    void save(QWidget &widget, const char *name) {
        const QString file =
            target.filePath(QStringLiteral("%1-%2.png").arg(QString::fromUtf8(name), suffix));
        const bool written = widget.grab().save(file);
        anyFailed = anyFailed || !written;
        fmt::print("{}{}\n", written ? "" : "not written: ", file.toStdString());
    }

    QDir target;
    QFont font;
    QString suffix;
    bool anyFailed = false;
};

} // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    if (argc < 2) {
        fmt::print(stderr, "Usage: ellwynd-screenshots FOLDER [TEXT-SCALE]\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(folder);
    const double scale = argc > 2 ? QByteArray(argv[2]).toDouble() : 1.0;
    Screenshots screenshots(folder);
    for (const char *appearance : {"light", "dark"}) {
        screenshots.draw(appearance, scale);
        screenshots.drawNotConnected(appearance, scale);
    }
    return screenshots.failed() ? 1 : 0;
}
