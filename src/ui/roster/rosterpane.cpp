#include "ui/roster/rosterpane.h"

#include "app/mainwindowcontroller.h"
#include "app/roster/rostertexts.h"
#include "base/calendar.h"
#include "theme/courseicon.h"
#include "ui/roster/insightband.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace ellwynd {

namespace {

QPushButton *button(const QString &text, const QString &tip, QWidget *parent) {
    auto *result = new QPushButton(text, parent);
    result->setToolTip(tip);
    result->setAutoDefault(false);
    return result;
}

/// What stands in the table's place.
QString messageFor(const RosterView &roster) {
    using State = RosterView::State;
    switch (roster.state) {
    case State::loading:
        return QStringLiteral("Loading roster…");
    case State::failed:
        return QStringLiteral("Couldn’t load roster.");
    case State::notConnected:
        return QStringLiteral("Not connected");
    case State::nothingSelected:
        return QStringLiteral(
            "Your courses appear here once they load — or pick one from the sidebar.");
    case State::shown:
        break;
    }
    if (!roster.rows.empty())
        return {};
    return roster.courseID ? QStringLiteral("No students found for this course.")
                           : QStringLiteral("No students flagged in this term.");
}

} // namespace

RosterPane::RosterPane(
    MainWindowController &driver, UserDefaults &store, const Appearance &look, QWidget *parent)
    : QWidget(parent),
      controller(driver),
      defaults(store),
      appearance(look),
      tile(new QLabel(this)),
      title(new ElidedLabel(this)),
      subtitle(new ElidedLabel(this)),
      movement(new ElidedLabel(this)),
      stale(plainLabel(this, true)),
      filter(new QLineEdit(this)),
      thresholds(button(
          QStringLiteral("Thresholds"),
          QStringLiteral("What this course's students are scored with"), this)),
      missingWork(button(
          QStringLiteral("Missing Work…"), QStringLiteral("Missing work by assignment"), this)),
      refresh(
          button(QStringLiteral("⟳"), QStringLiteral("Refresh this roster (Ctrl+Shift+R)"), this)),
      stack(new QStackedWidget(this)),
      messagePage(new QWidget(this)),
      message(plainLabel(messagePage, true)),
      progress(new QProgressBar(messagePage)),
      connectButton(button(
          QStringLiteral("Open Connection Settings…"),
          QStringLiteral("Enter your Canvas address and token"), messagePage)),
      insight(new InsightBand(look)),
      insightFrame(new QWidget(this)),
      students(new RosterTable(look, this)),
      header(new QWidget(this)),
      headerLayout(new QBoxLayout(QBoxLayout::LeftToRight, header)),
      controls(new QBoxLayout(QBoxLayout::LeftToRight)),
      buttons(new QWidget(header)),
      observing(store.observe([this](std::string_view key) {
          if (key == preferences::rosterCompactRows.name)
              students->setCompact(defaults.value(preferences::rosterCompactRows));
          else if (key == preferences::courseInsightPanelMode.name)
              showInsight();
          else if (courseSettings::isIconKey(key))
              showHeader();
      })) {
    refresh->setAccessibleName(QStringLiteral("Refresh this roster"));
    refresh->setProperty("quiet", true);
    progress->setTextVisible(false);
    progress->setAccessibleName(QStringLiteral("Loading"));
    filter->setPlaceholderText(QStringLiteral("Filter students"));
    filter->setAccessibleName(QStringLiteral("Filter students"));
    filter->setClearButtonEnabled(true);
    subtitle->setProperty("secondary", true);
    stale->setProperty("attention", true);
    message->setAlignment(Qt::AlignCenter);
    message->setProperty("secondary", true);
    students->setCompact(defaults.value(preferences::rosterCompactRows));
    students->setContextMenuPolicy(Qt::CustomContextMenu);

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
    headerLayout->addLayout(heading, 1);
    headerLayout->addLayout(controls);

    stack->addWidget(students);
    auto *page = new QVBoxLayout(messagePage);
    page->addStretch(2);
    page->addWidget(message);
    page->addWidget(progress, 0, Qt::AlignHCenter);
    page->addWidget(connectButton, 0, Qt::AlignHCenter);
    page->addStretch(3);
    stack->addWidget(messagePage);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(header);
    column->addWidget(movement);
    column->addWidget(stale);
    auto *around = new QVBoxLayout(insightFrame);
    around->addWidget(insight);
    column->addWidget(insightFrame);
    column->addWidget(stack, 1);

    connect(filter, &QLineEdit::textChanged, this, [this](const QString &typed) {
        students->setFilter(typed);
        showCount();
    });
    connect(filter, &QLineEdit::returnPressed, this, &RosterPane::focusStudents);
    auto *down = new QShortcut(Qt::Key_Down, filter);
    down->setContext(Qt::WidgetShortcut);
    connect(down, &QShortcut::activated, this, &RosterPane::focusStudents);
    connect(thresholds, &QPushButton::clicked, this, &RosterPane::thresholdsRequested);
    connect(missingWork, &QPushButton::clicked, this, &RosterPane::missingWorkRequested);
    connect(refresh, &QPushButton::clicked, this, &RosterPane::refreshRequested);
    connect(insight, &InsightBand::missingWorkRequested, this, &RosterPane::missingWorkRequested);
    connect(insight, &InsightBand::shrinkRequested, this, [this](bool small) {
        defaults.set(preferences::courseInsightPanelMode, std::string(small ? "small" : "shown"));
    });
    connect(connectButton, &QPushButton::clicked, this, &RosterPane::connectionRequested);
    connect(students, &QWidget::customContextMenuRequested, this, [this](const QPoint &position) {
        Q_EMIT contextMenuRequested(students->viewport()->mapToGlobal(position));
    });
    connect(&controller, &MainWindowController::rosterDidChange, this, &RosterPane::showRoster);
    connect(&controller, &MainWindowController::loadingDidChange, this, &RosterPane::showProgress);
    connect(&appearance, &Appearance::changed, this, &RosterPane::applyAppearance);
    applyAppearance();
    showRoster();
}

