// A widget's title: the displayed term, as a button that opens the menu of terms.
#pragma once

#include "theme/visualstyle.h"
#include "uikit/keyboardbutton.h"

namespace ellwynd {

class TermButton : public KeyboardButton {
    Q_OBJECT

  public:
    explicit TermButton(QWidget *parent = nullptr);
    void present(const QString &term, const VisualStyle &newStyle);
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    [[nodiscard]] QRect titleRect() const;

    // Not QAbstractButton::text, in which "&" would define a shortcut.
    QString title;
    VisualStyle visualStyle;
};

} // namespace ellwynd
