// One program for each desktop session: a second start hands its links over to the first.
#pragma once

#include <QObject>
#include <QStringList>

#include <cstdint>
#include <memory>

namespace ellwynd {

/// The program's registration with the desktop session, under the name "com.varnok.Ellwynd".
/// Anybody in the session may call it: a call is checked and announced, and decides nothing itself.
/// Where the desktop offers no registration, every process is the first one. Lives on the main
/// thread.
///
/// Each activation token is the one that the desktop gave for coming to the front; may be empty.
class ApplicationService : public QObject {
    Q_OBJECT

  public:
    enum class Outcome {
        /// This process is the program of the session, or nothing says otherwise.
        first,
        /// Another process is, and has taken over what this one was started for.
        handedOver,
        /// Another process has the name and did not answer.
        unanswered,
    };

    /// Takes the name; where another process has it, hands the links over to that one, or only
    /// brings it to the front when there are none. Blocks until the other process answers, or for a
    /// few seconds. Calls that arrive from then on are announced as soon as the event loop runs.
    [[nodiscard]] virtual Outcome
    start(const QStringList &links, const QString &activationToken) = 0;

    /// Releases the name, so that another process can take it.
    virtual void releaseName() = 0;
    /// Takes it again unless another process has it by now.
    virtual void resume() = 0;

  Q_SIGNALS:
    void activated(const QString &activationToken);
    /// The action "open-course", whose parameter is the course's id.
    void courseRequested(std::int64_t courseID, const QString &activationToken);
    /// At most a hundred links.
    void linksOpened(const QStringList &links, const QString &activationToken);
};

[[nodiscard]] std::unique_ptr<ApplicationService> makeApplicationService();

} // namespace ellwynd
