// A Canvas server on loopback, over real HTTPS.
#pragma once

#include "support/certificates.h"

#include <QHash>
#include <QObject>
#include <QSslServer>
#include <QUrl>

#include <deque>
#include <functional>
#include <optional>
#include <vector>

class QSslSocket;

namespace ellwynd::test {

/// What was asked.
struct FakeRequest {
    QByteArray method;
    /// Without the query.
    QString path;
    QString query;
    /// Names in lower case.
    QHash<QByteArray, QByteArray> headers;
    /// Counts the connections of the server from 1.
    int connection = 0;
};

/// What is answered, and how badly.
struct FakeReply {
    enum class Manner {
        whole,
        /// Closes before any answer.
        closed,
        /// Closes in the middle of the body.
        cut,
        /// Takes the request and never answers.
        silent,
        /// A byte at a time, without end.
        trickle,
        /// An informational response first.
        earlyHints,
    };

    int status = 200;
    QByteArray body = "[]";
    QByteArray contentType = "application/json; charset=utf-8";
    std::vector<std::pair<QByteArray, QByteArray>> headers;
    Manner manner = Manner::whole;
    /// On top of the server's own latency.
    int delayMilliseconds = 0;
    /// The connection is closed after it. Set by the server.
    bool isLast = false;
};

/// The same answer, its body packed with gzip.
[[nodiscard]] FakeReply gzipped(FakeReply reply);

/// Serves records page by page behind opaque bookmarks, knows its teacher, checks the token, and
/// does to any path what it is told to.
class FakeCanvas : public QObject {
    Q_OBJECT

  public:
    explicit FakeCanvas(CertificateKind certificate = CertificateKind::good);
    ~FakeCanvas() override;

    [[nodiscard]] std::string address() const;
    [[nodiscard]] quint16 port() const { return server.serverPort(); }

    /// The records of an endpoint, each one JSON object.
    void serve(const QString &path, std::vector<QByteArray> records);
    /// The next requests for a path are answered so, one reply each; then as usual.
    void plan(const QString &path, std::vector<FakeReply> replies);
    /// Answers nothing until so many requests wait at one time, then all of them.
    void holdUntil(std::size_t waiting);
    /// Answers nothing to this path until `release`.
    void hold(const QString &path);
    void release();
    /// Answers every request instead of the above.
    void answerWith(std::function<FakeReply(const FakeRequest &)> answer);

    QByteArray token = "secret-token";
    /// How long every answer takes. Answers wait side by side.
    int latencyMilliseconds = 0;
    /// Every connection is closed without notice after so many answers; 0 for never.
    int requestsPerConnection = 0;
    std::vector<FakeRequest> requests;
    /// The most requests that were waiting for an answer at one time.
    int mostInFlight = 0;
    int connections = 0;

  private:
    void accept();
    void receive(QSslSocket *socket, int connection, QByteArray &buffer);
    void reply(QSslSocket *socket, const QString &path, const FakeReply &reply);
    void send(QSslSocket *socket, const FakeReply &reply);
    void write(QSslSocket *socket, const FakeReply &reply);
    [[nodiscard]] FakeReply answer(const FakeRequest &request);
    [[nodiscard]] FakeReply page(const FakeRequest &request) const;

    QSslServer server;
    QHash<QString, std::vector<QByteArray>> records;
    QHash<QString, std::deque<FakeReply>> plans;
    std::function<FakeReply(const FakeRequest &)> custom;
    QHash<int, int> requestsOf;
    int inFlight = 0;
    std::size_t holdingUntil = 0;
    QString heldPath;
    std::vector<std::function<void()>> held;
};

} // namespace ellwynd::test
