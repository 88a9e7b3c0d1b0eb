// A line about what is on screen, with the time of its figures.
#pragma once

#include <QWidget>

namespace ellwynd {

class ElidedLabel;

/// A text, then when the figures were read, then a note on that. In a narrow window the text is
/// elided first.
class StampLine : public QWidget {
    Q_OBJECT

  public:
    explicit StampLine(QWidget *parent);

    /// @param stamp such as "updated 9:41 AM".
    /// @param note such as "yesterday · refreshing…"; empty for none.
    void setTexts(const QString &text, const QString &stamp, const QString &note);

  protected:
    void changeEvent(QEvent *event) override;

  private:
    void limitText();

    ElidedLabel *text;
    ElidedLabel *stamp;
    ElidedLabel *note;
};

} // namespace ellwynd
