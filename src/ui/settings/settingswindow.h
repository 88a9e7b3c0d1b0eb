// The settings window.
#pragma once

#include "preferences/userdefaults.h"
#include "ui/settings/templateeditor.h"
#include "ui/settings/thresholdspane.h"

#include <QDialog>

class QListWidget;
class QStackedWidget;

namespace ellwynd {

class Appearance;
class ConnectionCheck;
class ConnectionPane;
class GeneralPane;
class MessagesPane;
class SyncService;
class UndoStack;
class UserNotifications;
struct Stores;

/// A list of panes with the chosen one beside it. Every change takes effect at once.
class SettingsWindow : public QDialog {
    Q_OBJECT

  public:
    enum Page {
        general,
        connection,
        riskThresholds,
        messages,
        notifications,
        widgets,
        privacy,
        sync,
    };

    SettingsWindow(
        UserDefaults &defaults, Stores &stores, UndoStack &undo, ConnectionCheck &check,
        SyncService &syncService, UserNotifications &notifications, PreviewSource previewStudent,
        const RosterCache &rosters, const Appearance &appearance, QWidget *parent = nullptr);

    using QDialog::open;
    void open(Page page);
    /// Whether this build checks for updates, so that the setting is shown.
    void setUpdateChecksAvailable(bool available);
    /// Call when the student of the message preview may have changed.
    void refreshPreview();
    /// Call when all courses were scored again.
    void showThresholdEffect();

  Q_SIGNALS:
    /// An address or a token was saved, or the teacher signed out.
    void connectionDidChange();
    /// The teacher wants to leave the sample college.
    void leaveSampleRequested();

  private:
    void addPage(const QString &title, QWidget *pane);
    void applyAppearance();

    const Appearance &appearance;
    QListWidget *pages;
    QStackedWidget *panes;
    GeneralPane *generalPane;
    ConnectionPane *connectionPane;
    ThresholdsPane *thresholdsPane;
    MessagesPane *messagesPane;
};

} // namespace ellwynd
