#include "ui/find/findlist.h"

#include "app/courses/courselabel.h"
#include "ui/support/appearance.h"
#include "ui/support/levelpill.h"
#include "uikit/convert.h"
#include "uikit/painting.h"
#include "uikit/pill.h"
#include "uikit/tooltip.h"

#include <QPainter>
#include <QStyledItemDelegate>
#include <QTextLayout>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr double detailSize = 0.92;

QString kindName(FoundKind kind) {
    switch (kind) {
    case FoundKind::student:
        return QStringLiteral("Student");
    case FoundKind::course:
        return QStringLiteral("Course");
    case FoundKind::term:
        return QStringLiteral("Term");
    case FoundKind::command:
        break;
    }
    return QStringLiteral("Command");
}

/// The level of a student, and what everything else is.
QString markText(const FindEntry &entry) {
    return entry.kind == FoundKind::student ? qstring(levelName(entry.level))
                                            : kindName(entry.kind);
}

/// Draws a name with its detail below it, and at the right a student's level or what else it is.
class FindDelegate : public QStyledItemDelegate {
  public:
    FindDelegate(const FindModel &model, const Appearance &appearance, QObject *parent)
        : QStyledItemDelegate(parent), model(model), appearance(appearance) {}

    [[nodiscard]] QSize sizeHint(
        const QStyleOptionViewItem & /*option*/, const QModelIndex & /*index*/) const override {
        return {
            appearance.px(120),
            titleHeight() + QFontMetrics(appearance.font(detailSize)).height() +
                2 * appearance.px(5)};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index)
        const override {
        const Theme &theme = appearance.theme();
        const FindEntry &entry = model.at(index.row());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (option.state.testFlag(QStyle::State_Selected)) {
            const bool focused = option.state.testFlag(QStyle::State_HasFocus);
            painter->setPen(focused ? QPen(theme.accent, 2) : QPen(Qt::NoPen));
            painter->setBrush(theme.selection);
            painter->drawRoundedRect(QRectF(option.rect).adjusted(1, 1, -1, -1), 5, 5);
        } else if (option.state.testFlag(QStyle::State_MouseOver)) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(theme.hover);
            painter->drawRoundedRect(QRectF(option.rect).adjusted(1, 1, -1, -1), 5, 5);
        }
        QRect text = option.rect.adjusted(
            appearance.px(8), appearance.px(5), -appearance.px(8), -appearance.px(5));
        text.setRight(drawMark(*painter, text, entry) - appearance.px(8));
        drawTitle(*painter, text, entry);
        painter->setFont(appearance.font(detailSize));
        painter->setPen(theme.secondaryText);
        drawElided(
            *painter, text.adjusted(0, titleHeight(), 0, 0), Qt::AlignLeft | Qt::AlignTop,
            qstring(entry.detail));
        painter->restore();
    }

  private:
    [[nodiscard]] QFont titleFont() const { return appearance.font(1, QFont::DemiBold); }
    [[nodiscard]] int titleHeight() const { return QFontMetrics(titleFont()).height(); }

    /// Returns the left edge of what it has drawn.
    int drawMark(QPainter &painter, const QRect &rect, const FindEntry &entry) const {
        const QString text = markText(entry);
        if (entry.level) {
            const QSize size = pillSize(appearance.style(), text, compactPill);
            const QRect pill(
                {rect.right() - size.width(), rect.center().y() - size.height() / 2}, size);
            drawPill(
                painter, pill, text, levelColors(appearance.theme(), *entry.level),
                appearance.style(), compactPill);
            return pill.left();
        }
        painter.setFont(appearance.font(detailSize));
        painter.setPen(appearance.theme().secondaryText);
        drawLine(painter, rect, Qt::AlignRight | Qt::AlignVCenter, text);
        return rect.right() - textWidth(painter.font(), text);
    }

    /// The title with the matching parts marked, at the left in any direction of writing.
    void drawTitle(QPainter &painter, const QRect &rect, const FindEntry &entry) const {
        const Theme &theme = appearance.theme();
        const QString title = QFontMetrics(titleFont())
                                  .elidedText(qstring(entry.title), Qt::ElideRight, rect.width());
        QList<QTextLayout::FormatRange> formats;
        for (const MatchedPart &part : foundParts(entry.title, model.query())) {
            QTextCharFormat format;
            format.setBackground(theme.watch.fill);
            format.setForeground(theme.watch.text);
            formats.push_back({int(part.begin), int(part.length), format});
        }
        QTextLayout layout(title, titleFont());
        QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
        option.setWrapMode(QTextOption::NoWrap);
        layout.setTextOption(option);
        layout.beginLayout();
        QTextLine line = layout.createLine();
        if (line.isValid()) {
            line.setLineWidth(std::max(1, rect.width()));
            // Other fonts, which are used for some scripts, have higher lines.
            line.setPosition({0, (titleHeight() - line.height()) / 2});
        }
        layout.endLayout();
        painter.setPen(theme.text);
        layout.draw(&painter, rect.topLeft(), formats);
    }

    const FindModel &model;
    const Appearance &appearance;
};

} // namespace

int FindModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(entries.size());
}

QVariant FindModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const FindEntry &entry = at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return qstring(entry.title);
    case Qt::ToolTipRole:
        return plainToolTip(qstring(entry.title) + QStringLiteral(" · ") + qstring(entry.detail));
    case Qt::AccessibleTextRole: {
        const QString text = QStringLiteral("%1, %2").arg(qstring(entry.title), markText(entry));
        return entry.detail.empty() ? text : text + QStringLiteral(", ") + qstring(entry.detail);
    }
    default:
        return {};
    }
}

void FindModel::show(std::vector<FindEntry> results, std::string query) {
    beginResetModel();
    entries = std::move(results);
    for (FindEntry &entry : entries) {
        entry.title = collapsed(entry.title);
        entry.detail = collapsed(entry.detail);
    }
    typed = std::move(query);
    endResetModel();
}

FindList::FindList(const Appearance &appearance, QWidget *parent)
    : QListView(parent), results(new FindModel(this)) {
    setModel(results);
    setItemDelegate(new FindDelegate(*results, appearance, this));
    setObjectName(QStringLiteral("findResults"));
    setAccessibleName(QStringLiteral("Results"));
    setFocusPolicy(Qt::TabFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformItemSizes(true);
    viewport()->setAttribute(Qt::WA_Hover);
}

void FindList::show(
    std::vector<FindEntry> entries, std::string query, const std::optional<FindEntry> &current) {
    const auto same = std::ranges::find_if(entries, [&](const FindEntry &entry) {
        return current && entry.kind == current->kind && entry.id == current->id &&
            entry.courseID == current->courseID;
    });
    const int row = same != entries.end() ? int(same - entries.begin()) : 0;
    results->show(std::move(entries), std::move(query));
    scheduleDelayedItemsLayout();
    if (!isEmpty())
        setCurrentIndex(results->index(row));
}

std::optional<FindEntry> FindList::current() const {
    return at(currentIndex());
}

std::optional<FindEntry> FindList::at(const QModelIndex &index) const {
    return index.isValid() ? std::optional{results->at(index.row())} : std::nullopt;
}

int FindList::heightOf(int most) const {
    const int rows = std::min(most, results->rowCount());
    return rows == 0 ? 0 : rows * sizeHintForRow(0) + 2 * frameWidth();
}

} // namespace ellwynd
