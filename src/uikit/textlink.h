// Links in windows.
#pragma once

#include "uikit/keyboardbutton.h"

namespace ellwynd {

/// A text that does something when it is pressed, drawn as a link. It wraps, is never interpreted
/// as markup, and is one Tab stop with a visible focus.
class TextLink : public KeyboardButton {
    Q_OBJECT

  public:
    explicit TextLink(const QString &text, QWidget *parent = nullptr);
    /// Replaces the text, which is also the accessible name.
    void setLink(const QString &text);
    void setWordWrap(bool wraps);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return isWrapped; }
    [[nodiscard]] int heightForWidth(int width) const override;

  protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    /// Only the text can be pressed, not the space after it.
    [[nodiscard]] bool hitButton(const QPoint &position) const override;

  private:
    [[nodiscard]] QRect textRect(const QRect &area) const;
    [[nodiscard]] QSize oneLineSize() const;

    QString link;
    bool isWrapped = true;
};

} // namespace ellwynd
