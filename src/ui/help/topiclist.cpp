#include "ui/help/topiclist.h"

#include "ui/support/appearance.h"
#include "uikit/convert.h"

#include <QPainter>
#include <QStyledItemDelegate>

namespace ellwynd {

namespace {

enum Role { idRole = Qt::UserRole, snippetRole };

constexpr double snippetSize = 0.9;
constexpr int snippetLines = 2;

QString nothingFound() {
    return QStringLiteral("Nothing found");
}

} // namespace

/// A title, with up to two lines of the found text below it.
class TopicList::Delegate : public QStyledItemDelegate {
  public:
    Delegate(const Appearance &appearance, QObject *parent)
        : QStyledItemDelegate(parent), appearance(appearance) {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index)
        const override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const Theme &theme = appearance.theme();
        const QRect tile = option.rect.adjusted(0, 1, 0, -1);
        const bool selected = option.state.testFlag(QStyle::State_Selected);
        if (selected) {
            painter->setPen(
                option.state.testFlag(QStyle::State_HasFocus) ? QPen(theme.accent, 2)
                                                              : QPen(Qt::NoPen));
            painter->setBrush(theme.selection);
            painter->drawRoundedRect(QRectF(tile).adjusted(1, 1, -1, -1), 6, 6);
        }
        QRect text = tile.adjusted(padding(), padding(), -padding(), -padding());
        const QString snippet = index.data(snippetRole).toString();
        const QFont title = appearance.font(1, snippet.isEmpty() ? QFont::Normal : QFont::DemiBold);
        painter->setFont(title);
        painter->setPen(theme.text);
        const QFontMetrics metrics(title);
        painter->drawText(
            text, Qt::AlignTop | Qt::AlignLeft | Qt::TextSingleLine,
            metrics.elidedText(index.data().toString(), Qt::ElideRight, text.width()));
        if (!snippet.isEmpty()) {
            text.setTop(text.top() + metrics.height() + appearance.px(2));
            painter->setFont(appearance.font(snippetSize));
            painter->setPen(theme.secondaryText);
            painter->setClipRect(text);
            painter->drawText(text, Qt::AlignTop | Qt::AlignLeft | Qt::TextWordWrap, snippet);
        }
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const override {
        int height = QFontMetrics(appearance.font()).height() + 2 * padding() + 2;
        if (!index.data(snippetRole).toString().isEmpty()) {
            const QFontMetrics small(appearance.font(snippetSize));
            height += snippetLines * small.lineSpacing() + appearance.px(2);
        }
        return {0, height};
    }

  private:
    [[nodiscard]] int padding() const { return appearance.px(7); }

    const Appearance &appearance;
};

TopicList::TopicList(const Appearance &appearance, QWidget *parent)
    : QListWidget(parent), appearance(appearance) {
    setObjectName(QStringLiteral("helpTopics"));
    setAccessibleName(QStringLiteral("Help topics"));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setItemDelegate(new Delegate(appearance, this));
    connect(&appearance, &Appearance::appearanceDidChange, this, &QListWidget::doItemsLayout);
}

void TopicList::setHits(const std::vector<HelpHit> &hits) {
    clear();
    setAccessibleDescription(hits.empty() ? nothingFound() : QString());
    for (const HelpHit &hit : hits) {
        auto *item = new QListWidgetItem(qstring(hit.topic->title), this);
        item->setData(idRole, qstring(hit.topic->id));
        item->setData(snippetRole, qstring(hit.snippet));
        item->setData(Qt::AccessibleDescriptionRole, qstring(hit.snippet));
    }
}

void TopicList::selectTopic(const std::string &id) {
    for (int i = 0; i < count(); ++i) {
        if (item(i)->data(idRole).toString() == qstring(id)) {
            setCurrentRow(i);
            return;
        }
    }
    setCurrentItem(nullptr);
}

std::string TopicList::selectedTopic() const {
    return currentItem() != nullptr ? currentItem()->data(idRole).toString().toStdString() : "";
}

void TopicList::paintEvent(QPaintEvent *event) {
    QListWidget::paintEvent(event);
    if (count() > 0)
        return;
    QPainter painter(viewport());
    painter.setFont(appearance.font());
    painter.setPen(appearance.theme().secondaryText);
    const int margin = appearance.px(12);
    painter.drawText(
        viewport()->rect().adjusted(margin, margin, -margin, -margin),
        Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, nothingFound());
}

} // namespace ellwynd
