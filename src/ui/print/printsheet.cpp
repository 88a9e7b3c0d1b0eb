#include "ui/print/printsheet.h"

#include "base/files.h"
#include "base/log.h"
#include "outputs/export/rosterexport.h"
#include "ui/support/announce.h"
#include "ui/support/appearance.h"
#include "ui/support/savepanel.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QButtonGroup>
#include <QFileDialog>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace ellwynd {

namespace {

constexpr Log exports{"export"};

} // namespace

PrintSheet::PrintSheet(
    std::vector<Choice> choices, UserDefaults &defaults, const Appearance &appearance,
    QWidget *parent, QueueState queueState)
    : Sheet(QStringLiteral("Print"), QStringLiteral("Print"), appearance, parent),
      choices(std::move(choices)),
      defaults(defaults),
      queueState(std::move(queueState)),
      group(new QButtonGroup(this)),
      problem(plainLabel(this, true)) {
    for (const Choice &choice : this->choices) {
        auto *button = new QRadioButton(menuText(choice.title.toStdString()), this);
        group->addButton(button, int(group->buttons().size()));
        column().addWidget(button);
    }
    group->button(0)->setChecked(true);
    auto *note = secondaryLabel(
        this, QStringLiteral("Pages contain names and grades. Treat them like your grade book."));
    note->setMinimumWidth(appearance.px(380));
    column().addWidget(note);
    problem->setProperty("attention", true);
    problem->hide();
    column().addWidget(problem);
    auto *cancel = new QPushButton(QStringLiteral("Cancel"), this);
    auto *savePDFButton = new QPushButton(QStringLiteral("Save as PDF…"), this);
    auto *printButton = new QPushButton(QStringLiteral("Print…"), this);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (QPushButton *button : {cancel, savePDFButton, printButton}) {
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    printButton->setDefault(true);
    column().addSpacing(appearance.px(8));
    column().addLayout(buttons);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(savePDFButton, &QPushButton::clicked, this, &PrintSheet::savePDF);
    connect(printButton, &QPushButton::clicked, this, &PrintSheet::print);
    group->button(0)->setFocus();
}

PrintSheet::~PrintSheet() = default;

const PrintedDocument &PrintSheet::chosen() const {
    return choices[std::size_t(group->checkedId())].document;
}

void PrintSheet::showProblem(const QString &text) {
    problem->setText(text);
    problem->show();
    announce(*this, text);
}

void PrintSheet::print() {
    if (QPrinterInfo::availablePrinters().isEmpty())
        return showProblem(
            QStringLiteral("No printer was found. Save a PDF, and print it elsewhere."));
    printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer->setDocName(qstring(titleOf(chosen())));
    auto *dialog = new QPrintDialog(printer.get(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QAbstractPrintDialog::PrintToFile, false);
    connect(dialog, &QDialog::accepted, this, [this] { printOn(*printer); });
    dialog->open();
}

void PrintSheet::printOn(QPrinter &on) {
    switch (queueState(on.printerName().toStdString())) {
    case PrintQueueState::accepting:
        break;
    case PrintQueueState::refusing:
        return showProblem(
            QStringLiteral(
                "“%1” takes no jobs at the moment. Choose another printer, or save a PDF.")
                .arg(on.printerName()));
    case PrintQueueState::unreachable:
        return showProblem(
            QStringLiteral("The print service does not answer. Try again later, or save a PDF."));
    }
    if (!printPages(on, chosen()) || on.printerState() == QPrinter::Error)
        return showProblem(
            QStringLiteral("The printer could not be used. Check that it is on, or save a PDF."));
    Q_EMIT noteRequested(QStringLiteral("Sent to the printer."));
    accept();
}

void PrintSheet::savePDF() {
    QFileDialog *panel = savePanel(
        {.title = QStringLiteral("Save as PDF"),
         .type = QStringLiteral("application/pdf"),
         .suffix = QStringLiteral("pdf"),
         .fileName = exportFileName("pdf", titleOf(chosen()), systemNow())},
        defaults, *this);
    connect(panel, &QFileDialog::fileSelected, this, [this](const QString &file) {
        save(std::filesystem::path(file.toStdString()));
    });
    panel->open();
}

void PrintSheet::save(const std::filesystem::path &path) {
    const QByteArray file = pdf(chosen());
    try {
        files::replaceForTeacher(path, {file.data(), std::size_t(file.size())});
    } catch (const FileError &error) {
        // The file's name may be a student's.
        exports.error("A PDF could not be saved");
        return showProblem(QStringLiteral("The PDF couldn’t be written: ") + qstring(error.what()));
    }
    const std::string name = path.filename().string();
    exports.info("Saved a PDF");
    Q_EMIT noteRequested(QStringLiteral("Saved %1.").arg(qstring(name)));
    accept();
}

} // namespace ellwynd
