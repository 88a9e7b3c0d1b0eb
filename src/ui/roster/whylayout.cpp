#include "ui/roster/whylayout.h"

#include "app/roster/rostertexts.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextOption>

#include <cmath>

namespace ellwynd {

namespace {

const QString separator = QStringLiteral(", ");

/// A name without line breaks and control characters.
QString inLine(const std::string &name) {
    QString text = qstring(name);
    for (QChar &c : text) {
        if (c.isSpace() || c.category() == QChar::Other_Control)
            c = u' ';
    }
    return text;
}

} // namespace

WhyLayout::WhyLayout(const RiskRow &row, int width, Form form, const Appearance &appearance)
    : appearance(appearance) {
    if (row.reasonLines.empty())
        return;
    if (form == Form::compact) {
        text = QFontMetrics(appearance.font())
                   .elidedText(qstring(row.reasonLines.front().text), Qt::ElideRight, width);
    } else {
        addSentences(row);
        addLinks(missingAssignments(row), width, form == Form::expanded);
    }
    lay(width);
}

void WhyLayout::append(const QString &label, WhyTarget target, bool plain) {
    spans.push_back({int(text.size()), int(label.size()), std::move(target), plain});
    text += label;
}

void WhyLayout::addSentences(const RiskRow &row) {
    for (const ReasonLine &line : row.reasonLines) {
        if (!text.isEmpty())
            text += QStringLiteral(" · ");
        if (line.role == ReasonRole::currentScore)
            append(qstring(line.text), GradesTarget{}, true);
        else
            text += qstring(line.text);
    }
}

/// Adds as many names as fit on one line, and a link for the rest.
void WhyLayout::addLinks(const std::vector<AssignmentRef> &missing, int width, bool all) {
    if (missing.empty())
        return;
    text += QChar::LineSeparator;
    const QFontMetrics metrics(appearance.font());
    const int lineStart = int(text.size());
    for (std::size_t i = 0; i < missing.size(); ++i) {
        const std::size_t hidden = missing.size() - i - 1;
        QString name = inLine(missing[i].name);
        const QString more = qstring(moreText(hidden + 1));
        if (!all) {
            // The first name is elided to fit. Others are added while the "more" link still fits
            // after them.
            const QString tail = hidden > 0 ? separator + qstring(moreText(hidden)) : QString();
            const QString line = text.mid(lineStart);
            const int available = width - metrics.horizontalAdvance(tail);
            if (i == 0) {
                name = metrics.elidedText(name, Qt::ElideRight, available);
            } else if (metrics.horizontalAdvance(line + separator + name) > available) {
                text += separator;
                append(more, ShowMore{hidden + 1}, false);
                return;
            }
        }
        if (i > 0)
            text += separator;
        append(name, missing[i], false);
    }
}

void WhyLayout::lay(int width) {
    const Theme &theme = appearance.theme();
    layout = std::make_unique<QTextLayout>(text, appearance.font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout->setTextOption(option);
    QList<QTextLayout::FormatRange> formats;
    for (const Span &span : spans) {
        if (span.plain)
            continue;
        QTextCharFormat format;
        format.setForeground(theme.link);
        formats.push_back({span.start, span.length, format});
    }
    layout->setFormats(formats);
    layout->setCacheEnabled(true);
    layout->beginLayout();
    double y = 0;
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLineWidth(std::max(1, width));
        line.setPosition({0, y});
        y += std::ceil(line.height() * 1.06);
    }
    layout->endLayout();
}

std::size_t WhyLayout::hiddenNames() const {
    const auto *more = spans.empty() ? nullptr : std::get_if<ShowMore>(&spans.back().target);
    return more != nullptr ? more->hidden : 0;
}

int WhyLayout::height() const {
    if (!layout || layout->lineCount() == 0)
        return 0;
    const QTextLine last = layout->lineAt(layout->lineCount() - 1);
    return int(std::ceil(last.y() + last.height()));
}

void WhyLayout::draw(
    QPainter &painter, QPoint topLeft, const std::optional<WhyTarget> &hovered) const {
    if (!layout)
        return;
    painter.setPen(appearance.theme().secondaryText);
    QList<QTextLayout::FormatRange> over;
    for (const Span &span : spans) {
        if (hovered && span.target == *hovered) {
            QTextCharFormat format;
            format.setFontUnderline(true);
            format.setForeground(appearance.theme().link);
            over.push_back({span.start, span.length, format});
        }
    }
    layout->draw(&painter, topLeft, over);
}

std::optional<WhyTarget> WhyLayout::targetAt(QPoint point) const {
    for (int i = 0; layout && i < layout->lineCount(); ++i) {
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
