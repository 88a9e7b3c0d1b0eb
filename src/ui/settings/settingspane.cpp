#include "ui/settings/settingspane.h"

#include "preferences/coursesettings.h"
#include "ui/support/appearance.h"
#include "uikit/labels.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace ellwynd {

SettingsPane::SettingsPane(
    const QString &title, UserDefaults &defaults, const Appearance &appearance)
    : defaults(defaults),
      appearance(appearance),
      contents(new QVBoxLayout(this)),
      observing(defaults.observe([this](std::string_view key) {
          // Courses have settings of their own elsewhere, and may all change at once.
          if (courseSettings::suffixOf(key).empty())
              showPreferences();
      })) {
    auto *heading = plainLabel(this);
    heading->setText(title);
    contents->addWidget(heading);
    contents->addStretch(1);
    const auto size = [this, heading] {
        const int margin = this->appearance.px(20);
        contents->setContentsMargins(margin, margin, margin, margin);
        contents->setSpacing(this->appearance.px(12));
        heading->setFont(this->appearance.font(1.22, QFont::Bold));
    };
    connect(&appearance, &Appearance::appearanceDidChange, this, size);
    size();
}

QLabel *SettingsPane::addRow(const QString &label, QWidget *control, const QString &unit) {
    auto *name = plainLabel(this);
    name->setText(label);
    name->setBuddy(control);
    if (control->accessibleName().isEmpty())
        control->setAccessibleName(label);
    labels.push_back(name);
    // Align the controls of all rows.
    int maxWidth = 0;
    for (const QLabel *each : labels)
        maxWidth = std::max(maxWidth, each->sizeHint().width());
    for (QLabel *each : labels)
        each->setMinimumWidth(maxWidth);
    auto *row = new QHBoxLayout;
    row->addWidget(name);
    row->addWidget(control);
    if (!unit.isEmpty()) {
        auto *after = plainLabel(this);
        after->setText(unit);
        row->addWidget(after);
    }
    row->addStretch(1);
    contents->insertLayout(contents->count() - 1, row);
    return name;
}

QLabel *SettingsPane::addNote(const QString &text) {
    auto *note = secondaryLabel(this, text);
    addWidget(note);
    return note;
}

void SettingsPane::addFilling(QWidget *widget) {
    const int end = contents->count() - 1;
    contents->setStretch(end, 0);
    contents->insertWidget(end, widget, 1);
}

void SettingsPane::addWidget(QWidget *widget) {
    contents->insertWidget(contents->count() - 1, widget);
}

} // namespace ellwynd
