#include "ui/settings/settingswindow.h"

#include "app/shell/stores.h"
#include "ui/settings/connectionpane.h"
#include "ui/settings/generalpane.h"
#include "ui/settings/messagespane.h"
#include "ui/settings/notificationspane.h"
#include "ui/settings/privacypane.h"
#include "ui/settings/syncpane.h"
#include "ui/settings/thresholdspane.h"
#include "ui/settings/widgetspane.h"
#include "ui/support/announce.h"
#include "ui/support/appearance.h"
#include "ui/support/statusnotes.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QStackedWidget>

namespace ellwynd {

SettingsWindow::SettingsWindow(
    UserDefaults &defaults, Stores &stores, UndoStack &undo, ConnectionCheck &check,
    SyncService &syncService, UserNotifications &notifications, PreviewSource previewStudent,
    const RosterCache &rosters, const Appearance &appearance, QWidget *parent)
    : QDialog(parent),
      appearance(appearance),
      pages(new QListWidget(this)),
      panes(new QStackedWidget(this)),
      generalPane(new GeneralPane(defaults, appearance)),
      connectionPane(new ConnectionPane(defaults, check, appearance)),
      thresholdsPane(new ThresholdsPane(defaults, undo, rosters, appearance)),
      messagesPane(new MessagesPane(
          defaults, stores.templates, undo, std::move(previewStudent), appearance)) {
    setWindowTitle(QStringLiteral("Settings"));
    pages->setObjectName(QStringLiteral("settingsPages"));
    pages->setAccessibleName(QStringLiteral("Settings pages"));
    pages->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(pages);
    row->addWidget(panes, 1);
    connect(pages, &QListWidget::currentRowChanged, panes, &QStackedWidget::setCurrentIndex);

    addPage(QStringLiteral("General"), generalPane);
    addPage(QStringLiteral("Connection"), connectionPane);
    addPage(QStringLiteral("Risk Thresholds"), thresholdsPane);
    addPage(QStringLiteral("Messages"), messagesPane);
    addPage(
        QStringLiteral("Notifications"),
        new NotificationsPane(defaults, notifications, appearance));
    addPage(QStringLiteral("Widgets"), new WidgetsPane(defaults, appearance));
    addPage(QStringLiteral("Privacy"), new PrivacyPane(defaults, stores, undo, appearance));
    addPage(QStringLiteral("Sync"), new SyncPane(defaults, syncService, appearance));
    pages->setCurrentRow(general);
    new StatusNotes(*panes, undo, appearance, [this] { return isActiveWindow(); });
    // A focused text field handles the key itself.
    connect(
        new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, &undo, &UndoStack::undo);
    connect(
        connectionPane, &ConnectionPane::connectionDidChange, this,
        &SettingsWindow::connectionDidChange);
    connect(
        connectionPane, &ConnectionPane::leaveSampleRequested, this,
        &SettingsWindow::leaveSampleRequested);
    connect(
        connectionPane, &ConnectionPane::announcementRequested, this,
        [this](const QString &text) { announce(*this, text); });
    connect(&appearance, &Appearance::appearanceDidChange, this, &SettingsWindow::applyAppearance);
    applyAppearance();
    const QSize maxSize = screen()->availableSize() * 9 / 10;
    resize(QSize(appearance.px(880), appearance.px(640)).boundedTo(maxSize));
}

void SettingsWindow::setUpdateChecksAvailable(bool available) {
    generalPane->setUpdateChecksAvailable(available);
}

void SettingsWindow::refreshPreview() {
    messagesPane->refreshPreview();
}

void SettingsWindow::showThresholdEffect() {
    thresholdsPane->showEffect();
}

void SettingsWindow::addPage(const QString &title, QWidget *pane) {
    auto *scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    pane->setObjectName(QStringLiteral("plain"));
    scroll->setWidget(pane);
    scroll->setAccessibleName(title);
    pages->addItem(title);
    panes->addWidget(scroll);
}

void SettingsWindow::applyAppearance() {
    const QFontMetrics metrics(appearance.font());
    int maxWidth = 0;
    for (int i = 0; i < pages->count(); ++i) {
        maxWidth = std::max(maxWidth, metrics.horizontalAdvance(pages->item(i)->text()));
        pages->item(i)->setSizeHint({0, appearance.px(32)});
    }
    pages->setFixedWidth(maxWidth + appearance.px(44));
}

void SettingsWindow::open(Page page) {
    pages->setCurrentRow(page);
    if (!isVisible())
        connectionPane->reload();
    show();
    raise();
    activateWindow();
}

} // namespace ellwynd
