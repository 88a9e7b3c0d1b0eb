// The base of buttons that paint themselves.
#pragma once

#include <QAbstractButton>

namespace ellwynd {

/// A button that Return and Enter press, as Space does.
class KeyboardButton : public QAbstractButton {
    Q_OBJECT

  public:
    using QAbstractButton::QAbstractButton;

  protected:
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace ellwynd
