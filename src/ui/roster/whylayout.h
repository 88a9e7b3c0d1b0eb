// The "Why" cell: sentences, then the names of missing work as links.
#pragma once

#include "risk/riskrow.h"

#include <QString>
#include <QTextLayout>

#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace ellwynd {

class Appearance;

/// The link that shows the names which a row has no room for.
struct ShowMore {
    /// The names that are not shown.
    std::size_t hidden = 0;

    bool operator==(const ShowMore &) const = default;
};

/// What a click in the cell asks for.
using WhyTarget = std::variant<GradesTarget, AssignmentRef, ShowMore>;

/// One row's reasons laid out for a width. A compact row holds its first sentence alone, on one
/// line; an expanded one the names of all its missing work.
class WhyLayout {
  public:
    enum class Form { compact, normal, expanded };

    WhyLayout(const RiskRow &row, int width, Form form, const Appearance &appearance);

    [[nodiscard]] int height() const;
    /// The names behind the link that shows more; 0 where there is none.
    [[nodiscard]] std::size_t hiddenNames() const;
    void draw(QPainter &painter, QPoint topLeft, const std::optional<WhyTarget> &hovered) const;
    /// What lies under a point of the cell.
    [[nodiscard]] std::optional<WhyTarget> targetAt(QPoint point) const;

  private:
    struct Span {
        int start;
        int length;
        WhyTarget target;
        /// Whether it looks like a link before the pointer is on it.
        bool plain;
    };

    void addSentences(const RiskRow &row);
    void addLinks(const std::vector<AssignmentRef> &missing, int width, bool all);
    void append(const QString &piece, WhyTarget target, bool plain);
    void lay(int width);

    const Appearance &appearance;
    QString text;
    std::vector<Span> spans;
    // A text layout can be neither copied nor moved.
    std::unique_ptr<QTextLayout> layout;
};

} // namespace ellwynd
