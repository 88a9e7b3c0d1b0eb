// Looks up, before they are needed, the fonts of characters that the interface's font lacks.
#pragma once

#include <QFont>
#include <QObject>
#include <QTimer>

#include <deque>
#include <utility>
#include <vector>

namespace ellwynd {

class Appearance;

/// Finds the fonts of most texts, which otherwise happens while the first window is made.
void findFirstFonts(const Appearance &appearance);

/// Qt asks fontconfig for the fonts of an emoji or of another script when a text with one is first
/// shown, for each size and weight again. That takes 10 ms each where many fonts are installed.
/// This does it for the sizes and weights of names, one in each event, and again after each
/// change of the appearance.
class FontPreparation : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive this object.
    FontPreparation(const Appearance &appearance, QObject *parent);

    /// Begins when control is back in the event loop.
    void start();

  private:
    void prepareNext();

    const Appearance &appearance;
    /// Fonts to look up, each for a text.
    std::deque<std::pair<QFont, QString>> waiting;
    /// Kept so that Qt keeps what it looked up.
    std::vector<QFont> prepared;
    QTimer timer;
};

} // namespace ellwynd
