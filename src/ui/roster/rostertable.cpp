#include "ui/roster/rostertable.h"

#include "app/roster/rostertexts.h"
#include "ui/roster/rosterdelegate.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/pill.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <array>
#include <memory>

namespace ellwynd {

namespace {

/// Names get at least this width beside the figures; otherwise the figures move below them.
constexpr double minNameWidth = 150;
/// Lines of text are not longer than this, however wide the window.
constexpr double maxTextWidth = 760;

} // namespace

RosterTable::RosterTable(const Appearance &appearance, QWidget *parent)
    : QTableView(parent),
      appearance(appearance),
      model(new RosterModel(this)),
      delegate(new RosterDelegate(appearance, *model, this)) {
    QTableView::setModel(model);
    setItemDelegate(delegate);
    setObjectName(QStringLiteral("roster"));
    setAccessibleName(QStringLiteral("Students"));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setShowGrid(false);
    setMouseTracking(true);
    setTabKeyNavigation(false);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setFocusPolicy(Qt::NoFocus);
    horizontalHeader()->setTextElideMode(Qt::ElideRight);

    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
        sortBy(RosterModel::sortOf(column));
    });
    connect(delegate, &RosterDelegate::gradesRequested, this, &RosterTable::gradesRequested);
    connect(
        delegate, &RosterDelegate::contactRemovalRequested, this,
        &RosterTable::contactRemovalRequested);
    connect(delegate, &RosterDelegate::detailsRequested, this, &RosterTable::detailsRequested);
    connect(delegate, &RosterDelegate::unfoldRequested, this, &RosterTable::unfold);
    connect(&appearance, &Appearance::appearanceDidChange, this, &RosterTable::lay);
}

template<class Change>
void RosterTable::changeRows(Change change, bool keepsPlace) {
    std::set<StudentKey> keys;
    for (const RiskRow &row : selectedRows())
        keys.insert(keyOf(row));
    const std::optional<StudentKey> current = currentStudent();
    const int scrolledTo = verticalScrollBar()->value();
    {
        const QScopedValueRollback guard(changingRows, true);
        delegate->clearHover();
        change();
        selected.reset();
        lay();
        select(keys, current);
        // The range of the scroll bar is otherwise computed later.
        updateGeometries();
        verticalScrollBar()->setValue(keepsPlace ? scrolledTo : 0);
    }
    Q_EMIT selectionDidChange();
}

void RosterTable::setRoster(const RosterView &roster, const RosterQuery &query, Date now) {
    // A roster that was read again stays where the teacher left it.
    const bool isSame = roster.courseID == courseID && roster.title == title;
    courseID = roster.courseID;
    title = roster.title;
    changeRows([&] { model->setRoster(std::make_shared<RosterRows>(roster), query, now); }, isSame);
    if (!isSame && selectedRows().empty() && model->studentCount() > 0)
        select({keyOf(model->row(0))}, std::nullopt);
}

void RosterTable::setQuery(const RosterQuery &query) {
    RosterQuery unfolded = model->query();
    unfolded.chip = query.chip;
    changeRows([&] { model->setQuery(query); }, unfolded == query);
    Q_EMIT queryDidChange();
}

/// The students appear where their line was.
void RosterTable::unfold() {
    RosterQuery query = model->query();
    query.chip = RosterChip::everyone;
    const int row = model->studentCount();
    const bool wasCurrent = currentIndex().row() == row;
    setQuery(query);
    if (wasCurrent && query.sort == RosterSort::worstFirst && row < model->studentCount())
        selectRow(row);
}

std::optional<StudentKey> RosterTable::currentStudent() const {
    const QModelIndex current = currentIndex();
    return current.isValid() && !model->isFold(current.row())
        ? std::optional{keyOf(model->row(current.row()))}
        : std::nullopt;
}

void RosterTable::setCompact(bool on) {
    compact = on;
    lay();
    viewport()->update();
}

SharedList<RiskRow> RosterTable::selectedRows() const {
    if (!selected) {
        // Whole rows are selected.
        std::set<int> positions;
        for (const QItemSelectionRange &range : selectionModel()->selection()) {
            for (int row = range.top(); row <= range.bottom(); ++row)
                positions.insert(positions.end(), row);
        }
        std::vector<const RiskRow *> rows;
        rows.reserve(positions.size());
        for (const int row : positions) {
            if (!model->isFold(row))
                rows.push_back(&model->row(row));
        }
        selected = SharedList<RiskRow>::ofElements(std::move(rows), {roster().rows()});
    }
    return *selected;
}

