// The layout of a "Why" cell: sentences, then the names of missing work as links.
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

/// The link that shows the hidden names.
struct ShowMore {
    /// How many names are hidden.
    std::size_t hidden = 0;

    bool operator==(const ShowMore &) const = default;
};

/// What a click in the cell opens.
using WhyTarget = std::variant<GradesTarget, AssignmentRef, ShowMore>;

/// One row's reasons laid out for a width. A compact row has only the first sentence, on one line;
/// an expanded row has the names of all missing work.
class WhyLayout {
  public:
    enum class Form { compact, normal, expanded };

    WhyLayout(const RiskRow &row, int width, Form form, const Appearance &appearance);

    [[nodiscard]] int height() const;
    /// How many names the "more" link hides; 0 without such a link.
    [[nodiscard]] std::size_t hiddenNames() const;
    void draw(QPainter &painter, QPoint topLeft, const std::optional<WhyTarget> &hovered) const;
    /// The link at a point of the cell; absent for none.
    [[nodiscard]] std::optional<WhyTarget> targetAt(QPoint point) const;

  private:
    struct Span {
        int start;
        int length;
        WhyTarget target;
        /// Drawn as a link only while the pointer is over it.
        bool plain;
    };

    void addSentences(const RiskRow &row);
    void addLinks(const std::vector<AssignmentRef> &missing, int width, bool all);
    void append(const QString &label, WhyTarget target, bool plain);
    void lay(int width);

    const Appearance &appearance;
    QString text;
    std::vector<Span> spans;
    // A text layout can be neither copied nor moved.
    std::unique_ptr<QTextLayout> layout;
};

} // namespace ellwynd
