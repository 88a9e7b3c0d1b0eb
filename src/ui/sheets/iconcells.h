// The choices of the course icon sheet.
#pragma once

#include <QRadioButton>

#include <string>

namespace ellwynd {

class Appearance;

/// The display name of an icon: "Flask" for "flask", "Subject letters" for the empty word.
[[nodiscard]] QString iconName(const std::string &word);

/// One choice of a grid. It behaves as a radio button: the arrow keys move within the group, and
/// Tab leaves it.
class IconSheetCell : public QRadioButton {
    Q_OBJECT

  public:
    /// @param side the cell's width and height at text scale 1.
    IconSheetCell(std::string word, const QString &name, int side, const Appearance &appearance);

    /// The preference's value; empty for the default.
    const std::string word;

  protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    void paintEvent(QPaintEvent *event) override;
    virtual void paintCell(QPainter &painter, const QRectF &box) const = 0;

    const Appearance &appearance;
};

/// A glyph, or the course's letters for the empty word. The chosen one is drawn as the course's
/// tile.
class IconCell : public IconSheetCell {
    Q_OBJECT

  public:
    IconCell(const std::string &word, const QString &initials, const Appearance &appearance);

    void setTileColor(const QColor &color);

  protected:
    void paintCell(QPainter &painter, const QRectF &box) const override;

  private:
    QString initials;
    QColor tile;
};

/// A colour; for the empty word the course's automatic one, marked "A". The chosen one has a check
/// mark.
class ColorCell : public IconSheetCell {
    Q_OBJECT

  public:
    ColorCell(const std::string &word, const QColor &color, const Appearance &appearance);

  protected:
    void paintCell(QPainter &painter, const QRectF &box) const override;

  private:
    QColor color;
};

} // namespace ellwynd
