#include "ui/details/explainedsentence.h"

#include "ui/support/appearance.h"
#include "uikit/keyboardbutton.h"

#include <QHBoxLayout>
#include <QPainter>

#include <utility>

namespace ellwynd {

namespace {

/// A question mark in a circle.
class HelpMark : public KeyboardButton {
  public:
    explicit HelpMark(const Appearance &appearance) : appearance(appearance) {
        setFixedSize(appearance.px(18), appearance.px(18));
        setFont(appearance.font(0.78, QFont::DemiBold));
        setCursor(Qt::PointingHandCursor);
    }

  protected:
    void paintEvent(QPaintEvent * /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const bool isMarked = hasFocus() || underMouse();
        const QColor color =
            isMarked ? palette().color(QPalette::Link) : appearance.theme().secondaryText;
        painter.setPen(QPen(color, hasFocus() ? 2 : 1));
        painter.drawEllipse(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5));
        painter.setPen(color);
        painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("?"));
    }

  private:
    const Appearance &appearance;
};

} // namespace

ExplainedSentence::ExplainedSentence(
    QWidget *sentence, const QString &text, std::string topic, const Appearance &appearance) {
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(appearance.px(6));
    line->addWidget(sentence, 1);
    auto *mark = new HelpMark(appearance);
    mark->setToolTip(QStringLiteral("What does this mean?"));
    mark->setAccessibleName(mark->toolTip() + QStringLiteral(" ") + text);
    line->addWidget(mark, 0, Qt::AlignTop);
    connect(mark, &QAbstractButton::clicked, this, [this, topic = std::move(topic)] {
        Q_EMIT helpRequested(topic);
    });
}

} // namespace ellwynd
