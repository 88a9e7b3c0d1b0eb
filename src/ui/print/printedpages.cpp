#include "ui/print/printedpages.h"

#include "base/calendar.h"
#include "ui/print/pagewriter.h"
#include "ui/support/levelpill.h"
#include "uikit/convert.h"

#include <QBuffer>
#include <QFontDatabase>
#include <QLocale>
#include <QPageLayout>
#include <QPdfWriter>
#include <QStringList>

#include <algorithm>

namespace ellwynd {

namespace {

using Text = PageWriter::Text;

constexpr double smallSize = 8.5;
constexpr double textSize = 9.5;
constexpr double titleSize = 16;
/// The space for levels, to the left of names.
constexpr double levelWidth = 55;

/// Paper is light, whatever the window is.
const Theme &paper() {
    static const Theme theme = makeTheme(false, "system");
    return theme;
}

/// Not the windows' typeface: some of its glyphs, such as a hyphen between figures, stand for no
/// character, and would be missing from the text of a PDF.
QFont paperFont() {
    QFont font;
    font.setFamilies(
        {QStringLiteral("Noto Sans"), QStringLiteral("DejaVu Sans"),
         QFontDatabase::systemFont(QFontDatabase::GeneralFont).family()});
    return font;
}

void writeTitle(PageWriter &pages, const std::string &title, const std::string &subtitle) {
    pages.paragraph({.text = qstring(title), .size = titleSize, .weight = QFont::Bold});
    pages.space(2);
    pages.paragraph({.text = qstring(subtitle), .size = textSize, .color = paper().secondaryText});
    pages.space(10);
}

void writeLevel(PageWriter &pages, std::optional<RiskLevel> level) {
    if (level)
        pages.pill(qstring(levelName(level)), smallSize, levelColors(paper(), *level));
}

// ---- A roster ----------------------------------------------------------------------------------

/// Figures follow the name instead of being in columns, so that the text of a PDF, such as for a
/// screen reader, is in the order of the rows.
void writeRow(PageWriter &pages, const PrintedRow &row) {
    const Text name{
        .text = qstring(row.name),
        .rest = qstring(row.figures),
        .size = textSize,
        .weight = QFont::DemiBold,
        .left = levelWidth};
    const Text reasons{
        .text = qstring(row.reasons),
        .size = smallSize,
        .color = paper().secondaryText,
        .left = levelWidth};
    pages.keepTogether(pages.heightOf(name) + (row.reasons.empty() ? 0 : pages.heightOf(reasons)));
    writeLevel(pages, row.level);
    pages.paragraph(name);
    if (!row.reasons.empty())
        pages.paragraph(reasons);
    pages.space(3);
    pages.line(paper().separator);
    pages.space(4);
}

void write(PageWriter &pages, const PrintedRoster &roster) {
    writeTitle(pages, roster.title, roster.subtitle);
    for (const PrintedRow &row : roster.rows)
        writeRow(pages, row);
    if (roster.rows.empty())
        pages.paragraph({.text = QStringLiteral("No students.")});
}

// ---- A student ---------------------------------------------------------------------------------

void writeSection(PageWriter &pages, const QString &title) {
    constexpr double withFirstLine = 48;
    pages.keepTogether(withFirstLine);
    pages.space(12);
    pages.line(paper().separator);
    pages.space(6);
    pages.paragraph(
        {.text = title,
         .size = smallSize,
         .weight = QFont::DemiBold,
         .color = paper().secondaryText});
    pages.space(3);
}

/// One dot for each recorded day, with the most severe level on the top row.
class Chart {
  public:
    Chart(const PrintedStudent &student, const QRectF &rect)
        : student(student),
          points(student.trend->points),
          font(paperFont()),
          area(rect.adjusted(labelWidth, rowHeight / 2, -radius, -2 * rowHeight)) {
        // The painter is scaled to points.
        font.setPixelSize(fontSize);
    }

    void draw(QPainter &painter) const {
        painter.setFont(font);
        for (int severityOfRow = 0; severityOfRow < rows; ++severityOfRow)
            drawRow(painter, severityOfRow);
        drawDays(painter);
        painter.setPen(QPen(paper().secondaryText, 0.7, Qt::DashLine));
        for (std::size_t i = 1; i < points.size(); ++i) {
            if (isJoined(points[i - 1], points[i]))
                painter.drawLine(place(points[i - 1]), place(points[i]));
        }
        painter.setPen(Qt::NoPen);
        for (const TermTrend::Point &point : points) {
            painter.setBrush(
                point.level ? levelColors(paper(), *point.level).text : paper().ok.text);
            painter.drawEllipse(place(point), radius, radius);
        }
    }

  private:
    static constexpr int rows = 4;
    static constexpr int fontSize = 8;
    static constexpr double rowHeight = 18;
    static constexpr double labelWidth = 50;
    static constexpr double radius = 3;

    [[nodiscard]] double height(int severityOfRow) const {
        return area.bottom() - area.height() * severityOfRow / (rows - 1);
    }
    [[nodiscard]] double horizontal(Date date) const {
        using seconds = std::chrono::duration<double>;
        const double span = seconds(points.back().date - points.front().date).count();
        const double since = seconds(date - points.front().date).count();
        return area.left() + area.width() * std::clamp(since / std::max(1.0, span), 0.0, 1.0);
    }
    [[nodiscard]] QPointF place(const TermTrend::Point &point) const {
        return {horizontal(point.date), height(severity(point.level))};
    }

