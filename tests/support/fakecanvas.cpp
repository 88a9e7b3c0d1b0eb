#include "support/fakecanvas.h"

#include <QPointer>
#include <QProcess>
#include <QSslSocket>
#include <QTimer>
#include <QUrlQuery>

namespace ellwynd::test {

FakeReply gzipped(FakeReply reply) {
    QProcess gzip;
    gzip.start("gzip", {"--stdout"});
    gzip.write(reply.body);
    gzip.closeWriteChannel();
    if (!gzip.waitForFinished() || gzip.exitCode() != 0)
        throw std::runtime_error("gzip failed");
    reply.body = gzip.readAll();
    reply.headers.emplace_back("Content-Encoding", "gzip");
    return reply;
}

FakeCanvas::FakeCanvas(CertificateKind certificate) {
    QSslConfiguration configuration = serverConfiguration(certificate);
    // Like a hosted Canvas, it selects HTTP/2 if the client offers it, but cannot speak it, so that
    // such a client fails.
    configuration.setAllowedNextProtocols({"h2", "http/1.1"});
    server.setSslConfiguration(configuration);
    if (!server.listen(QHostAddress::LocalHost))
        throw std::runtime_error("the fake Canvas cannot listen");
    connect(&server, &QTcpServer::pendingConnectionAvailable, this, &FakeCanvas::accept);
}

FakeCanvas::~FakeCanvas() = default;

std::string FakeCanvas::address() const {
    return "https://localhost:" + std::to_string(server.serverPort());
}

void FakeCanvas::accept() {
    while (auto *socket = qobject_cast<QSslSocket *>(server.nextPendingConnection())) {
        const int number = ++connections;
        connect(socket, &QAbstractSocket::disconnected, socket, &QObject::deleteLater);
        auto buffer = std::make_shared<QByteArray>();
        connect(socket, &QIODevice::readyRead, this, [this, socket, number, buffer] {
            receive(socket, number, *buffer);
        });
        receive(socket, number, *buffer);
    }
}

void FakeCanvas::receive(QSslSocket *socket, int connection, QByteArray &buffer) {
    buffer += socket->readAll();
    for (qsizetype end = buffer.indexOf("\r\n\r\n"); end >= 0; end = buffer.indexOf("\r\n\r\n")) {
        const QList<QByteArray> lines = buffer.left(end).split('\n');
        buffer.remove(0, end + 4);
        const QList<QByteArray> first = lines.first().trimmed().split(' ');
        const QUrl url = QUrl::fromEncoded("https://localhost" + first.value(1));
        FakeRequest request{
            .method = first.value(0),
            .path = url.path(),
            .query = url.query(QUrl::FullyDecoded),
            .connection = connection};
        for (const QByteArray &line : lines.mid(1)) {
            const qsizetype colon = line.indexOf(':');
            request.headers[line.left(colon).toLower()] = line.mid(colon + 1).trimmed();
        }
        requests.push_back(request);
        FakeReply next = answer(request);
        next.isLast =
            requestsPerConnection > 0 && ++requestsOf[connection] >= requestsPerConnection;
        reply(socket, request.path, next);
    }
}

FakeReply FakeCanvas::answer(const FakeRequest &request) {
    if (custom)
        return custom(request);
    if (auto &planned = plans[request.path]; !planned.empty()) {
        FakeReply next = planned.front();
        planned.pop_front();
        return next;
    }
    if (request.headers.value("authorization") != "Bearer " + token) {
        return {.status = 401, .body = R"({"errors":[{"message":"Invalid access token."}]})"};
    }
    if (request.path == "/api/v1/users/self")
        return {.body = R"({"id":7,"name":"Ana Ruiz","short_name":"Ana"})"};
    if (!records.contains(request.path)) {
        return {
            .status = 404,
            .body = R"({"errors":[{"message":"The specified resource does not exist."}]})"};
    }
    return page(request);
}

FakeReply FakeCanvas::page(const FakeRequest &request) const {
    const auto &list = records[request.path];
    QUrlQuery query(request.query);
    // Clients must treat a bookmark as opaque; this one encodes the index of a record.
    const QByteArray bookmark =
        QByteArray::fromBase64(query.queryItemValue("page").mid(9).toLatin1());
    const std::size_t begin = bookmark.isEmpty() ? 0 : bookmark.mid(1).toULongLong();
    // As in Canvas, ten records by default and at most a hundred.
    const int asked = query.queryItemValue("per_page").toInt();
    const auto pageSize = std::size_t(asked > 0 ? std::min(asked, 100) : 10);
    const std::size_t end = std::min(begin + pageSize, list.size());
    FakeReply reply{.body = "["};
    for (std::size_t i = begin; i < end; ++i) {
        if (i > begin)
            reply.body += ',';
        reply.body += list[i];
    }
    reply.body += ']';
    const auto link = [&](std::size_t index, const char *relation) {
        QUrlQuery other = query;
        other.removeAllQueryItems("page");
        const QByteArray mark = ("k" + QByteArray::number(qulonglong(index))).toBase64();
        other.addQueryItem("page", "bookmark:" + QString::fromLatin1(mark));
        // As in Canvas, links use the request's Host header.
        QUrl url = QUrl::fromEncoded("https://" + request.headers.value("host"));
        url.setPath(request.path);
        url.setQuery(other);
        return "<" + url.toEncoded() + ">; rel=\"" + relation + "\"";
    };
    QByteArray links = link(begin, "current");
    if (end < list.size())
        links += "," + link(end, "next");
    links += "," + link(0, "first");
    reply.headers = {{"link", links}, {"X-Rate-Limit-Remaining", "650.0"}};
    return reply;
}

void FakeCanvas::release() {
    holdingUntil = 0;
    heldPath.clear();
    for (const auto &answerNow : std::exchange(held, {}))
        answerNow();
}

void FakeCanvas::reply(QSslSocket *socket, const QString &path, const FakeReply &reply) {
    if (holdingUntil == 0 && path != heldPath)
        return send(socket, reply);
    const QPointer<QSslSocket> open(socket);
    held.push_back([this, open, reply] {
        if (open)
            send(open, reply);
    });
    if (holdingUntil > 0 && held.size() >= holdingUntil)
        release();
}

void FakeCanvas::send(QSslSocket *socket, const FakeReply &reply) {
    const bool owes = socket->property("owesResponse").toBool();
    const int delay = latencyMilliseconds + (owes ? 40 : 0);
    if (delay == 0)
        return write(socket, reply);
    QTimer::singleShot(
        delay, Qt::PreciseTimer, socket, [this, socket, reply] { write(socket, reply); });
}

void FakeCanvas::write(QSslSocket *socket, const FakeReply &reply) {
    using Manner = FakeReply::Manner;
    if (reply.manner == Manner::silent)
        return;
    if (reply.manner == Manner::closed)
        return socket->abort();
    if (reply.manner == Manner::earlyHints) {
        socket->write("HTTP/1.1 103 Early Hints\r\nLink: </style.css>; rel=preload\r\n\r\n");
        socket->flush();
        // Sends the final response once the client has handled the hints, and before the response
        // to any other request.
        FakeReply final = reply;
        final.manner = Manner::whole;
        socket->setProperty("owesResponse", true);
        QTimer::singleShot(20, socket, [this, socket, final] { write(socket, final); });
        return;
    }
    QByteArray head = "HTTP/1.1 " + QByteArray::number(reply.status) + " Status\r\n";
    head += "Content-Type: application/json; charset=utf-8\r\n";
    const qsizetype length = reply.manner == Manner::trickle ? 1'000'000 : reply.body.size();
    head += "Content-Length: " + QByteArray::number(length) + "\r\n";
    for (const auto &[name, value] : reply.headers)
        head += name + ": " + value + "\r\n";
    socket->write(head + "\r\n");
    switch (reply.manner) {
    case Manner::cut:
        socket->write(reply.body.left(reply.body.size() / 2));
        socket->disconnectFromHost();
        break;
    case Manner::trickle: {
        auto *timer = new QTimer(socket);
        connect(timer, &QTimer::timeout, socket, [socket] { socket->write(" "); });
        timer->start(5);
        break;
    }
    default:
        socket->write(reply.body);
    }
    if (reply.isLast)
        socket->disconnectFromHost();
}

} // namespace ellwynd::test
