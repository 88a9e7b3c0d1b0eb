#include "theme/courseglyphs.h"

#include <QByteArray>
#include <QPainter>
#include <QSvgRenderer>

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace ellwynd {

namespace {

/// One glyph on a field of 24 by 24, in the path language of SVG.
struct Glyph {
    std::string_view word;
    /// Drawn with a pen of the weight that the size asks for.
    std::string_view lines;
    /// Filled; what lies in two outlines is left open.
    std::string_view areas;
};

constexpr std::array<Glyph, 26> glyphs{
    {{"code", "M8 6 L2.5 12 L8 18 M16 6 L21.5 12 L16 18 M13.6 4.5 L10.4 19.5", ""},
     {"database",
      "M4 6 C4 4.3 7.6 3 12 3 S20 4.3 20 6 S16.4 9 12 9 S4 7.7 4 6 Z M4 6 V18 C4 19.7 "
      "7.6 21 12 21 S20 19.7 20 18 V6 M4 12 C4 13.7 7.6 15 12 15 S20 13.7 20 12",
      ""},
     {"chip",
      "M7 6 H17 A1 1 0 0 1 18 7 V17 A1 1 0 0 1 17 18 H7 A1 1 0 0 1 6 17 V7 A1 1 0 0 1 "
      "7 6 Z M9 2.2 V6 M15 2.2 V6 M9 18 V21.8 M15 18 V21.8 M2.2 9 H6 M2.2 15 H6 M18 9 "
      "H21.8 M18 15 H21.8",
      "M9.8 9.8 H14.2 V14.2 H9.8 Z"},
     {"gear", "",
      "M9.97 4.68 L10.27 1.95 L13.73 1.95 L14.03 4.68 L15.75 5.39 L17.89 3.67 L20.33 "
      "6.11 L18.61 8.25 L19.32 9.97 L22.05 10.27 L22.05 13.73 L19.32 14.03 L18.61 "
      "15.75 L20.33 17.89 L17.89 20.33 L15.75 18.61 L14.03 19.32 L13.73 22.05 L10.27 "
      "22.05 L9.97 19.32 L8.25 18.61 L6.11 20.33 L3.67 17.89 L5.39 15.75 L4.68 14.03 "
      "L1.95 13.73 L1.95 10.27 L4.68 9.97 L5.39 8.25 L3.67 6.11 L6.11 3.67 L8.25 5.39 "
      "Z M12 8.4 A3.6 3.6 0 1 0 12 15.6 A3.6 3.6 0 1 0 12 8.4 Z"},
     {"ruler",
      "M2.8 15.8 L15.8 2.8 L21.2 8.2 L8.2 21.2 Z M6.6 12 L8.8 14.2 M9.7 8.9 L12.7 "
      "11.9 M12.8 5.8 L15 8",
      ""},
     {"calculator",
      "M7 2.5 H17 A2 2 0 0 1 19 4.5 V19.5 A2 2 0 0 1 17 21.5 H7 A2 2 0 0 1 5 19.5 "
      "V4.5 A2 2 0 0 1 7 2.5 Z M9 7 H15",
      "M7.5 12.2 a1.5 1.5 0 1 0 3 0 a1.5 1.5 0 1 0 -3 0 Z M13.5 12.2 a1.5 1.5 0 1 0 3 "
      "0 a1.5 1.5 0 1 0 -3 0 Z M7.5 17 a1.5 1.5 0 1 0 3 0 a1.5 1.5 0 1 0 -3 0 Z M13.5 "
      "17 a1.5 1.5 0 1 0 3 0 a1.5 1.5 0 1 0 -3 0 Z"},
     {"chart", "M3 20.8 H21",
      "M4.8 11 H8.6 V18 H4.8 Z M10.1 3.5 H13.9 V18 H10.1 Z M15.4 7.5 H19.2 V18 H15.4 Z"},
     {"flask",
      "M8.5 3 H15.5 M10 3 V9 L4.8 17.8 A2.1 2.1 0 0 0 6.6 21 H17.4 A2.1 2.1 0 0 0 "
      "19.2 17.8 L14 9 V3",
      "M8 14.4 H16 L18.6 18.8 Q18.6 20 17.4 20 H6.6 Q5.4 20 5.4 18.8 Z"},
     {"atom",
      "M4.93 4.93 A10 4.2 45 1 0 19.07 19.07 A10 4.2 45 1 0 4.93 4.93 Z M19.07 4.93 "
      "A10 4.2 -45 1 0 4.93 19.07 A10 4.2 -45 1 0 19.07 4.93 Z",
      "M10 12 a2 2 0 1 0 4 0 a2 2 0 1 0 -4 0 Z"},
     {"leaf",
      "M20.8 3.2 C10 3.2 4.8 8 4.8 14 C4.8 17.5 7 19.4 10 19.4 C17 19.4 20.8 13 20.8 "
      "3.2 Z M3 21.2 L13.4 10.6",
      ""},
     {"heart", "",
      "M12 21 C5.5 16.2 2.2 12.6 2.2 8.6 A5.2 5.2 0 0 1 12 6.2 A5.2 5.2 0 0 1 21.8 "
      "8.6 C21.8 12.6 18.5 16.2 12 21 Z"},
     {"ball",
      "M2.8 12 a9.2 9.2 0 1 0 18.4 0 a9.2 9.2 0 1 0 -18.4 0 Z M2.8 12 H21.2 M6 5.4 "
      "C9.2 9 9.2 15 6 18.6 M18 5.4 C14.8 9 14.8 15 18 18.6",
      ""},
     {"book",
      "M12 6 C10 4.3 6.5 3.9 2.8 4.2 V18.4 C6.5 18.1 10 18.6 12 20.3 C14 18.6 17.5 "
      "18.1 21.2 18.4 V4.2 C17.5 3.9 14 4.3 12 6 Z M12 6 V20.3",
      ""},
     {"pen", "M3.8 20.2 L5 15.4 L16 4.4 A2.4 2.4 0 0 1 19.6 8 L8.6 19 Z M13.6 6.8 L17.2 10.4", ""},
     {"speech",
      "M5 3.8 H19 A2.2 2.2 0 0 1 21.2 6 V14.4 A2.2 2.2 0 0 1 19 16.6 H11.6 L7 20.8 "
      "V16.6 H5 A2.2 2.2 0 0 1 2.8 14.4 V6 A2.2 2.2 0 0 1 5 3.8 Z",
      "M6.5 10.2 a1.4 1.4 0 1 0 2.8 0 a1.4 1.4 0 1 0 -2.8 0 Z M10.6 10.2 a1.4 1.4 0 1 "
      "0 2.8 0 a1.4 1.4 0 1 0 -2.8 0 Z M14.7 10.2 a1.4 1.4 0 1 0 2.8 0 a1.4 1.4 0 1 0 "
      "-2.8 0 Z"},
     {"globe",
      "M2.8 12 a9.2 9.2 0 1 0 18.4 0 a9.2 9.2 0 1 0 -18.4 0 Z M2.8 12 H21.2 M12 2.8 "
      "C6.6 8 6.6 16 12 21.2 C17.4 16 17.4 8 12 2.8 Z",
      ""},
     {"compass", "M2.8 12 a9.2 9.2 0 1 0 18.4 0 a9.2 9.2 0 1 0 -18.4 0 Z",
      "M17.2 6.8 L14.2 14.2 L6.8 17.2 L9.8 9.8 Z"},
     {"column", "M6 11.8 V17 M12 11.8 V17 M18 11.8 V17 M3 20.6 H21",
      "M12 2.2 L21.8 7.6 V9.4 H2.2 V7.6 Z"},
     {"music", "M9 17.6 V5.8 L19.5 3.6 V15.4",
      "M3.5 17.8 a2.9 2.9 0 1 0 5.8 0 a2.9 2.9 0 1 0 -5.8 0 Z M14 15.6 a2.9 2.9 0 1 0 "
      "5.8 0 a2.9 2.9 0 1 0 -5.8 0 Z"},
     {"palette",
      "M12 3 C6.8 3 2.8 6.9 2.8 12 S6.8 21 11.6 21 C13.2 21 13.9 20 13.6 18.7 C13.2 "
      "16.9 14.2 15.6 16 15.6 H18.2 C20 15.6 21.2 14 21.2 11.6 C21.2 6.7 17.2 3 12 3 "
      "Z",
      "M5.9 11.6 a1.5 1.5 0 1 0 3 0 a1.5 1.5 0 1 0 -3 0 Z M8.7 7.4 a1.5 1.5 0 1 0 3 0 "
      "a1.5 1.5 0 1 0 -3 0 Z M13.7 7.6 a1.5 1.5 0 1 0 3 0 a1.5 1.5 0 1 0 -3 0 Z"},
     {"camera",
      "M4.5 6.8 H7.4 L9.2 4 H14.8 L16.6 6.8 H19.5 A2 2 0 0 1 21.5 8.8 V17.8 A2 2 0 0 "
      "1 19.5 19.8 H4.5 A2 2 0 0 1 2.5 17.8 V8.8 A2 2 0 0 1 4.5 6.8 Z M8.6 13 a3.4 "
      "3.4 0 1 0 6.8 0 a3.4 3.4 0 1 0 -6.8 0 Z",
      ""},
     {"people",
      "M2.4 20 C2.4 16 5 14.2 8.8 14.2 S15.2 16 15.2 20 M16 4.6 A3.5 3.5 0 0 1 16 "
      "11.4 M17.8 14.5 C20.2 15.1 21.6 17 21.6 20 M5.3 7.9 a3.5 3.5 0 1 0 7 0 a3.5 "
      "3.5 0 1 0 -7 0 Z",
      ""},
     {"gavel", "M10.5 10.5 L19.5 19.5 M2.8 21 H12.4",
      "M14.4 7 L10 2.6 Q9.4 2 8.8 2.6 L2.6 8.8 Q2 9.4 2.6 10 L7 14.4 Q7.6 15 8.2 14.4 "
      "L14.4 8.2 Q15 7.6 14.4 7 Z"},
     {"briefcase",
      "M5 7 H19 A2.2 2.2 0 0 1 21.2 9.2 V18 A2.2 2.2 0 0 1 19 20.2 H5 A2.2 2.2 0 0 1 "
      "2.8 18 V9.2 A2.2 2.2 0 0 1 5 7 Z M8.4 7 V5.4 A2 2 0 0 1 10.4 3.4 H13.6 A2 2 0 "
      "0 1 15.6 5.4 V7 M2.8 13 H21.2",
      ""},
     {"bulb",
      "M8.8 16.6 C8.8 14.4 5.4 13.2 5.4 9.2 A6.6 6.6 0 0 1 18.6 9.2 C18.6 13.2 15.2 "
      "14.4 15.2 16.6 Z M9.6 21 H14.4",
      ""},
     {"house", "M2.6 11.4 L12 3.4 L21.4 11.4 M5.6 9.6 V20.6 H18.4 V9.6 M10 20.6 V14.6 H14 V20.6",
      ""}}};

/// The pen's width on the field. Small glyphs are drawn heavier, or their lines would be thinner
/// than a pixel and turn grey.
double penWidth(double pixels) {
    constexpr double small = 14;
    constexpr double large = 26;
    constexpr double heavy = 2.7;
    constexpr double light = 1.9;
    const double share = std::clamp((pixels - small) / (large - small), 0.0, 1.0);
    return heavy + (light - heavy) * share;
}

} // namespace

bool drawCourseGlyph(
    QPainter &painter, std::string_view word, const QRectF &box, const QColor &color) {
    const auto *glyph = std::ranges::find(glyphs, word, &Glyph::word);
    if (glyph == glyphs.end())
        return false;
    const std::string ink = color.name().toStdString();
    const std::string drawing = fmt::format(
        R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 24 24">)"
        R"(<path d="{}" fill="{}" fill-rule="evenodd"/>)"
        R"(<path d="{}" fill="none" stroke="{}" stroke-width="{:.2f}" stroke-linecap="round" )"
        R"(stroke-linejoin="round"/></svg>)",
        glyph->areas, ink, glyph->lines, ink,
        penWidth(box.width() * painter.device()->devicePixelRatioF()));
    QSvgRenderer renderer(QByteArray(drawing.data(), qsizetype(drawing.size())));
    renderer.render(&painter, box);
    return true;
}

} // namespace ellwynd
