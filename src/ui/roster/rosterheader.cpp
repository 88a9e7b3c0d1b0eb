#include "ui/roster/rosterheader.h"

#include "app/courses/courselabel.h"
#include "app/roster/rosterview.h"
#include "theme/courseicon.h"
#include "ui/support/appearance.h"
#include "ui/support/stampline.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>

namespace ellwynd {

namespace {

/// The header's left and right margin.
constexpr double margin = 18;
/// The title's minimum width when the controls are beside it.
constexpr double minTitleWidth = 290;
constexpr double tileSize = 36;

QPushButton *button(const QString &text, const QString &tip, QWidget *parent) {
    auto *result = new QPushButton(text, parent);
    result->setToolTip(tip);
    result->setAutoDefault(false);
    return result;
}

} // namespace

RosterHeader::RosterHeader(
    const UserDefaults &defaults, const Appearance &appearance, QWidget *parent)
    : QWidget(parent),
      defaults(defaults),
      appearance(appearance),
      tile(new QLabel(this)),
      title(new ElidedLabel(this)),
      subtitle(new StampLine(this)),
      filter(new QLineEdit(this)),
      thresholds(button(
          QStringLiteral("Thresholds"),
          QStringLiteral("Passing score and inactivity window of this course"), this)),
      missingWork(button(
          QStringLiteral("Missing Work…"), QStringLiteral("Missing work by assignment"), this)),
      refresh(
          button(QStringLiteral("⟳"), QStringLiteral("Refresh this roster (Ctrl+Shift+R)"), this)),
      rows(new QBoxLayout(QBoxLayout::LeftToRight, this)),
      controls(new QBoxLayout(QBoxLayout::LeftToRight)),
      buttons(new QWidget(this)) {
    refresh->setAccessibleName(QStringLiteral("Refresh this roster"));
    refresh->setProperty("quiet", true);
    filter->setPlaceholderText(QStringLiteral("Filter students"));
    filter->setAccessibleName(QStringLiteral("Filter students"));
    filter->setClearButtonEnabled(true);

    auto *names = new QVBoxLayout;
    names->setSpacing(1);
    names->addWidget(title);
    names->addWidget(subtitle);
    auto *heading = new QHBoxLayout;
    heading->addWidget(tile);
    heading->addLayout(names, 1);
    auto *row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(thresholds);
    row->addWidget(missingWork);
    row->addStretch(1);
    row->addWidget(refresh);
    controls->addWidget(filter, 1);
    controls->addWidget(buttons);
    rows->addLayout(heading, 1);
    rows->addLayout(controls);

    connect(filter, &QLineEdit::textChanged, this, &RosterHeader::filterDidChange);
    connect(filter, &QLineEdit::returnPressed, this, &RosterHeader::studentsRequested);
    auto *down = new QShortcut(Qt::Key_Down, filter);
    down->setContext(Qt::WidgetShortcut);
    connect(down, &QShortcut::activated, this, &RosterHeader::studentsRequested);
    connect(thresholds, &QPushButton::clicked, this, &RosterHeader::thresholdsRequested);
    connect(missingWork, &QPushButton::clicked, this, &RosterHeader::missingWorkRequested);
    connect(refresh, &QPushButton::clicked, this, &RosterHeader::refreshRequested);
    connect(&appearance, &Appearance::appearanceDidChange, this, &RosterHeader::applyAppearance);
    applyAppearance();
}

void RosterHeader::setRoster(const RosterView &roster) {
    const bool course = roster.courseID.has_value();
    setVisible(!roster.title.empty());
    const CourseLabel label = courseLabel({.name = roster.title});
    title->setFullText(qstring(course ? label.name : collapsed(roster.title)));
    tile->setVisible(course);
    if (course) {
        tile->setPixmap(courseTile(
            *roster.courseID, roster.title, appearance.px(tileSize), devicePixelRatioF(),
            courseIcon(defaults, *roster.courseID)));
    }
    thresholds->setVisible(course);
    thresholds->setText(
        roster.thresholds && roster.thresholds->anyOverridden()
            ? QStringLiteral("Thresholds: Custom")
            : QStringLiteral("Thresholds"));
    missingWork->setVisible(course);
    filter->setVisible(roster.state == RosterView::State::shown && !roster.rows.empty());
    arrange();
}

void RosterHeader::setSubtitle(const QString &text, const QString &stamp, const QString &note) {
    subtitle->setTexts(text, stamp, note);
}

void RosterHeader::focusFilter() {
    filter->setFocus(Qt::ShortcutFocusReason);
    filter->selectAll();
}

void RosterHeader::setFilterText(const QString &typed) {
    if (filter->text() != typed)
        filter->setText(typed);
}

void RosterHeader::applyAppearance() {
    title->setFont(appearance.font(1.24, QFont::Bold));
    filter->setMinimumWidth(appearance.px(124));
    rows->setContentsMargins(
        appearance.px(margin), appearance.px(14), appearance.px(margin), appearance.px(12));
    rows->setSpacing(appearance.px(10));
    controls->setSpacing(appearance.px(8));
    buttons->layout()->setSpacing(appearance.px(8));
    arrange();
}

void RosterHeader::arrange() {
    const int available = width() - 2 * appearance.px(margin);
    const int oneRow = filter->minimumWidth() + controls->spacing() + buttons->sizeHint().width();
    const bool besideTitle = oneRow + appearance.px(minTitleWidth) <= available;
    rows->setDirection(besideTitle ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    controls->setDirection(oneRow <= available ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

void RosterHeader::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    arrange();
}

} // namespace ellwynd
