#include "platform/printing/printqueue.h"

#include <cups/cups.h>

#include <array>
#include <memory>

namespace ellwynd {

namespace {

constexpr double timeoutSeconds = 5;

/// The address that the standard of the Internet Printing Protocol gives a queue. The host in it
/// is not looked at; the request goes to the configured server.
std::string uriOf(const std::string &queue) {
    std::array<char, HTTP_MAX_URI> uri{};
    httpAssembleURIf(
        HTTP_URI_CODING_ALL, uri.data(), int(uri.size()), "ipp", nullptr, "localhost", ippPort(),
        "/printers/%s", queue.c_str());
    return uri.data();
}

} // namespace

PrintQueueState printQueueState(const std::string &printer) {
    const std::unique_ptr<http_t, decltype(&httpClose)> server(
        httpConnect2(
            cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
            int(timeoutSeconds * 1000), nullptr),
        &httpClose);
    if (!server)
        return PrintQueueState::unreachable;
    httpSetTimeout(server.get(), timeoutSeconds, nullptr, nullptr);

    constexpr const char *isAccepting = "printer-is-accepting-jobs";
    ipp_t *request = ippNewRequest(IPP_OP_GET_PRINTER_ATTRIBUTES);
    const std::string uri = uriOf(printer.substr(0, printer.find('/')));
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri.c_str());
    ippAddString(
        request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", nullptr, isAccepting);
    // Deletes the request.
    const std::unique_ptr<ipp_t, decltype(&ippDelete)> response(
        cupsDoRequest(server.get(), request, "/"), &ippDelete);
    if (!response)
        return PrintQueueState::unreachable;
    // A printer of the network gets its queue when it is printed on, and has none before.
    ipp_attribute_t *value = ippFindAttribute(response.get(), isAccepting, IPP_TAG_BOOLEAN);
    return value != nullptr && ippGetBoolean(value, 0) == 0 ? PrintQueueState::refusing
                                                            : PrintQueueState::accepting;
}

} // namespace ellwynd
