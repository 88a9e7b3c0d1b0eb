// A single instance for each desktop session: a second start forwards its links to the first.
#pragma once

#include <QObject>
#include <QStringList>

#include <cstdint>
#include <memory>

namespace ellwynd {

/// The program's registration with the desktop session, under the name "com.varnok.Ellwynd". Every
/// process of the session may call it: a call is validated and emitted as a signal. Where the
/// desktop offers no registration, every process is the first one. Used on the main thread.
///
/// The activation tokens are XDG activation tokens; each may be empty.
class ApplicationService : public QObject {
    Q_OBJECT

  public:
    enum class Outcome {
        /// This process is the session's instance, or the desktop offers no registration.
        first,
        /// Another process is the session's instance and has accepted the links.
        forwarded,
        /// Another process owns the name and did not answer.
        unanswered,
    };

    /// Takes the name. If another process owns it, forwards the links to that process, or only
    /// activates it if there are none; this blocks until it answers, at most for a few seconds.
    /// Calls of other processes are then emitted once the event loop runs.
    [[nodiscard]] virtual Outcome
    start(const QStringList &links, const QString &activationToken) = 0;

    /// Releases the name, so that another process can take it.
    virtual void releaseName() = 0;
    /// Takes the name again unless another process owns it by now.
    virtual void reclaimName() = 0;

  Q_SIGNALS:
    void activationRequested(const QString &activationToken);
    /// The action "open-course" with the course's id.
    void courseRequested(std::int64_t courseID, const QString &activationToken);
    /// At most a hundred links.
    void linksRequested(const QStringList &links, const QString &activationToken);
};

[[nodiscard]] std::unique_ptr<ApplicationService> makeApplicationService();

} // namespace ellwynd
