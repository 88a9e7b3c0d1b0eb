#include "platform/printing/printqueue.h"

#include <QLibrary>

#include <cups/cups.h>

#include <array>
#include <memory>
#include <type_traits>

namespace ellwynd {

namespace {

constexpr double timeoutSeconds = 5;

/// The functions of CUPS that are used here. The library is loaded when a queue is first asked for,
/// since it and the libraries that it needs take 3 MB and most sessions print nothing.
struct Cups {
    decltype(&::cupsDoRequest) doRequest = nullptr;
    decltype(&::cupsEncryption) encryption = nullptr;
    decltype(&::cupsServer) server = nullptr;
    decltype(&::httpAssembleURI) assembleUri = nullptr;
    decltype(&::httpClose) closeConnection = nullptr;
    decltype(&::httpConnect2) connect = nullptr;
    decltype(&::httpSetTimeout) setTimeout = nullptr;
    decltype(&::ippAddString) addString = nullptr;
    decltype(&::ippDelete) deleteMessage = nullptr;
    decltype(&::ippFindAttribute) findAttribute = nullptr;
    decltype(&::ippGetBoolean) getBoolean = nullptr;
    decltype(&::ippNewRequest) newRequest = nullptr;
    decltype(&::ippPort) port = nullptr;

    /// Whether every function was found.
    bool load() {
        // The version of the binary interface that the headers are of.
        QLibrary library(QStringLiteral("cups"), 2);
        const auto find = [&](auto &function, const char *name) {
            function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(
                library.resolve(name));
            return function != nullptr;
        };
        return find(doRequest, "cupsDoRequest") && find(encryption, "cupsEncryption") &&
            find(server, "cupsServer") && find(assembleUri, "httpAssembleURI") &&
            find(closeConnection, "httpClose") && find(connect, "httpConnect2") &&
            find(setTimeout, "httpSetTimeout") && find(addString, "ippAddString") &&
            find(deleteMessage, "ippDelete") && find(findAttribute, "ippFindAttribute") &&
            find(getBoolean, "ippGetBoolean") && find(newRequest, "ippNewRequest") &&
            find(port, "ippPort");
    }
};

/// The address that the standard of the Internet Printing Protocol gives a queue. The host in it
/// is not looked at; the request goes to the configured server.
std::string uriOf(const Cups &cups, const std::string &queue) {
    std::array<char, HTTP_MAX_URI> uri{};
    cups.assembleUri(
        HTTP_URI_CODING_ALL, uri.data(), int(uri.size()), "ipp", nullptr, "localhost", cups.port(),
        ("/printers/" + queue).c_str());
    return uri.data();
}

} // namespace

PrintQueueState printQueueState(const std::string &printer) {
    Cups cups;
    if (!cups.load())
        return PrintQueueState::unreachable;
    const std::unique_ptr<http_t, decltype(cups.closeConnection)> server(
        cups.connect(
            cups.server(), cups.port(), nullptr, AF_UNSPEC, cups.encryption(), 1,
            int(timeoutSeconds * 1000), nullptr),
        cups.closeConnection);
    if (!server)
        return PrintQueueState::unreachable;
    cups.setTimeout(server.get(), timeoutSeconds, nullptr, nullptr);

    constexpr const char *isAccepting = "printer-is-accepting-jobs";
    ipp_t *request = cups.newRequest(IPP_OP_GET_PRINTER_ATTRIBUTES);
    const std::string uri = uriOf(cups, printer.substr(0, printer.find('/')));
    cups.addString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri.c_str());
    cups.addString(
        request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", nullptr, isAccepting);
    // Deletes the request.
    const std::unique_ptr<ipp_t, decltype(cups.deleteMessage)> response(
        cups.doRequest(server.get(), request, "/"), cups.deleteMessage);
    if (!response)
        return PrintQueueState::unreachable;
    // A printer of the network gets its queue when it is printed on, and has none before.
    ipp_attribute_t *value = cups.findAttribute(response.get(), isAccepting, IPP_TAG_BOOLEAN);
    return value != nullptr && cups.getBoolean(value, 0) == 0 ? PrintQueueState::refusing
                                                              : PrintQueueState::accepting;
}

} // namespace ellwynd
