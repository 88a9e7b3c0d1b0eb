// Saves PNG screenshots of every window on the sample college, light and dark.
#include "app/mainwindowcontroller.h"
#include "canvas/connectioncheck.h"
#include "pictures.h"
#include "support/loneservice.h"
#include "support/programfolder.h"
#include "support/temporaryfolder.h"
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
#include "ui/support/appearance.h"
#include "ui/welcome/welcomewindow.h"
#include "ui/write/writesheet.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>

#include <fmt/format.h>

#include <cstdio>

namespace {

using namespace ellwynd;

/// Courses of the sample college; the first has 26 students with every kind of reason.
constexpr std::int64_t introToProgramming = 900101;
constexpr std::int64_t webInterfaceDesign = 900102;

/// A program in a folder of its own, with its window shown.
struct Program {
    test::TemporaryFolder folder;
    test::LoneService service;
    Application application;

    explicit Program(PreferenceMap arguments)
        : application(test::environmentIn(folder.path(), std::move(arguments)), service) {
        application.window().resize(1280, 800);
        application.window().show();
        application.controller().refresh();
    }
};

class Screenshots {
  public:
    explicit Screenshots(Pictures &pictures) : pictures(pictures) {}

    void draw(const char *appearanceName, double scale) {
        // Appearance derives its font sizes from the application's font.
        QApplication::setFont(font);
        pictures.begin(appearanceName, scale);
        Program program(
            {{"SampleData", true}, {"Appearance", appearanceName}, {"TextScale", scale}});
        UserDefaults &defaults = program.application.defaults();
        Appearance &appearance = program.application.appearance();
        MainWindowController &controller = program.application.controller();
        MainWindow &window = program.application.window();
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
            writeSetting(defaults, "Course.900101.PassingScore", 60.0);
            saveAndClose(sheet, "thresholds");
            controller.undoStack().undo();
        }
        trigger(window, "Look Back…");
        saveAndClose(window.findChild<LookBackSheet *>(), "look-back");
        drawCourseSheets(defaults, window);
        defaults.set(preferences::rosterCompactRows, true);
        pictures.save(window, "compact");
        defaults.set(preferences::rosterCompactRows, false);
        drawWidths(window);

        controller.select(CourseSelection{webInterfaceDesign});
        settle();
        saveAndClose(window.openMissingWork(), "missing-work");
        settle();
        drawPieces(pictures, defaults, appearance);
        SettingsWindow &settings = window.settings();
        settings.resize(appearance.px(880), appearance.px(640));
        int page = SettingsWindow::general;
        for (const std::string name :
             {"general", "connection", "thresholds", "messages", "notifications", "widgets",
              "privacy", "sync"}) {
            settings.open(SettingsWindow::Page(page++));
            pictures.save(settings, "settings-" + name);
        }
        settings.open(SettingsWindow::privacy);
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
        QApplication::setFont(font);
        Program program(
            {{"Onboarding.step", std::int64_t{WelcomeWindow::finished}},
             {"Appearance", appearanceName},
             {"TextScale", scale}});
        MainWindow &window = program.application.window();
        pictures.save(window, "not-connected");
        QMessageBox *alert = plainAlert(
            &window, QStringLiteral("Couldn’t open your email app"),
            QStringLiteral("Write to the address on the page of your institution."));
        alert->addButton(QStringLiteral("OK"), QMessageBox::RejectRole);
        alert->open();
        saveAndClose(alert, "alert");
    }

  private:
    void saveAndClose(QWidget *sheet, const char *name) {
        if (sheet == nullptr)
            return;
        pictures.save(*sheet, name);
        sheet->close();
    }

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
        trigger(window, "Find…");
        auto *panel = window.findChild<FindPanel *>();
        auto *field = panel->findChild<QLineEdit *>();
        pictures.save(window, "find-blank");
        field->setText(QStringLiteral("ch"));
        pictures.save(window, "find");
        field->setText(QStringLiteral("nobody"));
        pictures.save(window, "find-nobody");
        panel->open(FindIndex(unusualNames()));
        field->setText(QStringLiteral("b"));
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
            pictures.save(*title->menu(), "undo-menu-" + name.toLower().toStdString());
            title->menu()->close();
        }
        controller.undoStack().undo();
    }

    /// The Write sheet over a small window, beside a browser, and at its end.
    void drawWrite(UserDefaults &defaults, MainWindow &window) {
        window.resize(900, 600);
        settle();
        const auto &rows = window.roster()->table()->roster().rows();
        std::vector<RiskRow> students(rows.begin(), rows.begin() + 12);
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
        trigger(window, "Print…");
        saveAndClose(window.findChild<PrintSheet *>(), "print");
        RosterView roster = controller.roster();
        const RiskRow student = window.roster()->table()->selectedRows().front();
        pictures.savePDF(
            pdf(printedStudent(student, controller.studentHistory(student), systemNow())),
            "print-student");
        std::vector<RiskRow> rows(roster.rows.begin(), roster.rows.end());
        while (rows.size() < 500)
            rows.push_back(rows[rows.size() % 26]);
        rows[3].name = "Wolfeschlegelsteinhausenbergerdorff " + std::string(80, 'W');
        roster.rows = std::move(rows);
        pictures.savePDF(pdf(printedRoster(roster, false, systemNow())), "print-roster");
    }

    void drawCourseSheets(UserDefaults &defaults, MainWindow &window) {
        writeSetting(defaults, "Course.900101.Icon", std::string("code"));
        writeSetting(defaults, "Course.900102.Icon", std::string("palette"));
        writeSetting(defaults, "Course.900102.IconColor", std::string("purple"));
        trigger(window, "Icon…");
        saveAndClose(window.findChild<IconSheet *>(), "icon");
        writeSetting(defaults, "Course.900301.PassingScore", 65.0);
        trigger(window, "Copy Course Setup…");
        saveAndClose(window.findChild<CopySetupSheet *>(), "copy-setup");
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
