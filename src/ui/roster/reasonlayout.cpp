#include "ui/roster/reasonlayout.h"

#include "app/roster/rosterquery.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/painting.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace ellwynd {

namespace {

const QString separator = QStringLiteral(" · ");
/// Lines of several break at words, which leaves some of their width unused.
constexpr double usedWidth = 0.85;

} // namespace

QFont reasonFont(const Appearance &appearance) {
    return appearance.font(0.94);
}

ReasonLayout::ReasonLayout(
    const RiskRow &row, const QString &match, const Form &form, const Appearance &appearance)
    : appearance(appearance), text(match), matchLength(int(match.size())) {
    addSentences(row, form);
    lay(form);
}

void ReasonLayout::addSentences(const RiskRow &row, const Form &form) {
    const QFont font = reasonFont(appearance);
    const int width = form.lines > 1 ? int(form.width * form.lines * usedWidth) : form.width;
    const auto fits = [&](const std::string &sentences) {
        const QString whole =
            text.isEmpty() ? qstring(sentences) : text + separator + qstring(sentences);
        return fitsWidth(font, whole, width);
    };
    FittedReasons fitted = fittedReasons(row, fits);
    if (form.firstOnly)
        fitted = {.shown = std::min<std::size_t>(1, row.reasonLines.size()), .more = {}};
    for (std::size_t i = 0; i < fitted.shown; ++i) {
        const ReasonLine &line = row.reasonLines[i];
        if (!text.isEmpty())
            text += separator;
        const QString sentence = qstring(line.text);
        if (line.role == ReasonRole::currentScore)
            spans.push_back({int(text.size()), int(sentence.size()), ReasonTarget::grades});
        else if (!line.links.empty())
            spans.push_back({int(text.size()), int(sentence.size()), ReasonTarget::missingWork});
        text += sentence;
    }
    if (!fitted.more.empty())
        text += u' ' + qstring(fitted.more);
    const int available = std::max(1, form.width);
    if (form.lines == 1 && !fitsWidth(font, text, available))
        text = QFontMetrics(font).elidedText(text, Qt::ElideRight, available);
}

void ReasonLayout::lay(const Form &form) {
    layout = std::make_unique<QTextLayout>(text, reasonFont(appearance));
    QTextOption option;
    // A single line was elided.
    option.setWrapMode(
        form.lines == 1 ? QTextOption::NoWrap : QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout->setTextOption(option);
    layout->setCacheEnabled(true);
    layout->beginLayout();
    double y = 0;
    for (int i = 0; i < form.lines; ++i) {
        QTextLine line = layout->createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(std::max(1, form.width));
        line.setPosition({0, y});
        y += std::ceil(line.height());
    }
    layout->endLayout();
}

void ReasonLayout::draw(
    QPainter &painter, QPoint topLeft, std::optional<ReasonTarget> hovered) const {
    const Theme &theme = appearance.theme();
    QList<QTextLayout::FormatRange> formats;
    if (matchLength > 0) {
        QTextCharFormat format;
        format.setForeground(theme.text);
        formats.push_back({0, matchLength, format});
    }
    for (const Span &span : spans) {
        if (hovered != span.target)
            continue;
        QTextCharFormat format;
        format.setFontUnderline(true);
        format.setForeground(theme.link);
        formats.push_back({span.start, span.length, format});
    }
    painter.setPen(theme.secondaryText);
    layout->draw(&painter, topLeft, formats);
}

std::optional<ReasonTarget> ReasonLayout::targetAt(QPoint point) const {
    for (int i = 0; i < layout->lineCount(); ++i) {
        const QTextLine line = layout->lineAt(i);
        if (!line.naturalTextRect().contains(point))
            continue;
        const int cursor = line.xToCursor(point.x(), QTextLine::CursorOnCharacter);
        for (const Span &span : spans) {
            if (cursor >= span.start && cursor < span.start + span.length)
                return span.target;
        }
    }
    return std::nullopt;
}

} // namespace ellwynd
