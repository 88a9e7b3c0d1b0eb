// How the window system keeps the cards on the desktop.
#pragma once

#include <QObject>
#include <QPoint>

#include <memory>
#include <optional>

class QWidget;

namespace ellwynd {

/// Keeps cards behind other windows, on every workspace and out of the list of windows, as far as
/// the window system lets it. This class does nothing of it, for window systems without such means;
/// `make` returns what fits. Used on the main thread, after the QApplication was created.
class DesktopLayer : public QObject {
    Q_OBJECT

  public:
    [[nodiscard]] static std::unique_ptr<DesktopLayer> make();

    /// Prepares a card's window; called each time before it is shown.
    virtual void prepare(QWidget & /*card*/) {}
    /// Called each time after a card was shown.
    virtual void didShow(QWidget & /*card*/) {}

    /// Moves a card, shown or not. The place is that of its top left corner on the desktop.
    virtual void move(QWidget &card, QPoint place);
    /// Where a card is; absent where the window system does not tell.
    [[nodiscard]] virtual std::optional<QPoint> placeOf(const QWidget &card) const;
    /// Whether cards can be placed and tell where they are.
    [[nodiscard]] virtual bool knowsPlaces() const { return true; }
    /// Whether a dragged card is moved by `move` only when the button is released, since it would
    /// move under the pointer's coordinates.
    [[nodiscard]] virtual bool movesOnRelease() const { return false; }

    /// Whether windows are drawn with transparency. Otherwise what a window leaves unpainted is
    /// black. It may change at any time.
    [[nodiscard]] virtual bool isComposited() const { return true; }

    /// Puts a shown card in front of other windows, or behind them again. Called for all cards
    /// alike. Returns false where the window
    /// system does not let a program do so.
    virtual bool setInFront(QWidget & /*card*/, bool /*inFront*/) { return false; }

  Q_SIGNALS:
    /// The desktop was shown by hiding the windows, the cards perhaps too, or the windows were
    /// shown again. Cards must be shown again.
    void desktopShownDidChange();
};

} // namespace ellwynd
