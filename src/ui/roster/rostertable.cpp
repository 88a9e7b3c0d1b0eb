#include "ui/roster/rostertable.h"

#include "ui/roster/rosterdelegate.h"
#include "ui/support/appearance.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

namespace ellwynd {

RosterTable::RosterTable(const Appearance &appearance, QWidget *parent)
    : QTableView(parent),
      appearance(appearance),
      model(new RosterModel(this)),
      filter(new RosterFilter(this)),
      delegate(new RosterDelegate(appearance, *filter, this)) {
    filter->setSourceModel(model);
    QTableView::setModel(filter);
    setItemDelegate(delegate);
    model->hiddenNames = [this](const RiskRow &row) { return delegate->hiddenNames(row); };
    setAccessibleName(QStringLiteral("Students"));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setShowGrid(false);
    setMouseTracking(true);
    setTabKeyNavigation(false);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(false);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setFocusPolicy(Qt::NoFocus);
    horizontalHeader()->setTextElideMode(Qt::ElideRight);
    setColumnHidden(RosterModel::course, true);

    // Row heights depend on a column's width, so they are computed after all width changes.
    rowSizing.setSingleShot(true);
    rowSizing.setInterval(0);
    connect(&rowSizing, &QTimer::timeout, this, &RosterTable::sizeRows);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &RosterTable::sortClicked);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column) {
        if (column == RosterModel::why)
            rowSizing.start();
    });
    connect(filter, &QAbstractItemModel::layoutChanged, &rowSizing, qOverload<>(&QTimer::start));
    connect(filter, &QAbstractItemModel::rowsInserted, &rowSizing, qOverload<>(&QTimer::start));
    connect(delegate, &RosterDelegate::rowHeightDidChange, this, [this](const QModelIndex &index) {
        resizeRowToContents(index.row());
    });
    connect(delegate, &RosterDelegate::gradesRequested, this, &RosterTable::gradesRequested);
    connect(
        delegate, &RosterDelegate::assignmentRequested, this, &RosterTable::assignmentRequested);
    connect(&appearance, &Appearance::appearanceDidChange, this, [this] {
        sizeColumns();
        rowSizing.start();
    });
}

void RosterTable::setRoster(const RosterView &roster, Date now) {
    // A roster that was read again stays where the teacher left it.
    const bool isSame = roster.courseID == courseID && roster.title == title;
    courseID = roster.courseID;
    title = roster.title;
    std::set<StudentKey> selected;
    for (const RiskRow &row : selectedRows())
        selected.insert(keyOf(row));
    const std::optional<StudentKey> current = currentStudent();
    const int scrolledTo = verticalScrollBar()->value();
    {
        const QScopedValueRollback guard(changingRows, true);
        setColumnHidden(RosterModel::course, roster.courseID.has_value());
        model->setRoster(roster, now);
        sizeColumns();
        sizeRows();
        select(selected, current);
        // The range of the scroll bar is otherwise computed later.
        updateGeometries();
        verticalScrollBar()->setValue(isSame ? scrolledTo : 0);
    }
    Q_EMIT selectionDidChange();
}

std::optional<StudentKey> RosterTable::currentStudent() const {
    const QModelIndex current = currentIndex();
    return current.isValid() ? std::optional{keyOf(filter->row(current))} : std::nullopt;
}

void RosterTable::setFilter(const QString &typed) {
    filter->setWords(typed);
}

void RosterTable::setCompact(bool on) {
    delegate->setCompact(on);
    delegate->collapseAll();
    sizeRows();
    viewport()->update();
}

std::vector<RiskRow> RosterTable::selectedRows() const {
    QModelIndexList indexes = selectionModel()->selectedRows();
    std::ranges::sort(indexes, {}, &QModelIndex::row);
    std::vector<RiskRow> rows;
    for (const QModelIndex &index : indexes)
        rows.push_back(filter->row(index));
    return rows;
}

void RosterTable::selectStudents(const std::set<StudentKey> &students) {
    const QModelIndex first = select(students, std::nullopt);
    if (first.isValid())
        scrollTo(first);
}

