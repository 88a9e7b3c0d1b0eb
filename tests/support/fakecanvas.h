// A fake Canvas server on loopback, over HTTPS.
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

struct FakeRequest {
    QByteArray method;
    /// Without the query.
    QString path;
    QString query;
    /// Names in lower case.
    QHash<QByteArray, QByteArray> headers;
    /// The number of the server's connection, from 1.
    int connection = 0;
};

/// A response, and how it is sent.
struct FakeReply {
    enum class Manner {
        whole,
        /// Closes the connection without a response.
        closed,
        /// Closes the connection in the middle of the body.
        cut,
        /// Never answers.
        silent,
        /// Sends the body byte by byte, without end.
        trickle,
        /// Sends an informational response first.
        earlyHints,
    };

    int status = 200;
    QByteArray body = "[]";
    std::vector<std::pair<QByteArray, QByteArray>> headers;
    Manner manner = Manner::whole;
    /// The connection is closed after this response. Set by the server.
    bool isLast = false;
};

/// The same reply with its body compressed by gzip.
[[nodiscard]] FakeReply gzipped(FakeReply reply);

/// Serves lists in pages with opaque bookmarks, answers `users/self`, checks the token, and can
/// answer any path with planned replies.
class FakeCanvas : public QObject {
    Q_OBJECT

  public:
    explicit FakeCanvas(CertificateKind certificate = CertificateKind::good);
    ~FakeCanvas() override;

    [[nodiscard]] std::string address() const;
    [[nodiscard]] quint16 port() const { return server.serverPort(); }

    /// Serves a list of records at a path, each a JSON object.
    void serve(const QString &path, std::vector<QByteArray> list) {
        records[path] = std::move(list);
    }
    /// Answers the next requests for a path with these replies, one each.
    void plan(const QString &path, std::vector<FakeReply> replies) {
        plans[path] = {replies.begin(), replies.end()};
    }
    /// Holds all responses until that many requests wait, then answers all of them.
    void holdUntil(std::size_t waiting) { holdingUntil = waiting; }
    /// Holds the responses for a path until `release`.
    void hold(const QString &path) { heldPath = path; }
    void release();
    /// Answers every request with a function instead.
    void answerWith(std::function<FakeReply(const FakeRequest &)> answer) {
        custom = std::move(answer);
    }

    QByteArray token = "secret-token";
    /// The delay of every response; concurrent responses are delayed concurrently.
    int latencyMilliseconds = 0;
    /// Closes every connection without notice after that many responses; 0 for never.
    int requestsPerConnection = 0;
    std::vector<FakeRequest> requests;
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
    std::size_t holdingUntil = 0;
    QString heldPath;
    std::vector<std::function<void()>> held;
};

} // namespace ellwynd::test
