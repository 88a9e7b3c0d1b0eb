// Asking a print server that answers in the Internet Printing Protocol.
#include "platform/printing/printqueue.h"

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include <future>
#include <optional>
#include <thread>

namespace ellwynd {
namespace {

constexpr int timeoutMilliseconds = 10000;

void appendText(QByteArray &message, char tag, const QByteArray &name, const QByteArray &value) {
    message.append(tag);
    for (const QByteArray &text : {name, value})
        message.append(char(text.size() >> 8)).append(char(text.size())).append(text);
}

/// Reads one request and answers that the queue exists and whether it takes jobs, or, if absent,
/// that there is no such queue. Returns the URI that was asked for.
QByteArray answerOnce(QTcpServer &server, std::optional<bool> isAccepting) {
    if (!server.waitForNewConnection(timeoutMilliseconds))
        return {};
    const std::unique_ptr<QTcpSocket> connection(server.nextPendingConnection());
    QByteArray request;
    const auto body = [&] { return request.indexOf("\r\n\r\n") + 4; };
    // A request ends with the tag for the end of its attributes.
    while (body() < 4 || !request.endsWith('\3'))
        if (request.append(connection->readAll()); !connection->waitForReadyRead(100))
            if (request.contains("Expect: 100") && !request.endsWith('\3'))
                connection->write("HTTP/1.1 100 Continue\r\n\r\n");
    const qsizetype uri = request.indexOf("ipp://");
    QByteArray response("\2\0\0\0", 4);
    if (!isAccepting)
        response = QByteArray("\2\0\4\6", 4);
    response.append(request.mid(body() + 4, 4)).append('\1');
    appendText(response, 0x47, "attributes-charset", "utf-8");
    appendText(response, 0x48, "attributes-natural-language", "en");
    if (isAccepting) {
        response.append('\4');
        appendText(
            response, 0x22, "printer-is-accepting-jobs", QByteArray(1, *isAccepting ? '\1' : '\0'));
    }
    response.append('\3');
    connection->write(
        "HTTP/1.1 200 OK\r\nContent-Type: application/ipp\r\nContent-Length: " +
        QByteArray::number(response.size()) + "\r\n\r\n" + response);
    connection->waitForBytesWritten(timeoutMilliseconds);
    connection->waitForDisconnected(timeoutMilliseconds);
    return request.mid(uri, request.indexOf('D', uri) - uri);
}

TEST(PrintQueue, OnlyAnExplicitRefusalRefuses) {
    struct Case {
        const char *name;
        std::optional<bool> isAccepting;
        PrintQueueState state;
    };
    const std::vector<Case> cases{
        {"accepting", true, PrintQueueState::accepting},
        {"refusing", false, PrintQueueState::refusing},
        {"no such queue yet", std::nullopt, PrintQueueState::accepting}};
    std::promise<quint16> port;
    std::vector<QByteArray> asked;
    std::thread answering([&] {
        QTcpServer server;
        server.listen(QHostAddress::LocalHost);
        port.set_value(server.serverPort());
        for (const Case &c : cases)
            asked.push_back(answerOnce(server, c.isAccepting));
    });
    qputenv("CUPS_SERVER", "127.0.0.1:" + QByteArray::number(port.get_future().get()));
    for (const Case &c : cases)
        EXPECT_EQ(printQueueState("Room 12/draft"), c.state) << c.name;
    answering.join();
    for (const QByteArray &uri : asked)
        EXPECT_TRUE(uri.endsWith("/printers/Room%2012")) << uri.toStdString();
    EXPECT_EQ(printQueueState("Room 12"), PrintQueueState::unreachable) << "the server is gone";
}

} // namespace
} // namespace ellwynd
