#include "ui/settings/generalpane.h"

#include "base/files.h"
#include "platform/folders/directories.h"
#include "platform/session/autostart.h"
#include "ui/support/alert.h"
#include "uikit/convert.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QSystemTrayIcon>

#include <cmath>

namespace ellwynd {

namespace {

/// A combo box of a preference's choices, capitalised.
QComboBox *choices(const PreferenceKey<std::string> &key) {
    auto *box = new QComboBox;
    for (const std::string_view choice : key.row->choices) {
        const QString word = qstring(choice);
        box->addItem(word.left(1).toUpper() + word.mid(1), word);
    }
    return box;
}

void choose(QComboBox &box, const std::string &value) {
    const QSignalBlocker quiet(box);
    box.setCurrentIndex(std::max(0, box.findData(qstring(value))));
}

autostart::Entry backgroundEntry() {
    return {
        .fileName = "com.varnok.Ellwynd.desktop",
        .name = "Ellwynd",
        .program = QApplication::applicationFilePath().toStdString(),
        .arguments = "-StartInBackground YES"};
}

constexpr double percent = 100;

int toPercent(double factor) {
    return int(std::lround(factor * percent));
}

} // namespace

GeneralPane::GeneralPane(UserDefaults &defaults, const Appearance &appearance)
    : SettingsPane(QStringLiteral("General"), defaults, appearance),
      appearanceChoice(choices(preferences::appearance)),
      accent(choices(preferences::accentTheme)),
      textSize(new QSpinBox),
      terms(new QSpinBox),
      compactRows(new QCheckBox(QStringLiteral("One line per student in the roster"))),
      keepRunning(new QCheckBox(QStringLiteral("Keep running when the window is closed"))),
      withSession(new QCheckBox(QStringLiteral("Start in the background when you log in"))),
      updates(new QCheckBox(QStringLiteral("Check for updates once a day"))) {
    const NumberRange &scale = preferences::textScale.row->range;
    textSize->setRange(toPercent(scale.minimum), toPercent(scale.maximum));
    textSize->setSingleStep(toPercent(scale.step));
    textSize->setSuffix(QStringLiteral(" %"));
    textSize->setKeyboardTracking(false);
    // A practical limit; the preference itself has none.
    constexpr int manyTerms = 99;
    terms->setRange(int(preferences::sidebarTermLimit.row->range.minimum), manyTerms);
    terms->setSpecialValueText(QStringLiteral("All"));
    terms->setAccessibleName(QStringLiteral("Terms in the sidebar, 0 for all"));
    addRow(QStringLiteral("Appearance"), appearanceChoice);
    addRow(QStringLiteral("Accent"), accent);
    addRow(QStringLiteral("Text size"), textSize);
    addRow(QStringLiteral("Terms in the sidebar"), terms);
    addRow(QStringLiteral("Roster"), compactRows);
    addRow(QStringLiteral("Background"), keepRunning);
    addRow({}, withSession);
    updatesLabel = addRow(QStringLiteral("Updates"), updates);
    compactRows->setAccessibleName(compactRows->text());
    keepRunning->setAccessibleName(keepRunning->text());
    withSession->setAccessibleName(withSession->text());
    updates->setAccessibleName(updates->text());
    if (QSystemTrayIcon::isSystemTrayAvailable())
        keepRunning->setToolTip(QStringLiteral(
            "Notices and widgets go on. An item in the status area opens the window, and so does "
            "starting Ellwynd again"));
    else
        addNote(QStringLiteral(
            "Your desktop shows no status items, so Ellwynd ends when its window is closed."));

    connect(appearanceChoice, &QComboBox::currentIndexChanged, this, [this] {
        this->defaults.set(
            preferences::appearance, appearanceChoice->currentData().toString().toStdString());
    });
    connect(accent, &QComboBox::currentIndexChanged, this, [this] {
        this->defaults.set(
            preferences::accentTheme, accent->currentData().toString().toStdString());
    });
    connect(textSize, &QSpinBox::valueChanged, this, [this](int value) {
        if (value / percent != this->defaults.value(preferences::textScale))
            this->defaults.set(preferences::textScale, value / percent);
    });
    connect(terms, &QSpinBox::valueChanged, this, [this](int value) {
        this->defaults.set(preferences::sidebarTermLimit, std::int64_t{value});
    });
    connect(compactRows, &QCheckBox::toggled, this, [this](bool on) {
        this->defaults.set(preferences::rosterCompactRows, on);
    });
    connect(keepRunning, &QCheckBox::toggled, this, [this](bool on) {
        this->defaults.set(preferences::keepRunningInBackground, on);
        if (!on)
            startWithSession(false);
        GeneralPane::showPreferences();
    });
    connect(withSession, &QCheckBox::toggled, this, &GeneralPane::startWithSession);
    connect(updates, &QCheckBox::toggled, this, [this](bool on) {
        this->defaults.set(preferences::automaticUpdateChecks, on);
    });
    setUpdateChecksAvailable(false);
    GeneralPane::showPreferences();
}

void GeneralPane::setUpdateChecksAvailable(bool available) {
    updates->setVisible(available);
    updatesLabel->setVisible(available);
}

void GeneralPane::showPreferences() {
    choose(*appearanceChoice, defaults.value(preferences::appearance));
    choose(*accent, defaults.value(preferences::accentTheme));
    const QSignalBlocker quiet[] = {QSignalBlocker(textSize),    QSignalBlocker(terms),
                                    QSignalBlocker(compactRows), QSignalBlocker(keepRunning),
                                    QSignalBlocker(withSession), QSignalBlocker(updates)};
    textSize->setValue(toPercent(defaults.value(preferences::textScale)));
    terms->setValue(int(
        std::min<std::int64_t>(defaults.value(preferences::sidebarTermLimit), terms->maximum())));
    compactRows->setChecked(defaults.value(preferences::rosterCompactRows));
    keepRunning->setChecked(defaults.value(preferences::keepRunningInBackground));
    withSession->setEnabled(keepRunning->isChecked());
    withSession->setChecked(autostart::isOn(directories::autostart(), backgroundEntry()));
    updates->setChecked(defaults.value(preferences::automaticUpdateChecks));
}

void GeneralPane::startWithSession(bool on) {
    try {
        if (on != autostart::isOn(directories::autostart(), backgroundEntry()))
            autostart::set(directories::autostart(), backgroundEntry(), on);
    } catch (const FileError &error) {
        QMessageBox *box = plainAlert(
            this, QStringLiteral("The start with the session couldn’t be changed"),
            qstring(error.what()));
        box->addButton(QStringLiteral("OK"), QMessageBox::RejectRole);
        box->open();
    }
    GeneralPane::showPreferences();
}

} // namespace ellwynd
