#include "ui/roster/rosterdesktopactions.h"

#include "app/messages/messagetexts.h"
#include "app/roster/rosteractions.h"
#include "outputs/messages/templatestore.h"
#include "ui/support/alert.h"
#include "ui/support/messageclipboard.h"
#include "uikit/convert.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QStandardPaths>
#include <QUrl>

namespace ellwynd {

RosterDesktopActions::RosterDesktopActions(
    RosterActions &actions, const TemplateStore &templates, Selected selected, QWidget &window)
    : QObject(&window),
      actions(actions),
      templates(templates),
      selected(std::move(selected)),
      window(window),
      exportFolder(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)) {
    connect(&actions, &RosterActions::noteRequested, this, &RosterDesktopActions::noteRequested);
    connect(&actions, &RosterActions::exportDidEnd, this, [this](const QString &fileName) {
        Q_EMIT noteRequested(QStringLiteral("Saved %1.").arg(fileName));
    });
    connect(&actions, &RosterActions::exportDidFail, this, [this](const QString &why) {
        QMessageBox *box =
            plainAlert(&this->window, QStringLiteral("The export couldn’t be written"), why);
        box->addButton(QStringLiteral("OK"), QMessageBox::RejectRole);
        box->open();
    });
    const auto open = [this](const QString &url, const QString &page) {
        const bool opened = QDesktopServices::openUrl(QUrl(url));
        this->actions.pageDidOpen(page, opened);
        if (!opened)
            Q_EMIT noteRequested(QStringLiteral("Your browser could not be opened."));
    };
    connect(&actions, &RosterActions::openURLRequested, this, open);
    connect(&actions, &RosterActions::samplePageRequested, this, [this] {
        Q_EMIT noteRequested(
            QStringLiteral("The sample college is invented, so it has no pages in Canvas."));
    });
}

void RosterDesktopActions::exportRoster(ExportFormat format) {
    const bool csv = format == ExportFormat::csv;
    const RosterExport roster = actions.exported(format);
    auto *panel = new QFileDialog(
        &window,
        csv ? QStringLiteral("Export Roster as CSV") : QStringLiteral("Export Roster as Markdown"));
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setMimeTypeFilters({csv ? QStringLiteral("text/csv") : QStringLiteral("text/markdown")});
    panel->setDefaultSuffix(csv ? QStringLiteral("csv") : QStringLiteral("md"));
    panel->setDirectory(exportFolder);
    panel->selectFile(panelFileName(roster.fileName));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    connect(panel, &QFileDialog::fileSelected, this, [this, roster](const QString &file) {
        exportFolder = QFileInfo(file).path();
        actions.saveExport(roster, std::filesystem::path(file.toStdString()));
    });
    panel->open();
}

void RosterDesktopActions::fillCopyMenu(QMenu *menu) {
    menu->clear();
    for (const MessageTemplate &message : templates.templates()) {
        const QAction *action = menu->addAction(menuText(titleOf(message)));
        connect(action, &QAction::triggered, this, [this, message] {
            actions.copyMessages(message, selected(), [](const std::string &text) {
                return copyMessage(QString::fromStdString(text));
            });
        });
    }
    if (menu->isEmpty()) {
        const QAction *add = menu->addAction(qstring(messagetexts::noTemplates));
        connect(add, &QAction::triggered, this, &RosterDesktopActions::templatesRequested);
    }
}

} // namespace ellwynd
