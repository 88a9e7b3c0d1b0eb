// A text of a card that can be clicked.
#pragma once

#include "theme/visualstyle.h"
#include "uikit/keyboardbutton.h"

namespace ellwynd {

/// A plain text in the secondary text colour.
class TextButton : public KeyboardButton {
    Q_OBJECT

  public:
    /// @param flags of QPainter::drawText: how the text is aligned, and whether it wraps. A text
    ///        that does not wrap is elided.
    TextButton(int flags, QWidget *parent);

    void present(const QString &newText, const VisualStyle &newStyle, double newFontFactor);
    [[nodiscard]] const QString &shownText() const { return shown; }

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    int flags;
    // Not QAbstractButton::text, in which "&" would define a shortcut.
    QString shown;
    VisualStyle visualStyle;
    double fontFactor = 1;
};

} // namespace ellwynd
