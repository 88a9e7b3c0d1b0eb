#include "ui/roster/rosterdesktopactions.h"

#include "app/messages/messagetexts.h"
#include "app/roster/rosteractions.h"
#include "outputs/messages/templatestore.h"
#include "ui/support/alert.h"
#include "ui/support/messageclipboard.h"
#include "ui/support/savepanel.h"
#include "uikit/convert.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QUrl>

namespace ellwynd {

RosterDesktopActions::RosterDesktopActions(
    RosterActions &actions, const TemplateStore &templates, UserDefaults &defaults,
    Selected selected, QWidget &window)
    : QObject(&window),
      actions(actions),
      templates(templates),
      defaults(defaults),
      selected(std::move(selected)),
      window(window) {
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
    QFileDialog *panel = savePanel(
        {.title = csv ? QStringLiteral("Export Roster as CSV")
                      : QStringLiteral("Export Roster as Markdown"),
         .type = csv ? QStringLiteral("text/csv") : QStringLiteral("text/markdown"),
         .suffix = csv ? QStringLiteral("csv") : QStringLiteral("md"),
         .fileName = roster.fileName},
        defaults, window);
    connect(panel, &QFileDialog::fileSelected, this, [this, roster](const QString &file) {
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
