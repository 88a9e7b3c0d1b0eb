#include "ui/settings/syncpane.h"

#include "app/sync/syncservice.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

namespace ellwynd {

SyncPane::SyncPane(UserDefaults &defaults, SyncService &service, const Appearance &appearance)
    : SettingsPane(QStringLiteral("Sync"), defaults, appearance),
      service(service),
      enabled(new QCheckBox(QStringLiteral("Sync settings between my computers"))),
      folder(new QLineEdit),
      remove(new QPushButton(QStringLiteral("Remove Synced Settings"))) {
    addNote(QStringLiteral(
        "Thresholds, appearance and the Canvas address are synced. Your token, students and grades "
        "never are."));
    addWidget(enabled);
    folder->setReadOnly(true);
    folder->setAccessibleName(QStringLiteral("Synced folder"));
    folder->setPlaceholderText(QStringLiteral("No folder chosen"));
    auto *choose = new QPushButton(QStringLiteral("Choose Folder…"));
    auto *line = new QWidget;
    auto *row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(folder, 1);
    row->addWidget(choose);
    addWidget(line);
    status = addNote({});
    remove->setToolTip(
        QStringLiteral("Delete the settings from the folder; this computer keeps its own"));
    remove->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    for (QPushButton *button : {choose, remove})
        button->setAutoDefault(false);
    addWidget(remove);

    connect(enabled, &QCheckBox::toggled, this, [this](bool on) {
        this->defaults.set(preferences::syncSettings, on);
    });
    connect(choose, &QPushButton::clicked, this, &SyncPane::chooseFolder);
    connect(remove, &QPushButton::clicked, this, [this] {
        this->service.removeSyncedSettings();
        status->setText(QStringLiteral("Removed the synced settings from the folder."));
    });
    connect(&service, &SyncService::statusDidChange, this, &SyncPane::showPreferences);
    SyncPane::showPreferences();
}

void SyncPane::chooseFolder() {
    const QString chosen = QFileDialog::getExistingDirectory(
        this, QStringLiteral("Choose a folder that your sync service synchronizes"));
    if (!chosen.isEmpty())
        defaults.set(
            preferences::cloudStoreFolder, (chosen + QStringLiteral("/Ellwynd")).toStdString());
}

void SyncPane::showPreferences() {
    const QSignalBlocker quiet(enabled);
    enabled->setChecked(defaults.value(preferences::syncSettings));
    folder->setText(qstring(defaults.value(preferences::cloudStoreFolder)));
    remove->setEnabled(service.canRemove());
    status->setText(qstring(service.status()));
}

} // namespace ellwynd
