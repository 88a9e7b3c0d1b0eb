#include "ui/sheets/copysetupsheet.h"

#include "theme/courseicon.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"
#include "uikit/tooltip.h"

#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace ellwynd {

namespace {

enum Role { courseIDRole = Qt::UserRole, nameRole };

constexpr int tileSize = 20;
constexpr int listHeight = 240;

std::string nameOf(const std::vector<Course> &courses, std::int64_t courseID) {
    const auto found = std::ranges::find(courses, courseID, &Course::id);
    return displayName(found != courses.end() ? *found : Course{.id = courseID});
}

/// A course name on one line.
QString oneLine(const std::string &text) {
    return qstring(text).simplified();
}

/// An icon whose colours do not change in a selected row.
QIcon untinted(const QPixmap &pixmap) {
    QIcon icon(pixmap);
    icon.addPixmap(pixmap, QIcon::Selected);
    return icon;
}

} // namespace

CopySetupSheet::CopySetupSheet(
    std::int64_t courseID, const std::vector<Course> &courses, UserDefaults &defaults,
    const Appearance &appearance, QWidget *parent)
    : Sheet(
          QStringLiteral("Copy Course Setup"), QStringLiteral("Copy Course Setup"), appearance,
          parent),
      courseID(courseID),
      defaults(defaults),
      appearance(appearance),
      list(new QListWidget(this)),
      summary(plainLabel(this, true)),
      copyButton(new QPushButton(QStringLiteral("Copy Setup"), this)),
      observing(defaults.observe([this](std::string_view) { showSummary(); })) {
    const SetupCandidates candidates = setupCandidates(courses, courseID);
    auto *course = new ElidedLabel(this);
    course->setProperty("secondary", true);
    course->setFullText(oneLine(nameOf(courses, courseID)));
    auto *caption =
        secondaryLabel(this, QStringLiteral("Copy the setup of a course of an earlier term"));
    caption->setVisible(!candidates.terms.empty());
    list->setObjectName(QStringLiteral("courses"));
    list->setAccessibleName(QStringLiteral("Courses of earlier terms"));
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setTextElideMode(Qt::ElideRight);
    list->setIconSize(QSize(appearance.px(tileSize), appearance.px(tileSize)));
    list->setMinimumSize(appearance.px(420), appearance.px(listHeight));
    fillList(candidates);
    list->setVisible(!candidates.terms.empty());

    auto *cancel = new QPushButton(QStringLiteral("Cancel"), this);
    copyButton->setDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(copyButton);

    column().addWidget(course);
    column().addSpacing(appearance.px(4));
    column().addWidget(caption);
    column().addWidget(list, 1);
    column().addWidget(summary);
    column().addSpacing(appearance.px(8));
    column().addLayout(buttons);
    summary->setMinimumWidth(appearance.px(420));

    connect(list, &QListWidget::currentItemChanged, this, &CopySetupSheet::showSummary);
    connect(list, &QListWidget::itemDoubleClicked, copyButton, &QPushButton::click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(copyButton, &QPushButton::clicked, this, &CopySetupSheet::copy);
    showSummary();
    if (candidates.terms.empty())
        cancel->setFocus();
    else
        list->setFocus();
}

void CopySetupSheet::fillList(const SetupCandidates &candidates) {
    for (const TermGroup &group : candidates.terms) {
        auto *heading = new QListWidgetItem(oneLine(title(group)), list);
        heading->setFlags(Qt::NoItemFlags);
        heading->setFont(appearance.font(0.9, QFont::DemiBold));
        heading->setSizeHint(QSize(0, appearance.px(28)));
        for (const Course &course : group.courses) {
            const bool suggested = course.id == candidates.suggested;
            const QString name = oneLine(displayName(course));
            auto *item = new QListWidgetItem(
                suggested ? name + QStringLiteral(" — earlier edition") : name, list);
            item->setData(courseIDRole, qlonglong(course.id));
            item->setData(nameRole, name);
            item->setData(
                Qt::AccessibleTextRole, item->text() + QStringLiteral(", ") + heading->text());
            item->setToolTip(plainToolTip(name));
            item->setIcon(untinted(courseTile(
                course.id, displayName(course), appearance.px(tileSize), devicePixelRatioF(),
                courseIcon(defaults, course.id))));
            item->setSizeHint(QSize(0, appearance.px(30)));
            if (suggested) {
                list->setCurrentItem(item);
                list->scrollToItem(heading, QAbstractItemView::PositionAtTop);
            }
        }
    }
}

std::optional<std::int64_t> CopySetupSheet::chosen() const {
    const QListWidgetItem *item = list->currentItem();
    if (item == nullptr || !item->data(courseIDRole).isValid())
        return std::nullopt;
    return item->data(courseIDRole).toLongLong();
}

void CopySetupSheet::showSummary() {
    const auto source = chosen();
    const CourseSetup setup = source ? courseSetup(defaults, *source) : CourseSetup{};
    copyButton->setEnabled(setup != CourseSetup{});
    if (list->count() == 0)
        summary->setText(QStringLiteral("There is no course of an earlier term to copy from."));
    else
        summary->setText(
            source ? qstring(setupSummary(setup))
                   : QStringLiteral("Choose the course to copy from."));
}

void CopySetupSheet::copy() {
    const auto source = chosen();
    if (!source)
        return;
    const QString name = list->currentItem()->data(nameRole).toString();
    PreferenceEdit edit;
    edit.add(defaults, copyCourseSetup(defaults, *source, courseID));
    accept();
    Q_EMIT setupDidChange(name.toStdString(), edit);
}

} // namespace ellwynd
