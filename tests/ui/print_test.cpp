// Printing: the texts of the pages, read back with pdftotext, and the sheet.
#include "support/mainwindow.h"
#include "support/rosters.h"
#include "ui/print/printsheet.h"
#include "windowtexts.h"

#include <QFileDialog>
#include <QPdfWriter>
#include <QPrinter>
#include <QProcess>
#include <QRadioButton>

namespace ellwynd {
namespace {

using testing::AllOf;
using testing::HasSubstr;

/// The text of a PDF in reading order.
std::string textOf(const QByteArray &file) {
    QProcess reader;
    reader.start(QStringLiteral("pdftotext"), {QStringLiteral("-"), QStringLiteral("-")});
    EXPECT_TRUE(reader.waitForStarted()) << "pdftotext is not installed";
    reader.write(file);
    reader.closeWriteChannel();
    EXPECT_TRUE(reader.waitForFinished());
    EXPECT_EQ(reader.exitCode(), 0);
    // A text may be broken into lines anywhere between words.
    return QString::fromUtf8(reader.readAllStandardOutput()).simplified().toStdString();
}

/// Whether the parts occur in this order.
testing::AssertionResult inOrder(const std::string &text, const std::vector<std::string> &parts) {
    std::size_t at = 0;
    for (const std::string &part : parts) {
        const std::size_t found = text.find(part, at);
        if (found == std::string::npos)
            return testing::AssertionFailure()
                << part << " does not follow in: " << text.substr(at, 500);
        at = found + part.size();
    }
    return testing::AssertionSuccess();
}

PrintedRoster rosterOf(int students) {
    PrintedRoster roster{.title = "Bio <b>101</b>", .subtitle = "all students", .rows = {}};
    for (int i = 0; i < students; ++i) {
        const bool isLong = i % 7 == 3;
        roster.rows.push_back(
            {.name = "Student " + std::to_string(i) +
                 (isLong ? " " + std::string(90, 'W') + " & <i>Sons</i>" : ""),
             .level = i % 4 == 3 ? std::nullopt : std::optional(allRiskLevels[std::size_t(i % 4)]),
             .figures = std::to_string(1000 + i) + "% · B · 3 days ago",
             .reasons = "Reason of " + std::to_string(i) + (isLong ? std::string(300, 'w') : "")});
    }
    return roster;
}

TEST(PrintedPages, ARosterReadsRowByRow) {
    const std::string text = textOf(pdf(rosterOf(500)));
    std::vector<std::string> expected{"Bio <b>101</b>", "all students"};
    for (int i = 0; i < 500; ++i) {
        if (i % 4 != 3)
            expected.emplace_back(levelName(allRiskLevels[std::size_t(i % 4)]));
        expected.push_back("Student " + std::to_string(i));
        expected.push_back(std::to_string(1000 + i) + "% · B · 3 days ago");
        expected.push_back("Reason of " + std::to_string(i));
    }
    EXPECT_TRUE(inOrder(text, expected));
    EXPECT_THAT(text, AllOf(HasSubstr("Page 1 "), HasSubstr("Page 20 ")));
}

TEST(PrintedPages, AStudentHasWhatTheDetailsShow) {
    const Date first = *parseInstant("2026-09-03T05:00:00Z");
    const PrintedStudent student{
        .name = "李明 O'Neil",
        .subtitle = "Bio · printed 2026-09-24",
        .level = RiskLevel::concern,
        .change = "slipped from Watch to Concern",
        .figures = {{"Score", "Score", "41% F"}, {"Missing", "Missing", "61"}},
        .reasons =
            {{.text = "61 of 70 assignments missing",
              .assignments = std::vector<std::string>(61, "Lab")},
             {.text = "No recent activity", .assignments = {}}},
        .trend = TermTrend{{{first, RiskLevel::watch}, {first + std::chrono::days(9), {}}}},
        .story = {"Seen on 2 days."},
        .wroteAt = first,
        .outreach = "Wrote 9 days ago — still Concern"};
    const std::string text = textOf(pdf(student));
    EXPECT_TRUE(inOrder(
        text,
        {"李明 O'Neil", "printed 2026-09-24", "Concern", "slipped", "Score: 41% F · Missing: 61",
         "WHY", "61 of 70", "– Lab", "Page 1", "No recent activity", "THIS TERM", "Sep 3",
         "Seen on 2", "OUTREACH", "Wrote 9 days ago — still Concern", "Page 2"}));
}

TEST(PrintedPages, ADeviceThatCannotBeOpenedIsReported) {
    QPdfWriter writer(QStringLiteral("/nonexistent/file.pdf"));
    EXPECT_FALSE(printPages(writer, rosterOf(1)));
}

struct PrintSheetTest : test::MainWindowTest {
    PrintSheet *open(const std::set<StudentKey> &students) {
        openCourse(900101);
        table().selectStudents(students);
        action("Print…")->trigger();
        return window.findChild<PrintSheet *>();
    }
};

TEST_F(PrintSheetTest, APrinterThatCannotPrintIsReported) {
    const std::pair<PrintQueueState, const char *> rows[] = {
        {PrintQueueState::refusing, "takes no jobs at the moment"},
        {PrintQueueState::unreachable, "does not answer"},
        {PrintQueueState::accepting, ""}};
    for (const auto &[state, problem] : rows) {
        SCOPED_TRACE(problem);
        PrintSheet sheet(
            {{QStringLiteral("Whole roster"), rosterOf(1)}}, core.defaults, appearance, &window,
            [state = state](const std::string &) { return state; });
        sheet.show();
        QPrinter printer;
        const auto file = core.folder.path() / "printed.pdf";
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(QString::fromStdString(file.string()));
        sheet.printOn(printer);
        const bool isPrinted = state == PrintQueueState::accepting;
        EXPECT_EQ(sheet.isVisible(), !isPrinted);
        EXPECT_EQ(std::filesystem::exists(file), isPrinted);
        EXPECT_EQ(test::says(sheet, HasSubstr(problem)), !isPrinted);
        QCoreApplication::sendPostedEvents(&sheet, QEvent::LayoutRequest);
        for (const QLabel *label : sheet.findChildren<QLabel *>())
            EXPECT_GE(label->height(), label->heightForWidth(label->width()))
                << "cut: " << label->text().toStdString();
    }
}

TEST_F(PrintSheetTest, AChoiceIsSavedWhereTheTeacherSays) {
    EXPECT_FALSE(action("Print…")->isEnabled());
    PrintSheet *sheet = open({{900101, 5004}});
    ASSERT_NE(sheet, nullptr);
    std::vector<std::string> choices;
    for (const auto *choice : sheet->findChildren<QRadioButton *>())
        choices.push_back(choice->text().toStdString());
    const std::string name = table().selectedRows().front().name;
    EXPECT_THAT(
        choices, testing::ElementsAre("Flagged: 10 students", "Whole roster: 26 students", name));
    sheet->findChildren<QRadioButton *>().last()->click();
    button(*sheet, "Save as PDF…")->click();
    auto *panel = sheet->findChild<QFileDialog *>();
    ASSERT_NE(panel, nullptr);
    EXPECT_THAT(panel->selectedFiles().first().toStdString(), HasSubstr("/Ellwynd — " + name));
    core.folder.write("a file", "");
    const auto unwritable = core.folder.path() / "a file" / "x.pdf";
    Q_EMIT panel->fileSelected(QString::fromStdString(unwritable.string()));
    EXPECT_TRUE(sheet->isVisible()) << "nothing was written";
    const auto file = core.folder.path() / "student.pdf";
    Q_EMIT panel->fileSelected(QString::fromStdString(file.string()));
    EXPECT_EQ(note(), "Saved student.pdf.");
    EXPECT_FALSE(sheet->isVisible());
    const std::string text = textOf(QByteArray::fromStdString(core.folder.read("student.pdf")));
    EXPECT_TRUE(inOrder(text, {name, "WHY", "OUTREACH"}));
}

} // namespace
} // namespace ellwynd