void RosterPane::focusFilter() {
    filter->setFocus(Qt::ShortcutFocusReason);
    filter->selectAll();
}

/// From the filter on to who was found.
void RosterPane::focusStudents() {
    if (students->shownCount() == 0)
        return;
    students->setFocus();
    if (students->selectedRows().empty())
        students->selectRow(0);
}

void RosterPane::clearFilter() {
    filter->clear();
}

void RosterPane::applyAppearance() {
    title->setFont(appearance.font(1.24, QFont::Bold));
    movement->setFont(appearance.font(1, QFont::DemiBold));
    movement->setContentsMargins(appearance.px(18), 0, appearance.px(18), appearance.px(10));
    insightFrame->layout()->setContentsMargins(
        appearance.px(18), 0, appearance.px(18), appearance.px(10));
    message->setFont(appearance.font(1.1));
    message->setContentsMargins(
        appearance.px(40), appearance.px(40), appearance.px(40), appearance.px(40));
    stale->setContentsMargins(appearance.px(18), 0, appearance.px(18), appearance.px(8));
    filter->setMinimumWidth(appearance.px(124));
    headerLayout->setContentsMargins(
        appearance.px(18), appearance.px(14), appearance.px(18), appearance.px(12));
    headerLayout->setSpacing(appearance.px(10));
    controls->setSpacing(appearance.px(8));
    buttons->layout()->setSpacing(appearance.px(8));
    showHeader();
}

void RosterPane::arrangeHeader() {
    const int room = width() - 2 * appearance.px(18);
    const int inRow = filter->minimumWidth() + controls->spacing() + buttons->sizeHint().width();
    const bool besideTitle = inRow + appearance.px(290) <= room;
    headerLayout->setDirection(besideTitle ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    controls->setDirection(inRow <= room ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

void RosterPane::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    arrangeHeader();
}

void RosterPane::showRoster() {
    const RosterView &roster = controller.roster();
    if (roster.title != title->accessibleName().toStdString())
        filter->clear();
    showHeader();
    stale->setVisible(!roster.staleReason.empty());
    stale->setText(
        qstring(roster.staleReason) + QStringLiteral(" Showing what was loaded before."));
    const QString text = messageFor(roster);
    message->setText(text);
    showProgress();
    connectButton->setVisible(roster.state == RosterView::State::notConnected);
    students->setRoster(text.isEmpty() ? roster : RosterView{}, systemNow());
    showInsight();
    stack->setCurrentWidget(text.isEmpty() ? static_cast<QWidget *>(students) : messagePage);
}

void RosterPane::showInsight() {
    const RosterView &roster = controller.roster();
    const std::string mode = defaults.value(preferences::courseInsightPanelMode);
    const bool wanted = mode != "hidden" && roster.state == RosterView::State::shown &&
        roster.insight && !roster.rows.empty();
    insightFrame->setVisible(wanted);
    if (wanted)
        insight->setInsight(*roster.insight);
    insight->setShrunk(mode == "small");
}

/// How far a load is: courses of a term one by one, a single course without a measure.
void RosterPane::showProgress() {
    const RosterView &roster = controller.roster();
    progress->setVisible(roster.state == RosterView::State::loading);
    progress->setRange(0, roster.courseCount > 1 ? int(roster.courseCount) : 0);
    progress->setValue(int(roster.loadedCourses));
    showCount();
}

void RosterPane::showHeader() {
    const RosterView &roster = controller.roster();
    const bool shown = roster.state == RosterView::State::shown;
    const bool course = roster.courseID.has_value();
    header->setVisible(!roster.title.empty());
    title->setFullText(qstring(roster.title));
    tile->setVisible(course);
    if (course) {
        tile->setPixmap(courseTile(
            *roster.courseID, roster.title, appearance.px(36), devicePixelRatioF(),
            courseIcon(defaults, *roster.courseID)));
    }
    thresholds->setVisible(course);
    thresholds->setText(
        roster.thresholds && roster.thresholds->anyOverridden()
            ? QStringLiteral("Thresholds: Custom")
            : QStringLiteral("Thresholds"));
    missingWork->setVisible(course);
    filter->setVisible(shown && !roster.rows.empty());
    showCount();
    arrangeHeader();
}

void RosterPane::showCount() {
    const RosterView &roster = controller.roster();
    if (roster.state != RosterView::State::shown) {
        subtitle->setFullText({});
        movement->setVisible(false);
        return;
    }
    QString text;
    if (!filter->text().trimmed().isEmpty())
        text = QStringLiteral("%1 of ").arg(students->shownCount());
    text += roster.courseID ? qstring(studentsText(roster.rows.size()))
                            : qstring(flaggedAcrossText(roster.rows.size(), roster.courseCount));
    text += QStringLiteral(" · updated ") + qstring(calendar::shortTime(roster.fetchedAt));
    if (controller.isLoading())
        text += QStringLiteral(" · refreshing…");
    subtitle->setFullText(text);
    const QString remembered = qstring(rememberedLine(roster));
    movement->setFullText(remembered);
    movement->setVisible(!remembered.isEmpty());
}

} // namespace ellwynd
