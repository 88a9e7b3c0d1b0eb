#include "ui/settings/privacypane.h"

#include "app/shell/stores.h"
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

} // namespace

PrivacyPane::PrivacyPane(UserDefaults &defaults, Stores &stores, const Appearance &appearance)
    : SettingsPane(QStringLiteral("Privacy"), defaults, appearance),
      stores(stores),
      rememberHistory(
          new QCheckBox(QStringLiteral("Remember what Ellwynd said, to show what changed"))),
      historyLine(plainLabel(nullptr)),
      deleteHistory(new QPushButton(QStringLiteral("Delete This History"))),
      rememberContacts(new QCheckBox(QStringLiteral("Remember who I have written to"))),
      contactsLine(plainLabel(nullptr)),
      deleteContacts(new QPushButton(QStringLiteral("Delete This History"))) {
    deleteHistory->setAccessibleName(QStringLiteral("Delete the history of levels"));
    deleteContacts->setAccessibleName(QStringLiteral("Delete the history of contacts"));
    addNote(QStringLiteral(
        "Names, grades and submissions are never written to this computer's disk. Ids, levels and "
        "dates are kept for up to a year, so that Ellwynd can show what changed since your last "
        "visit."));
    addWidget(rememberHistory);
    addWidget(statusRow(historyLine, deleteHistory));
    addWidget(rememberContacts);
    addWidget(statusRow(contactsLine, deleteContacts));
    addNote(QStringLiteral("Switching one off deletes what it has recorded."));

    // The stores observe these preferences and delete their data themselves.
    connect(rememberHistory, &QCheckBox::toggled, this, [this](bool on) {
        this->defaults.set(preferences::rememberRosterHistory, on);
    });
    connect(rememberContacts, &QCheckBox::toggled, this, [this](bool on) {
        this->defaults.set(preferences::rememberContacts, on);
    });
    connect(
        deleteHistory, &QPushButton::clicked, this, [this] { this->stores.history.deleteAll(); });
    connect(
        deleteContacts, &QPushButton::clicked, this, [this] { this->stores.contacts.deleteAll(); });
    connect(&stores.history, &RosterHistory::historyDidChange, this, &PrivacyPane::showPreferences);
    connect(&stores.contacts, &ContactLog::contactsDidChange, this, &PrivacyPane::showPreferences);
    PrivacyPane::showPreferences();
}

void PrivacyPane::showPreferences() {
    const QSignalBlocker quiet[] = {
        QSignalBlocker(rememberHistory), QSignalBlocker(rememberContacts)};
    rememberHistory->setChecked(stores.history.isEnabled());
    historyLine->setText(qstring(historyStatus(stores.history)));
    deleteHistory->setEnabled(!stores.history.entries().empty());
    rememberContacts->setChecked(stores.contacts.isEnabled());
    contactsLine->setText(qstring(contactsStatus(stores.contacts)));
    deleteContacts->setEnabled(!stores.contacts.records().empty());
}

} // namespace ellwynd
