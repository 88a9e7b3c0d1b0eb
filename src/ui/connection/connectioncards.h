// The choice between Canvas and the sample college.
#pragma once

#include <QCoro/QCoroTask>
#include <QWidget>

class QPushButton;

namespace ellwynd {

class Appearance;
class ConnectionCheck;
class ConnectionForm;

/// Two cards: one connects to Canvas, the other opens the sample college. Hiding them stops a
/// connection that is being tested.
class ConnectionCards : public QWidget {
    Q_OBJECT

  public:
    /// The arguments must outlive this object.
    ConnectionCards(
        ConnectionCheck &check, const Appearance &appearance, QWidget *parent = nullptr);

    /// Shows what is saved, in place of what was typed.
    void reload();
    /// Moves the focus to what is to be typed first.
    void focusFields();

  Q_SIGNALS:
    /// The teacher asked for the sample college; the receiver asks for confirmation and switches.
    void sampleRequested();
    /// An address was saved with its token.
    void connectionDidChange();
    void checkingDidChange(bool checking);
    /// The connection was tested and saved.
    /// @param status what the test found, for the teacher.
    void connectionDidSucceed(const QString &status);
    /// Screen readers should announce this text.
    void announcementRequested(const QString &text);

  protected:
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

  private:
    void setChecking(bool checking);
    QCoro::Task<> connectToCanvas();

    ConnectionForm *form;
    QPushButton *connectButton;
    QPushButton *sampleButton;
};

} // namespace ellwynd
