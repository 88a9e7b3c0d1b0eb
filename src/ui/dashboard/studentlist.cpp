#include "ui/dashboard/studentlist.h"

#include "outputs/messages/messagetemplate.h"
#include "ui/dashboard/studentlistdelegate.h"
#include "ui/dashboard/studentlistmodel.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QPushButton>

#include <algorithm>

namespace ellwynd {

StudentList::StudentList(const Appearance &appearance, QWidget *parent)
    : QListView(parent),
      appearance(appearance),
      students(new StudentListModel(this)),
      delegate(new StudentListDelegate(appearance, *students, this)),
      commands(new QWidget(viewport())),
      write(new QPushButton(commands)),
      contacted(new QPushButton(QStringLiteral("Mark as Contacted"), commands)) {
    setAccessibleName(QStringLiteral("Needs you first"));
    setObjectName(QStringLiteral("students"));
    setModel(students);
    setItemDelegate(delegate);
    setUniformItemSizes(true);
    setFrameShape(QFrame::NoFrame);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMouseTracking(true);
    viewport()->installEventFilter(this);

    write->setProperty("primary", true);
    for (QPushButton *button : {write, contacted}) {
        button->setProperty("tight", true);
        button->setAutoDefault(false);
    }
    auto *row = new QHBoxLayout(commands);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(write);
    row->addWidget(contacted);
    commands->hide();
    connect(write, &QPushButton::clicked, this, [this] {
        setCurrentIndex(commandRow());
        Q_EMIT writeRequested(selectedRows());
    });
    connect(contacted, &QPushButton::clicked, this, [this] {
        setCurrentIndex(commandRow());
        Q_EMIT contactsRequested(selectedRows());
    });
    connect(this, &QListView::activated, this, [this](const QModelIndex &index) {
        Q_EMIT studentRequested(keyOf(*students->student(index).row));
    });
    connect(&appearance, &Appearance::appearanceDidChange, this, &StudentList::applyAppearance);
    applyAppearance();
}

void StudentList::setStudents(SharedList<DashboardStudent> newStudents, bool remembersContacts) {
    contacted->setEnabled(remembersContacts);
    if (newStudents == students->students())
        return;
    const QModelIndex current = currentIndex();
    const int oldRow = current.row();
    const auto key = current.isValid() ? keyOf(*students->student(current).row) : StudentKey{};
    students->setStudents(std::move(newStudents), remembersContacts);
    delegate->measureNames();
    measure();
    hovered = QModelIndex();
    const int count = students->rowCount();
    if (oldRow >= 0 && count > 0) {
        const auto same = std::ranges::find_if(
            students->students(), [&](const auto &student) { return keyOf(*student.row) == key; });
        const auto found = int(same - students->students().begin());
        setCurrentIndex(students->index(found < count ? found : std::min(oldRow, count - 1)));
    }
    showCommands(commandRow());
    Q_EMIT selectionDidChange();
}

SharedList<RiskRow> StudentList::selectedRows() const {
    const QModelIndex current = currentIndex();
    if (!current.isValid())
        return {};
    return {*students->student(current).row};
}

int StudentList::contentsHeight() const {
    return delegate->rowHeight() * students->rowCount();
}

QSize StudentList::sizeHint() const {
    return {appearance.px(300), contentsHeight()};
}

QSize StudentList::minimumSizeHint() const {
    return {appearance.px(120), contentsHeight()};
}

void StudentList::applyAppearance() {
    const int height = appearance.px(26);
    for (QPushButton *button : {write, contacted}) {
        button->setFont(appearance.font(0.92));
        button->setFixedHeight(height);
    }
    commands->layout()->setSpacing(appearance.px(6));
    delegate->measureNames();
    measure();
    updateGeometry();
    showCommands(commandRow());
}

void StudentList::measure() {
    const int height = delegate->rowHeight();
    delegate->setWidth(width());
    if (delegate->rowHeight() == height && contentsHeight() == minimumHeight())
        return;
    setFixedHeight(contentsHeight());
    scheduleDelayedItemsLayout();
}

QModelIndex StudentList::commandRow() const {
    if (hovered.isValid())
        return hovered;
    return hasFocus() || commands->isAncestorOf(focusWidget()) ? currentIndex() : QModelIndex();
}

void StudentList::showCommands(const QModelIndex &index) {
    viewport()->update();
    commands->setVisible(index.isValid());
    if (!index.isValid()) {
        delegate->setCommands(-1, 0);
        return;
    }
    const QString name = index.data().toString();
    const bool isNarrow = delegate->isNarrow();
    write->setText(
        isNarrow ? QStringLiteral("Write…")
                 : QStringLiteral("Write to %1…")
                       .arg(menuText(firstNameOf(students->student(index).row->name))));
    write->setAccessibleName(QStringLiteral("Write to %1").arg(name));
    write->setMaximumWidth(width() / 3);
    contacted->setText(isNarrow ? QStringLiteral("✓") : QStringLiteral("Mark as Contacted"));
    contacted->setAccessibleName(QStringLiteral("Mark %1 as contacted").arg(name));
    contacted->setToolTip(isNarrow ? QStringLiteral("Mark as Contacted") : QString());
    // Their size is otherwise that without the style sheet before they are first shown.
    for (QPushButton *button : {write, contacted})
        button->ensurePolished();
    commands->layout()->invalidate();
    commands->adjustSize();
    delegate->setCommands(index.row(), commands->width() + appearance.px(12));
    const QRect row = visualRect(index);
    const QRect place = isNarrow ? delegate->nameLine(row) : row;
    commands->move(
        row.right() - commands->width() - appearance.px(10),
        place.center().y() - commands->height() / 2);
}

bool StudentList::eventFilter(QObject *object, QEvent *event) {
    if (object == viewport()) {
        if (event->type() == QEvent::MouseMove) {
            const QModelIndex under =
                indexAt(static_cast<QMouseEvent *>(event)->position().toPoint());
            if (under != hovered) {
                hovered = under;
                showCommands(commandRow());
            }
        } else if (event->type() == QEvent::Leave) {
            hovered = QModelIndex();
            showCommands(commandRow());
        }
    }
    return QListView::eventFilter(object, event);
}

void StudentList::resizeEvent(QResizeEvent *event) {
    QListView::resizeEvent(event);
    measure();
    showCommands(commandRow());
}

void StudentList::focusInEvent(QFocusEvent *event) {
    QListView::focusInEvent(event);
    if (!currentIndex().isValid() && students->rowCount() > 0)
        setCurrentIndex(students->index(0));
    showCommands(commandRow());
}

void StudentList::keyPressEvent(QKeyEvent *event) {
    // Activation by key is otherwise left to the style.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        currentIndex().isValid()) {
        Q_EMIT activated(currentIndex());
        return;
    }
    QListView::keyPressEvent(event);
}

void StudentList::contextMenuEvent(QContextMenuEvent *event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isByKey ? currentIndex() : indexAt(event->pos());
    if (!index.isValid())
        return;
    setCurrentIndex(index);
    const QPoint position =
        isByKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos();
    Q_EMIT contextMenuRequested(position);
}

void StudentList::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    QListView::currentChanged(current, previous);
    showCommands(commandRow());
    if (current.isValid() && hasFocus())
        Q_EMIT rowShown(visualRect(current));
    Q_EMIT selectionDidChange();
}

/// The page scrolls, not the list.
void StudentList::wheelEvent(QWheelEvent *event) {
    event->ignore();
}

} // namespace ellwynd
