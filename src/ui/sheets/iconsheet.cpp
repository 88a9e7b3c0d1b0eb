#include "ui/sheets/iconsheet.h"

#include "theme/courseicon.h"
#include "ui/sheets/iconcells.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include <utility>

namespace ellwynd {

namespace {

constexpr int iconColumns = 9;
constexpr int gap = 4;
constexpr int previewSize = 64;

void check(const QButtonGroup &group, const std::string &word) {
    for (QAbstractButton *button : group.buttons()) {
        if (static_cast<const IconSheetCell *>(button)->word == word)
            button->setChecked(true);
    }
}

} // namespace

IconSheet::IconSheet(
    std::int64_t courseID, const std::string &courseName, UserDefaults &defaults,
    const Appearance &appearance, QWidget *parent)
    : Sheet(QStringLiteral("Course Icon"), QStringLiteral("Course Icon"), appearance, parent),
      courseID(courseID),
      courseName(courseName),
      defaults(defaults),
      appearance(appearance),
      preview(new QLabel(this)),
      description(secondaryLabel(this, {}, false)),
      icons(new QButtonGroup(this)),
      colors(new QButtonGroup(this)),
      followDefault(new QPushButton(QStringLiteral("Use Default"), this)),
      observing(defaults.observe([this](std::string_view key) {
          if (courseSettings::isIconKey(key))
              showChoice();
      })) {
    auto *course = new ElidedLabel(this);
    course->setFont(appearance.font(1, QFont::DemiBold));
    course->setFullText(qstring(courseName));
    auto *names = new QVBoxLayout;
    names->setSpacing(appearance.px(2));
    names->addStretch(1);
    names->addWidget(course);
    names->addWidget(description);
    names->addStretch(1);
    auto *shown = new QHBoxLayout;
    shown->setSpacing(appearance.px(14));
    shown->addWidget(preview);
    shown->addLayout(names, 1);

    auto *cancel = new QPushButton(QStringLiteral("Cancel"), this);
    auto *finished = new QPushButton(QStringLiteral("Done"), this);
    finished->setDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(followDefault);
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(finished);

    column().addLayout(shown);
    column().addWidget(secondaryLabel(this, QStringLiteral("Icon"), false));
    column().addLayout(makeGrid(*icons, courseSettings::icon));
    column().addWidget(secondaryLabel(this, QStringLiteral("Colour"), false));
    column().addLayout(makeGrid(*colors, courseSettings::iconColor));
    column().addSpacing(appearance.px(8));
    column().addLayout(buttons);

    connect(followDefault, &QPushButton::clicked, this, &IconSheet::useDefault);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(finished, &QPushButton::clicked, this, &QDialog::accept);
    showChoice();
    icons->checkedButton()->setFocus();
}

QGridLayout *IconSheet::makeGrid(QButtonGroup &group, std::string_view suffix) {
    const bool isColor = suffix == courseSettings::iconColor;
    std::vector<std::string> words{{}};
    if (isColor)
        words.insert(
            words.end(), courseSettings::colorWords.begin(), courseSettings::colorWords.end());
    else
        words.insert(
            words.end(), courseSettings::iconWords.begin(), courseSettings::iconWords.end());
    const int columns = isColor ? int(words.size()) : iconColumns;
    auto *grid = new QGridLayout;
    grid->setSpacing(appearance.px(gap));
    for (int i = 0; i < int(words.size()); ++i) {
        const std::string &word = words[std::size_t(i)];
        IconSheetCell *cell = nullptr;
        if (isColor)
            cell = new ColorCell(word, courseColor(courseID, word), appearance);
        else
            cell = new IconCell(word, courseInitials(courseName), appearance);
        group.addButton(cell);
        grid->addWidget(cell, i / columns, i % columns);
        connect(cell, &QAbstractButton::toggled, this, [this, suffix, word](bool on) {
            if (on && !showing)
                write(suffix, word);
        });
    }
    grid->setColumnStretch(columns, 1);
    return grid;
}

void IconSheet::showChoice() {
    const CourseIcon chosen = courseIcon(defaults, courseID);
    const QScopedValueRollback rollback(showing, true);
    check(*icons, chosen.icon);
    check(*colors, chosen.color);
    for (QAbstractButton *button : icons->buttons())
        static_cast<IconCell *>(button)->setTileColor(courseColor(courseID, chosen.color));
    const int side = appearance.px(previewSize);
    preview->setPixmap(courseTile(courseID, courseName, side, devicePixelRatioF(), chosen));
    description->setText(
        iconName(chosen.icon) + QStringLiteral(" on ") +
        (chosen.color.empty() ? QStringLiteral("its automatic colour") : qstring(chosen.color)));
    preview->setAccessibleName(description->text());
    followDefault->setEnabled(
        courseSettings::has(defaults, courseID, courseSettings::icon) ||
        courseSettings::has(defaults, courseID, courseSettings::iconColor));
}

void IconSheet::write(std::string_view suffix, const std::string &word) {
    apply(
        {{courseSettings::key(courseID, suffix),
          word.empty() ? std::nullopt : std::optional<PreferenceValue>(word)}});
}

void IconSheet::useDefault() {
    apply(
        {{courseSettings::key(courseID, courseSettings::icon), std::nullopt},
         {courseSettings::key(courseID, courseSettings::iconColor), std::nullopt}});
    // The button is now disabled, and the focus would move to Cancel.
    icons->checkedButton()->setFocus();
}

void IconSheet::apply(const PreferenceChanges &changes) {
    edit.add(defaults, defaults.update(changes));
}

void IconSheet::accept() {
    Sheet::accept();
    Q_EMIT editDidEnd(std::exchange(edit, {}));
}

void IconSheet::reject() {
    undoEdit(defaults, std::exchange(edit, {}));
    Sheet::reject();
}

} // namespace ellwynd