    void drawRow(QPainter &painter, int severityOfRow) const {
        const double y = height(severityOfRow);
        std::optional<RiskLevel> level;
        for (const RiskLevel each : allRiskLevels) {
            if (severity(each) == severityOfRow)
                level = each;
        }
        painter.setPen(paper().secondaryText);
        painter.drawText(
            QRectF(0, y - rowHeight / 2, labelWidth, rowHeight), Qt::AlignLeft | Qt::AlignVCenter,
            qstring(levelName(level)));
        painter.setPen(QPen(paper().separator, 0.7));
        painter.drawLine(QPointF(area.left() - radius, y), QPointF(area.right() + radius, y));
    }

    /// The first and the last day, and the contact.
    void drawDays(QPainter &painter) const {
        const QRectF days(area.left(), area.bottom() + rowHeight / 2, area.width(), rowHeight);
        painter.setPen(paper().secondaryText);
        painter.drawText(days, Qt::AlignLeft, qstring(calendar::shortDay(points.front().date)));
        painter.drawText(days, Qt::AlignRight, qstring(calendar::shortDay(points.back().date)));
        if (!student.wroteAt || *student.wroteAt < points.front().date)
            return;
        const double x = horizontal(*student.wroteAt);
        painter.setPen(QPen(paper().link, 0.7));
        painter.drawLine(QPointF(x, area.top() - rowHeight / 2), QPointF(x, area.bottom()));
        constexpr double half = 60;
        painter.drawText(
            QRectF(
                std::clamp(x - half, area.left(), area.right() - 2 * half),
                area.bottom() + rowHeight * 1.1, 2 * half, rowHeight),
            Qt::AlignHCenter,
            QStringLiteral("wrote ") + qstring(calendar::shortDay(*student.wroteAt)));
    }

    const PrintedStudent &student;
    const std::vector<TermTrend::Point> &points;
    QFont font;
    QRectF area;
};

void writeFigures(PageWriter &pages, const PrintedStudent &student) {
    QStringList figures;
    for (const StudentFigure &figure : student.figures)
        figures.append(qstring(figure.name) + QStringLiteral(": ") + qstring(figure.value));
    pages.paragraph({.text = figures.join(QStringLiteral("   ·   ")), .weight = QFont::DemiBold});
}

void write(PageWriter &pages, const PrintedStudent &student) {
    writeTitle(pages, student.name, student.subtitle);
    writeLevel(pages, student.level);
    pages.row(
        {{.text = qstring(student.change.empty() ? std::string(" ") : student.change),
          .size = textSize,
          .color = paper().secondaryText,
          .left = levelWidth}});
    pages.space(10);
    writeFigures(pages, student);
    writeSection(pages, QStringLiteral("WHY"));
    for (const PrintedStudent::Reason &reason : student.reasons) {
        pages.paragraph({.text = qstring(reason.text)});
        for (const std::string &assignment : reason.assignments)
            pages.paragraph(
                {.text = QStringLiteral("– ") + qstring(assignment), .size = textSize, .left = 12});
        pages.space(3);
    }
    if (student.trend) {
        constexpr double chartHeight = 130;
        pages.keepTogether(chartHeight + 60);
        writeSection(pages, QStringLiteral("THIS TERM"));
        pages.drawing(chartHeight, [&](QPainter &painter, const QRectF &rect) {
            Chart(student, rect).draw(painter);
        });
        for (const std::string &sentence : student.story)
            pages.paragraph({.text = qstring(sentence), .size = textSize});
    }
    if (!student.outreach.empty()) {
        writeSection(pages, QStringLiteral("OUTREACH"));
        pages.paragraph({.text = qstring(student.outreach)});
    }
}

} // namespace

const std::string &titleOf(const PrintedDocument &document) {
    const auto *roster = std::get_if<PrintedRoster>(&document);
    return roster != nullptr ? roster->title : std::get<PrintedStudent>(document).name;
}

bool printPages(QPagedPaintDevice &device, const PrintedDocument &document) {
    PageWriter pages(device, paperFont(), qstring(titleOf(document)));
    if (!pages.isActive())
        return false;
    if (const auto *roster = std::get_if<PrintedRoster>(&document))
        write(pages, *roster);
    else
        write(pages, std::get<PrintedStudent>(document));
    return true;
}

QByteArray pdf(const PrintedDocument &document) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    QPdfWriter writer(&file);
    writer.setTitle(qstring(titleOf(document)));
    writer.setCreator(QStringLiteral("Ellwynd"));
    const bool inches = QLocale().measurementSystem() == QLocale::ImperialUSSystem;
    writer.setPageSize(QPageSize(inches ? QPageSize::Letter : QPageSize::A4));
    constexpr double margin = 48;
    writer.setPageMargins({margin, margin, margin, margin}, QPageLayout::Point);
    if (!printPages(writer, document))
        return {};
    return file.data();
}

} // namespace ellwynd
