// A level as a coloured pill.
#pragma once

#include "risk/risklevel.h"
#include "theme/theme.h"

#include <QWidget>

class QPainter;

namespace ellwynd {

class Appearance;

[[nodiscard]] const LevelColors &levelColors(const Theme &theme, RiskLevel level);

/// Draws a level at the left of `rect`, vertically centred: a pill, or "OK" in secondary text.
/// @return the width used.
int drawLevel(
    QPainter &painter, const QRect &rect, std::optional<RiskLevel> level,
    const Appearance &appearance);

/// A widget that draws one level.
class LevelPill : public QWidget {
    Q_OBJECT

  public:
    explicit LevelPill(const Appearance &appearance, QWidget *parent = nullptr);
    void setLevel(std::optional<RiskLevel> level);
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    const Appearance &appearance;
    std::optional<RiskLevel> level;
};

} // namespace ellwynd