void RosterTable::selectStudents(const std::set<StudentKey> &students) {
    const RosterQuery wider = roster().revealing(query(), students);
    if (wider != query())
        setQuery(wider);
    const QModelIndex first = select(students, std::nullopt);
    if (first.isValid())
        scrollTo(first);
}

QModelIndex
RosterTable::select(const std::set<StudentKey> &students, std::optional<StudentKey> current) {
    QItemSelection selection;
    QModelIndex first;
    QModelIndex kept;
    for (int row = 0; row < model->studentCount(); ++row) {
        const StudentKey key = keyOf(model->row(row));
        if (current && key == *current)
            kept = model->index(row, RosterModel::student);
        if (!students.contains(key))
            continue;
        // One range for rows in a row: a selection of many ranges takes quadratic time.
        const QModelIndex last = model->index(row, RosterModel::columns - 1);
        if (!selection.isEmpty() && selection.last().bottom() == row - 1)
            selection.last() = QItemSelectionRange(selection.last().topLeft(), last);
        else
            selection.select(model->index(row, 0), last);
        if (!first.isValid())
            first = model->index(row, RosterModel::student);
    }
    if (const QModelIndex at = kept.isValid() ? kept : first; at.isValid()) {
        // The view would scroll to it.
        const bool scrolls = hasAutoScroll();
        setAutoScroll(false);
        selectionModel()->setCurrentIndex(at, QItemSelectionModel::NoUpdate);
        setAutoScroll(scrolls);
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    return first;
}

void RosterTable::sortBy(RosterSort sort) {
    setQuery(sortedBy(model->query(), sort));
}

void RosterTable::showSortIndicator() {
    const RosterQuery &query = model->query();
    QHeaderView *header = horizontalHeader();
    header->setSortIndicatorShown(query.sort != RosterSort::worstFirst);
    for (int column = 0; column < RosterModel::columns; ++column) {
        if (RosterModel::sortOf(column) == query.sort)
            header->setSortIndicator(
                column, query.descending ? Qt::DescendingOrder : Qt::AscendingOrder);
    }
}

/// The width of a column for the widest text that it usually has. The texts that differ most are
/// compared by their length, so that no row has to be measured.
int RosterTable::figureWidth(int column, const QFontMetrics &metrics) const {
    QString widest;
    switch (column) {
    case RosterModel::course:
        for (int row = 0; row < model->studentCount(); ++row) {
            const std::string &code = roster().courseCode(model->row(row));
            if (qsizetype(code.size()) > widest.size())
                widest = qstring(code);
        }
        break;
    case RosterModel::score:
        widest = QStringLiteral("100% · A−");
        break;
    case RosterModel::lastActive:
        widest = QStringLiteral("100 days ago");
        break;
    case RosterModel::contacted:
        widest = QStringLiteral("Sep 30 no change");
        break;
    default:
        break;
    }
    return metrics.horizontalAdvance(widest);
}

/// Lays out columns and rows for the width of the view. Without rows another view is shown, and the
/// fonts need not be loaded yet.
void RosterTable::lay() {
    if (model->rowCount() == 0) {
        delegate->forgetTexts();
        return;
    }
    showSortIndicator();
    const int padding = delegate->horizontalPadding();
    const QFontMetrics metrics(appearance.font());
    const QFontMetrics bold(appearance.font(1, QFont::DemiBold));
    const bool term = !courseID.has_value();
    const int arrow = bold.horizontalAdvance(u'↑') + appearance.px(5);
    const int levels = delegate->leftMargin() +
        pillSize(appearance.style(), QStringLiteral("Concern")).width() + arrow;
    std::array<int, RosterModel::columns> widths{};
    int figures = 0;
    for (int column = RosterModel::course; column < RosterModel::columns; ++column) {
        if (column == RosterModel::course && !term)
            continue;
        const QString heading =
            model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        const bool sorted = RosterModel::sortOf(column) == query().sort;
        int width = std::max(
            bold.horizontalAdvance(heading) + (sorted ? appearance.px(16) : 0),
            figureWidth(column, metrics));
        if (column == RosterModel::course)
            width = std::min(width, appearance.px(150));
        widths[std::size_t(column)] = width + 2 * padding + 1;
        figures += widths[std::size_t(column)];
    }
    const int total = viewport()->width();
    RowForm form{.compact = compact, .severalCourses = term};
    form.narrow = total - levels - figures < appearance.px(minNameWidth);
    const int all = total - levels - (form.narrow ? 0 : figures);
    const int student = form.narrow ? std::max(1, all) : std::min(all, appearance.px(maxTextWidth));
    form.nameLeft = levels + padding;
    form.nameWidth = std::max(1, student - 2 * padding);
    form.textLeft = form.narrow ? delegate->leftMargin() : form.nameLeft;
    form.textWidth =
        std::max(1, std::min(total - form.textLeft - padding, appearance.px(maxTextWidth)));
    if (compact) {
        // The names have up to half of the column, and the first reason the rest.
        std::size_t longest = 0;
        for (int row = 0; row < model->studentCount(); ++row)
            longest = std::max(longest, model->row(row).name.size());
        const int names = std::min(
            form.nameWidth / 2,
            bold.averageCharWidth() * int(std::min<std::size_t>(longest + 2, 24)));
        form.textLeft = form.nameLeft + names + padding;
        form.textWidth = std::max(1, form.nameWidth - names - padding);
        form.nameWidth = names;
    } else {
        // Room for a long sentence and the number of the others.
        const QFontMetrics reasons(reasonFont(appearance));
        const int sentence = reasons.horizontalAdvance(
            QStringLiteral("20 of 30 assignments missing — 100% of the grade and 4 more reasons"));
        constexpr int maxLines = 4;
        form.reasonLines = std::clamp((sentence * 6 / 5 - 1) / form.textWidth + 1, 1, maxLines);
        if (sentence <= form.textWidth)
            form.reasonLines = 1;
    }
    form.right =
        std::min(total - delegate->leftMargin(), levels + padding + appearance.px(maxTextWidth));
    delegate->setForm(form);

    setColumnWidth(RosterModel::level, levels);
    setColumnWidth(RosterModel::student, student);
    for (int column = RosterModel::course; column < RosterModel::columns; ++column) {
        const int width = form.narrow ? 0 : widths[std::size_t(column)];
        setColumnHidden(column, width == 0);
        if (width > 0)
            setColumnWidth(column, width);
    }
    // The rest of a wide window.
    if (!form.narrow)
        setColumnWidth(
            RosterModel::contacted, widths[RosterModel::contacted] + std::max(0, all - student));
    QHeaderView *heights = verticalHeader();
    heights->setDefaultSectionSize(delegate->normalHeight());
    for (int row = 0; row < model->rowCount(); ++row) {
        const int height = delegate->heightOf(row);
        if (height != heights->sectionSize(row))
            heights->resizeSection(row, height);
    }
}

void RosterTable::paintEvent(QPaintEvent *event) {
    QTableView::paintEvent(event);
    QPainter painter(viewport());
    painter.setClipRegion(event->region());
    const int height = viewport()->height();
    for (int row = std::max(0, rowAt(0)); row < model->rowCount(); ++row) {
        const int top = rowViewportPosition(row);
        if (top > height)
            break;
        delegate->paintText(painter, {0, top, viewport()->width(), rowHeight(row)}, row);
    }
}

void RosterTable::resizeEvent(QResizeEvent *event) {
    QTableView::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        lay();
}

void RosterTable::keyPressEvent(QKeyEvent *event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const QModelIndex current = currentIndex();
    if (!enter || !current.isValid())
        QTableView::keyPressEvent(event);
    else if (model->isFold(current.row()))
        unfold();
    else
        Q_EMIT detailsRequested();
}

void RosterTable::leaveEvent(QEvent *event) {
    delegate->clearHover();
    QTableView::leaveEvent(event);
}

void RosterTable::selectionChanged(
    const QItemSelection &newlySelected, const QItemSelection &deselected) {
    selected.reset();
    QTableView::selectionChanged(newlySelected, deselected);
    if (!changingRows)
        Q_EMIT selectionDidChange();
}

void RosterTable::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    QTableView::currentChanged(current, previous);
    viewport()->update();
}

/// The cursor moves by rows: Left and Right do nothing; Home and End go to the first and last row.
QModelIndex RosterTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    if (action == MoveLeft || action == MoveRight)
        return currentIndex();
    if (action == MoveHome || action == MoveEnd)
        modifiers |= Qt::ControlModifier;
    QModelIndex next = QTableView::moveCursor(action, modifiers);
    return next.isValid() ? next.siblingAtColumn(RosterModel::student) : next;
}

} // namespace ellwynd
