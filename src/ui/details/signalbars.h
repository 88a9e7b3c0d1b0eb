// What each signal added to a student's score, as bars.
#pragma once

#include "risk/riskrow.h"

#include <QWidget>

namespace ellwynd {

class Appearance;

/// Five thin bars with names and figures. A signal without data has no bar. Screen readers read the
/// figures.
class SignalBars : public QWidget {
    Q_OBJECT

  public:
    /// @param appearance must outlive this object.
    SignalBars(const RiskRow &row, const Appearance &appearance, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    [[nodiscard]] int lineHeight() const;

    SignalShares shares;
    const Appearance &appearance;
};

} // namespace ellwynd
