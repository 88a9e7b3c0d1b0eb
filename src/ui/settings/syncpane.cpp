#include "ui/settings/syncpane.h"

#include "app/sync/syncservice.h"
#include "ui/support/alert.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>

namespace ellwynd {

SyncPane::SyncPane(UserDefaults &defaults, SyncService &service, const Appearance &appearance)
    : SettingsPane(QStringLiteral("Sync"), defaults, appearance),
      service(service),
      enabled(new QCheckBox(QStringLiteral("Sync settings between my computers"))),
      folder(new QLineEdit),
      choose(new QPushButton(QStringLiteral("Choose Folder…"))),
      remove(new QPushButton(QStringLiteral("Remove Synced Settings"))) {
    addNote(QStringLiteral(
        "Thresholds, appearance and the Canvas address are synced. Your token, students and grades "
        "never are."));
    addWidget(enabled);
    folder->setReadOnly(true);
    folder->setAccessibleName(QStringLiteral("Synced folder"));
    folder->setPlaceholderText(QStringLiteral("No folder chosen"));
    auto *line = new QWidget;
    auto *row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(folder, 1);
    row->addWidget(choose);
    addWidget(line);
    status = addNote({});
    remove->setToolTip(
        QStringLiteral("Delete the settings from the folder: your other computers lose theirs"));
    remove->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    for (QPushButton *button : {choose, remove})
        button->setAutoDefault(false);
    addWidget(remove);

    connect(enabled, &QCheckBox::toggled, this, [this](bool on) {
        this->defaults.set(preferences::syncSettings, on);
    });
    connect(choose, &QPushButton::clicked, this, &SyncPane::chooseFolder);
    connect(remove, &QPushButton::clicked, this, &SyncPane::confirmRemoval);
    connect(&service, &SyncService::statusDidChange, this, &SyncPane::showPreferences);
    SyncPane::showPreferences();
}

void SyncPane::chooseFolder() {
    const QString chosen = QFileDialog::getExistingDirectory(
        this, QStringLiteral("Choose a folder that your sync service synchronizes"));
    if (!chosen.isEmpty())
        service.chooseFolder(chosen.toStdString());
}

void SyncPane::confirmRemoval() {
    QMessageBox *box =
        plainAlert(this, QStringLiteral("Remove the synced settings?"), qstring(removalWarning()));
    auto *confirm = box->addButton(remove->text(), QMessageBox::AcceptRole);
    auto *cancel = box->addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
    box->setDefaultButton(cancel);
    connect(confirm, &QPushButton::clicked, &service, &SyncService::removeSyncedSettings);
    box->open();
}

void SyncPane::showPreferences() {
    const QSignalBlocker quiet(enabled);
    enabled->setChecked(defaults.value(preferences::syncSettings));
    // What is chosen in the sample college would be the sample's own setting.
    const bool isSample = defaults.value(preferences::sampleData);
    enabled->setEnabled(!isSample);
    choose->setEnabled(!isSample);
    folder->setText(qstring(defaults.value(preferences::cloudStoreFolder)));
    remove->setEnabled(service.canRemove());
    status->setText(qstring(service.status()));
}

} // namespace ellwynd
