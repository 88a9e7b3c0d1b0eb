#include "ui/write/writelist.h"

#include "app/courses/courselabel.h"
#include "ui/support/appearance.h"
#include "ui/support/levelpill.h"
#include "uikit/convert.h"
#include "uikit/pill.h"
#include "uikit/tooltip.h"

#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>

namespace ellwynd {

namespace {

using Progress = WriteSession::Progress;

QString progressText(Progress progress) {
    switch (progress) {
    case Progress::copied:
        return QStringLiteral("copied");
    case Progress::skipped:
        return QStringLiteral("skipped");
    case Progress::waiting:
        break;
    }
    return QStringLiteral("not copied yet");
}

/// Draws a tick, the name and the level in one line.
class WriteDelegate : public QStyledItemDelegate {
  public:
    WriteDelegate(const WriteModel &model, const Appearance &appearance, QObject *parent)
        : QStyledItemDelegate(parent), model(model), appearance(appearance) {}

    [[nodiscard]] QSize sizeHint(
        const QStyleOptionViewItem & /*option*/, const QModelIndex & /*index*/) const override {
        return {appearance.px(80), QFontMetrics(appearance.font()).height() + appearance.px(10)};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index)
        const override {
        const Theme &theme = appearance.theme();
        const WriteSession::Student &student = model.at(index.row());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (option.state.testFlag(QStyle::State_Selected)) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(theme.selection);
            painter->drawRoundedRect(option.rect, 4, 4);
        }
        QRect line = option.rect.adjusted(appearance.px(6), 0, -appearance.px(6), 0);
        const int mark = appearance.px(18);
        if (student.progress != Progress::waiting) {
            const bool copied = student.progress == Progress::copied;
            painter->setFont(appearance.font(1, QFont::Bold));
            painter->setPen(copied ? theme.ok.text : theme.secondaryText);
            painter->drawText(
                line, Qt::AlignLeft | Qt::AlignVCenter,
                copied ? QStringLiteral("✓") : QStringLiteral("–"));
        }
        line.setLeft(line.left() + mark);
        if (const std::optional<RiskLevel> level = student.row.level) {
            const QString text = qstring(levelName(level));
            const QSize size = pillSize(appearance.style(), text, compactPill);
            const QRect pill(
                {line.right() - size.width(), line.center().y() - size.height() / 2}, size);
            drawPill(
                *painter, pill, text, levelColors(theme, *level), appearance.style(), compactPill);
            line.setRight(pill.left() - appearance.px(6));
        }
        painter->setFont(appearance.font());
        painter->setPen(student.progress == Progress::waiting ? theme.text : theme.secondaryText);
        painter->drawText(
            line, Qt::AlignLeft | Qt::AlignVCenter,
            painter->fontMetrics().elidedText(
                index.data().toString(), Qt::ElideRight, line.width()));
        painter->restore();
    }

  private:
    const WriteModel &model;
    const Appearance &appearance;
};

} // namespace

WriteModel::WriteModel(const WriteSession &session, QObject *parent)
    : QAbstractListModel(parent), session(session), rows(int(session.students().size())) {}

int WriteModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : rows;
}

QVariant WriteModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const WriteSession::Student &student = at(index.row());
    const QString name = qstring(collapsed(student.row.name));
    switch (role) {
    case Qt::DisplayRole:
        return name;
    case Qt::ToolTipRole:
        return plainToolTip(name);
    case Qt::AccessibleTextRole:
        return QStringLiteral("%1, %2, %3")
            .arg(name, qstring(levelName(student.row.level)), progressText(student.progress));
    default:
        return {};
    }
}

void WriteModel::update() {
    const int count = int(session.students().size());
    if (count > rows) {
        beginInsertRows({}, rows, count - 1);
        rows = count;
        endInsertRows();
    }
    if (rows > 0)
        Q_EMIT dataChanged(index(0), index(rows - 1));
}

WriteList::WriteList(const WriteSession &session, const Appearance &appearance, QWidget *parent)
    : QListView(parent), session(session), students(new WriteModel(session, this)) {
    setModel(students);
    setItemDelegate(new WriteDelegate(*students, appearance, this));
    setObjectName(QStringLiteral("writeStudents"));
    setAccessibleName(QStringLiteral("Students"));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformItemSizes(true);
    update();
}

void WriteList::update() {
    const QScopedValueRollback guard(isUpdating, true);
    students->update();
    if (const auto current = session.current())
        setCurrentIndex(students->index(int(*current)));
    else
        setCurrentIndex({});
}

int WriteList::heightOf(int count) const {
    return count * sizeHintForRow(0) + 2 * frameWidth() + 2;
}

void WriteList::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    QListView::currentChanged(current, previous);
    if (!isUpdating && current.isValid())
        Q_EMIT studentRequested(std::size_t(current.row()));
}

} // namespace ellwynd
