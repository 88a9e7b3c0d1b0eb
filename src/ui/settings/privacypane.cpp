#include "ui/settings/privacypane.h"

#include "app/shell/privacytexts.h"
#include "app/shell/stores.h"
#include "app/undo/storeedits.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace ellwynd {

namespace {

/// A status line with the button that deletes what it describes.
QWidget *statusRow(QLabel *line, QPushButton *button) {
    auto *widget = new QWidget;
    auto *row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    line->setProperty("secondary", true);
    // Return in the window must not delete anything.
    button->setAutoDefault(false);
    row->addWidget(line);
    row->addStretch(1);
    row->addWidget(button);
    return widget;
}

void showRecorded(
    QLabel &line, QPushButton &button, const std::string &status, const std::string &contents) {
    line.setText(qstring(recordedLine(status, contents)));
    button.setEnabled(!contents.empty());
    button.setAccessibleName(
        qstring(deleteButtonName(button.text().toStdString(), status, contents)));
}

} // namespace

PrivacyPane::PrivacyPane(
    UserDefaults &defaults, Stores &stores, UndoStack &undo, const Appearance &appearance)
    : SettingsPane(QStringLiteral("Privacy"), defaults, appearance),
      stores(stores),
      rememberHistory(
          new QCheckBox(QStringLiteral("Remember what Ellwynd said, to show what changed"))),
      historyLine(plainLabel(nullptr)),
      deleteHistory(new QPushButton(QStringLiteral("Delete This History"))),
      rememberContacts(new QCheckBox(QStringLiteral("Remember who I have written to"))),
      contactsLine(plainLabel(nullptr)),
      deleteContacts(new QPushButton(QStringLiteral("Delete This History"))) {
    addNote(QStringLiteral(
        "Names, grades and submissions are never written to this computer’s disk. Ids, levels and "
        "dates are kept for up to a year, so that Ellwynd can show what changed since your last "
        "visit."));
    addWidget(rememberHistory);
    addWidget(statusRow(historyLine, deleteHistory));
    addWidget(rememberContacts);
    addWidget(statusRow(contactsLine, deleteContacts));
    addNote(QStringLiteral("Switching one off deletes what it has recorded."));

    // The stores observe these preferences and delete their data themselves.
    connect(rememberHistory, &QCheckBox::toggled, this, [this, &undo](bool on) {
        setRemembersLevels(this->defaults, this->stores.history, undo, on);
    });
    connect(rememberContacts, &QCheckBox::toggled, this, [this, &undo](bool on) {
        setRemembersContacts(this->defaults, this->stores.contacts, undo, on);
    });
    connect(deleteHistory, &QPushButton::clicked, this, [this, &undo] {
        ellwynd::deleteHistory(this->stores.history, undo);
    });
    connect(deleteContacts, &QPushButton::clicked, this, [this, &undo] {
        ellwynd::deleteContacts(this->stores.contacts, undo);
    });
    connect(&stores.history, &RosterHistory::historyDidChange, this, &PrivacyPane::showStores);
    connect(&stores.contacts, &ContactLog::contactsDidChange, this, &PrivacyPane::showStores);
    PrivacyPane::showPreferences();
}

void PrivacyPane::showEvent(QShowEvent *event) {
    SettingsPane::showEvent(event);
    showStores();
}

void PrivacyPane::showPreferences() {
    const QSignalBlocker quiet[] = {
        QSignalBlocker(rememberHistory), QSignalBlocker(rememberContacts)};
    rememberHistory->setChecked(stores.history.isEnabled());
    rememberContacts->setChecked(stores.contacts.isEnabled());
}

/// Counts what is recorded. That takes a while for a long history, so it is done only while shown.
void PrivacyPane::showStores() {
    if (!isVisible())
        return;
    showRecorded(
        *historyLine, *deleteHistory, historyStatus(stores.history),
        historyContents(stores.history));
    showRecorded(
        *contactsLine, *deleteContacts, contactsStatus(stores.contacts),
        contactsContents(stores.contacts));
}

} // namespace ellwynd
