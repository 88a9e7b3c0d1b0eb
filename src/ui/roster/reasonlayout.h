// The layout of a row's reasons.
#pragma once

#include "risk/riskrow.h"

#include <QString>
#include <QTextLayout>

#include <memory>
#include <optional>
#include <vector>

namespace ellwynd {

class Appearance;

/// What a click on a sentence opens.
enum class ReasonTarget {
    /// The grades in Canvas.
    grades,
    /// The names of the missing work, in the student's details.
    missingWork,
};

/// As many whole sentences as fit into some lines, and how many others there are.
class ReasonLayout {
  public:
    /// Where and how the sentences are drawn.
    struct Form {
        /// Pixels.
        int width = 0;
        int lines = 1;
        /// Only the first sentence, elided.
        bool firstOnly = false;
    };

    /// @param match drawn before the sentences; may be empty.
    ReasonLayout(
        const RiskRow &row, const QString &match, const Form &form, const Appearance &appearance);

    [[nodiscard]] const QString &shownText() const { return text; }
    void draw(QPainter &painter, QPoint topLeft, std::optional<ReasonTarget> hovered) const;
    /// What the sentence at a point opens; absent for none.
    [[nodiscard]] std::optional<ReasonTarget> targetAt(QPoint point) const;

  private:
    struct Span {
        int start;
        int length;
        ReasonTarget target;
    };

    void addSentences(const RiskRow &row, const Form &form);
    void lay(const Form &form);

    const Appearance &appearance;
    QString text;
    int matchLength = 0;
    std::vector<Span> spans;
    // A text layout can be neither copied nor moved.
    std::unique_ptr<QTextLayout> layout;
};

/// The font of the reasons.
[[nodiscard]] QFont reasonFont(const Appearance &appearance);

} // namespace ellwynd