QModelIndex
RosterTable::select(const std::set<StudentKey> &students, std::optional<StudentKey> current) {
    QItemSelection selection;
    QModelIndex first;
    QModelIndex kept;
    for (int row = 0; row < filter->rowCount(); ++row) {
        const QModelIndex index = filter->index(row, 0);
        const StudentKey key = keyOf(filter->row(index));
        if (current && key == *current)
            kept = filter->index(row, RosterModel::student);
        if (!students.contains(key))
            continue;
        selection.select(index, filter->index(row, RosterModel::columns - 1));
        if (!first.isValid())
            first = filter->index(row, RosterModel::student);
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

void RosterTable::sortClicked(int column) {
    QHeaderView *header = horizontalHeader();
    const bool sorted = header->isSortIndicatorShown() && filter->sortColumn() == column;
    if (sorted && filter->sortOrder() == Qt::DescendingOrder) {
        header->setSortIndicatorShown(false);
        filter->sort(-1);
    } else {
        const auto order = sorted ? Qt::DescendingOrder : Qt::AscendingOrder;
        header->setSortIndicatorShown(true);
        header->setSortIndicator(column, order);
        filter->sort(column, order);
    }
    // The "Why" column makes room for the sort arrow.
    const int missing = horizontalHeader()->sectionSizeHint(column) - columnWidth(column);
    if (missing > 0 && column != RosterModel::why) {
        setColumnWidth(column, columnWidth(column) + missing);
        setColumnWidth(RosterModel::why, columnWidth(RosterModel::why) - missing);
    }
}

/// Gives every column the width of its contents, up to a limit, and "Why" the rest.
void RosterTable::sizeColumns() {
    struct Limit {
        int column;
        double maxWidth;
    };
    constexpr Limit limits[] = {{RosterModel::level, 130},    {RosterModel::student, 150},
                                {RosterModel::course, 130},   {RosterModel::score, 110},
                                {RosterModel::missing, 100},  {RosterModel::lastActive, 120},
                                {RosterModel::contacted, 120}};
    const QFontMetrics bold(appearance.font(1, QFont::DemiBold));
    const QFontMetrics regular(appearance.font());
    int taken = 0;
    for (const auto [column, maxWidth] : limits) {
        if (isColumnHidden(column))
            continue;
        const QFontMetrics &metrics = column == RosterModel::student ? bold : regular;
        const bool sorted =
            horizontalHeader()->isSortIndicatorShown() && filter->sortColumn() == column;
        int width = bold.horizontalAdvance(
                        model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString()) +
            appearance.px(sorted ? 32 : 20);
        for (int row = 0; row < model->rowCount(); ++row) {
            const QString text = model->index(row, column).data().toString();
            const int padding = appearance.px(column == RosterModel::level ? 52 : 21);
            width = std::max(width, metrics.horizontalAdvance(text) + padding);
        }
        width = std::min(width, appearance.px(maxWidth));
        if (column == RosterModel::course)
            width = std::min(width, viewport()->width() / 6);
        setColumnWidth(column, width);
        taken += width;
    }
    // In a narrow window names shrink first; after that the table scrolls.
    const int minWhyWidth = std::min(appearance.px(200), viewport()->width() / 2);
    const int names = columnWidth(RosterModel::student);
    const int cut = std::clamp(
        minWhyWidth + taken - viewport()->width(), 0, std::max(0, names - appearance.px(90)));
    setColumnWidth(RosterModel::student, names - cut);
    setColumnWidth(RosterModel::why, std::max(minWhyWidth, viewport()->width() - taken + cut));
}

void RosterTable::sizeRows() {
    rowSizing.stop();
    if (filter->rowCount() > 0)
        resizeRowsToContents();
}

void RosterTable::resizeEvent(QResizeEvent *event) {
    QTableView::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        sizeColumns();
}

void RosterTable::keyPressEvent(QKeyEvent *event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && currentIndex().isValid())
        delegate->expand(currentIndex());
    else
        QTableView::keyPressEvent(event);
}

void RosterTable::leaveEvent(QEvent *event) {
    delegate->clearHover();
    QTableView::leaveEvent(event);
}

void RosterTable::selectionChanged(
    const QItemSelection &selected, const QItemSelection &deselected) {
    QTableView::selectionChanged(selected, deselected);
    if (!changingRows)
        Q_EMIT selectionDidChange();
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
