#include "ui/roster/rosterpane.h"

#include "app/courses/courselabel.h"
#include "app/mainwindowcontroller.h"
#include "app/roster/rostertexts.h"
#include "base/calendar.h"
#include "preferences/coursesettings.h"
#include "ui/roster/chipbar.h"
#include "ui/roster/insightband.h"
#include "ui/roster/rosterheader.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <utility>

namespace ellwynd {

namespace {

/// The message shown instead of the table; empty when the table is shown.
QString messageFor(const RosterView &roster) {
    using State = RosterView::State;
    switch (roster.state) {
    case State::loading:
        return QStringLiteral("Loading roster…");
    case State::failed:
        return QStringLiteral("Couldn’t load roster.");
    case State::notConnected:
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
    MainWindowController &controller, UserDefaults &defaults, const Appearance &appearance,
    QWidget *parent)
    : QWidget(parent),
      controller(controller),
      defaults(defaults),
      appearance(appearance),
      header(new RosterHeader(defaults, appearance, this)),
      movement(new ElidedLabel(this)),
      notes(plainLabel(this, true)),
      stack(new QStackedWidget(this)),
      messagePage(new QWidget(this)),
      message(secondaryLabel(messagePage)),
      progress(new QProgressBar(messagePage)),
      retryButton(new QPushButton(QStringLiteral("Try Again"), messagePage)),
      resetButton(new QPushButton(messagePage)),
      chips(new ChipBar(appearance, this)),
      insightFrame(new QWidget(this)),
      insight(new InsightBand(appearance, insightFrame)),
      students(new RosterTable(appearance, this)),
      observing(defaults.observe([this](std::string_view key) { preferenceChanged(key); })) {
    progress->setTextVisible(false);
    progress->setAccessibleName(QStringLiteral("Loading"));
    notes->setProperty("attention", true);
    message->setAlignment(Qt::AlignCenter);
    retryButton->setToolTip(QStringLiteral("Read this roster again (Ctrl+Shift+R)"));
    retryButton->setAutoDefault(false);
    resetButton->setAutoDefault(false);
    students->setCompact(defaults.value(preferences::rosterCompactRows));
    students->setContextMenuPolicy(Qt::CustomContextMenu);

    stack->addWidget(students);
    auto *page = new QVBoxLayout(messagePage);
    page->addStretch(2);
    page->addWidget(message);
    page->addWidget(progress, 0, Qt::AlignHCenter);
    page->addWidget(retryButton, 0, Qt::AlignHCenter);
    page->addWidget(resetButton, 0, Qt::AlignHCenter);
    page->addStretch(3);
    // It takes no space from the header while the students are shown.
    messagePage->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    stack->addWidget(messagePage);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(header);
    column->addWidget(movement);
    column->addWidget(notes);
    auto *chipRow = new QVBoxLayout;
    chipRow->addWidget(chips);
    column->addLayout(chipRow);
    auto *around = new QVBoxLayout(insightFrame);
    around->addWidget(insight);
    column->addWidget(insightFrame);
    column->addWidget(stack, 1);

    connectViews();
    applyAppearance();
    showRoster();
}

void RosterPane::connectViews() {
    connect(header, &RosterHeader::filterDidChange, this, [this](const QString &typed) {
        RosterQuery query = students->query();
        query.typed = typed.toStdString();
        if (query != students->query())
            students->setQuery(query);
    });
    connect(chips, &ChipBar::queryRequested, this, &RosterPane::setQuery);
    connect(students, &RosterTable::queryDidChange, this, &RosterPane::showRows);
    connect(insight, &InsightBand::assignmentRequested, this, [this](const AssignmentRef &missed) {
        RosterQuery query = students->query();
        query.missing = missed;
        setQuery(query);
    });
    connect(resetButton, &QPushButton::clicked, this, [this] {
        resetFilter();
        focusStudents();
    });
    auto *escape = new QShortcut(Qt::Key_Escape, this);
    escape->setContext(Qt::WidgetWithChildrenShortcut);
    connect(escape, &QShortcut::activated, this, &RosterPane::resetFilter);
    connect(header, &RosterHeader::studentsRequested, this, &RosterPane::focusStudents);
    connect(header, &RosterHeader::thresholdsRequested, this, &RosterPane::thresholdsRequested);
    connect(header, &RosterHeader::missingWorkRequested, this, &RosterPane::missingWorkRequested);
    connect(header, &RosterHeader::refreshRequested, this, &RosterPane::refreshRequested);
    connect(insight, &InsightBand::missingWorkRequested, this, &RosterPane::missingWorkRequested);
    connect(insight, &InsightBand::coverageRequested, this, &RosterPane::coverageRequested);
    connect(insight, &InsightBand::collapseRequested, this, [this](bool collapsed) {
        defaults.set(
            preferences::courseInsightPanelMode, std::string(collapsed ? "small" : "shown"));
    });
    connect(retryButton, &QPushButton::clicked, this, &RosterPane::refreshRequested);
    connect(students, &QWidget::customContextMenuRequested, this, [this](const QPoint &position) {
        Q_EMIT contextMenuRequested(students->viewport()->mapToGlobal(position));
    });
    connect(&controller, &MainWindowController::rosterDidChange, this, &RosterPane::showRoster);
    connect(&controller, &MainWindowController::loadingDidChange, this, &RosterPane::showProgress);
    connect(&appearance, &Appearance::appearanceDidChange, this, &RosterPane::applyAppearance);
}

void RosterPane::preferenceChanged(std::string_view key) {
    if (key == preferences::rosterCompactRows.name)
        students->setCompact(defaults.value(preferences::rosterCompactRows));
    else if (key == preferences::courseInsightPanelMode.name)
        showInsight();
    else if (courseSettings::isIconKey(key))
        header->setRoster(controller.roster());
}

void RosterPane::focusFilter() {
    header->focusFilter();
}

/// Moves the focus to the table, which selects its first row if none is selected.
void RosterPane::focusStudents() {
    if (!students->hasRows())
        return;
    students->setFocus();
    if (students->selectedRows().empty())
        students->selectRow(0);
}

void RosterPane::setQuery(const RosterQuery &query) {
    students->setQuery(query);
}

void RosterPane::resetFilter() {
    setQuery(withoutFilter(students->query()));
}

/// The query that was left in the selection; at first the flagged students, worst first.
RosterQuery RosterPane::queryOf(const Selection &selection) const {
    const auto left =
        std::ranges::find(queries, selection, [](const auto &entry) { return entry.first; });
    return left != queries.end() ? left->second : RosterQuery{};
}

void RosterPane::keepQuery(const RosterQuery &query) {
    if (!queried)
        return;
    std::erase_if(queries, [this](const auto &entry) { return entry.first == *queried; });
    queries.emplace_back(*queried, query);
}

void RosterPane::applyAppearance() {
    const int side = appearance.px(18);
    const int around = appearance.px(40);
    movement->setFont(appearance.font(1, QFont::DemiBold));
    movement->setContentsMargins(side, 0, side, appearance.px(10));
    insightFrame->layout()->setContentsMargins(side, 0, side, appearance.px(10));
    message->setFont(appearance.font(1.1));
    message->setContentsMargins(around, around, around, around);
    notes->setContentsMargins(side, 0, side, appearance.px(8));
    chips->setContentsMargins(side, 0, side, appearance.px(8));
    header->setRoster(controller.roster());
}

void RosterPane::showRoster() {
    const RosterView &roster = controller.roster();
    header->setRoster(roster);
    const std::string note = noteText(roster);
    notes->setVisible(!note.empty());
    notes->setText(qstring(note));
    showInsight();
    RosterQuery query = students->query();
    if (roster.state == RosterView::State::shown) {
        // Compares selections, since two courses may have the same title.
        if (std::exchange(queried, controller.selection()) != controller.selection())
            query = queryOf(*queried);
        students->setRoster(roster, query, systemNow());
    } else {
        queried.reset();
        students->setRoster({}, {}, systemNow());
    }
    // The courses of another account may have the same ids.
    if (roster.state == RosterView::State::notConnected)
        queries.clear();
    showRows();
}

void RosterPane::showRows() {
    const RosterView &roster = controller.roster();
    const RosterQuery &query = students->query();
    keepQuery(query);
    header->setFilterText(qstring(query.typed));
    QString text = messageFor(roster);
    const bool isEmpty = text.isEmpty() && !students->hasRows();
    if (isEmpty)
        text = qstring(emptyText(query));
    message->setText(text);
    chips->show(students->roster(), query);
    chips->setVisible(roster.state == RosterView::State::shown && !roster.rows.empty());
    retryButton->setVisible(roster.state == RosterView::State::failed);
    resetButton->setVisible(isEmpty);
    resetButton->setText(qstring(resetText(query)));
    stack->setCurrentWidget(text.isEmpty() ? static_cast<QWidget *>(students) : messagePage);
    showProgress();
    Q_EMIT rowsDidChange();
}

/// Whether the height is needed for the students: the insight gives way.
bool RosterPane::isShort() const {
    constexpr double enough = 400;
    return height() < appearance.px(enough);
}

void RosterPane::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    showInsight();
}

void RosterPane::showInsight() {
    const RosterView &roster = controller.roster();
    const std::string mode = defaults.value(preferences::courseInsightPanelMode);
    const bool wanted = mode != "hidden" && !isShort() &&
        roster.state == RosterView::State::shown && roster.insight && !roster.rows.empty();
    insightFrame->setVisible(wanted);
    if (wanted)
        insight->setInsight(*roster.insight);
    insight->setCollapsed(mode == "small");
}

/// Shows how many of a term's courses are loaded; the progress of a single course is indeterminate.
void RosterPane::showProgress() {
    const RosterView &roster = controller.roster();
    progress->setVisible(roster.state == RosterView::State::loading);
    progress->setRange(0, roster.courseCount > 1 ? int(roster.courseCount) : 0);
    progress->setValue(int(roster.loadedCourses));
    showCount();
}

void RosterPane::showCount() {
    const RosterView &roster = controller.roster();
    if (roster.state != RosterView::State::shown) {
        header->setSubtitle({}, {}, {});
        movement->setVisible(false);
        return;
    }
    // The code first: it tells two sections apart, while the chips show the count too.
    const std::string code =
        roster.courseID ? courseLabel({.name = roster.title}).code : std::string();
    QString text = code.empty() ? QString() : qstring(code) + QStringLiteral(" · ");
    const RosterQuery &query = students->query();
    if (query !=
        RosterQuery{.chip = query.chip, .sort = query.sort, .descending = query.descending})
        text += QStringLiteral("%1 of ").arg(students->shownCount());
    text += roster.courseID ? qstring(studentsText(roster.rows.size()))
                            : qstring(flaggedAcrossText(roster.rows.size(), roster.courseCount));
    header->setSubtitle(
        text, QStringLiteral("updated ") + qstring(calendar::shortTime(roster.fetchedAt)),
        qstring(stampNote(roster.fetchedAt, controller.isLoading(), systemNow())));
    const QString line = qstring(rememberedLine(roster));
    movement->setFullText(line);
    movement->setVisible(!line.isEmpty());
}

} // namespace ellwynd
