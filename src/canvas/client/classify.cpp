#include "canvas/client/classify.h"

#include "base/text.h"
#include "canvas/records/decoding.h"

#include <algorithm>
#include <cctype>

namespace ellwynd {

namespace {

using Kind = CanvasError::Kind;

bool mentionsRateLimit(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text.find("rate limit") != std::string::npos;
}

/// Calls `use` with every piece of `text` between separators, until it answers true.
template<class Use>
bool split(std::string_view text, char separator, Use use) {
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        if (use(text.substr(begin, end - begin)))
            return true;
        begin = end + 1;
    }
    return false;
}

} // namespace

CanvasError classify(const TransportFailure &failure, const std::string &host) {
    if (failure.timedOut)
        return CanvasError(Kind::timedOut);
    switch (failure.code) {
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::HostNotFoundError:
        return failure.offline ? CanvasError(Kind::offline) : CanvasError::cannotReachHost(host);
    case QNetworkReply::RemoteHostClosedError:
        return CanvasError::network("The connection was interrupted.");
    case QNetworkReply::TimeoutError:
        return CanvasError(Kind::timedOut);
    case QNetworkReply::SslHandshakeFailedError:
        return CanvasError::tlsFailed(host);
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::BackgroundRequestNotAllowedError:
        return CanvasError(Kind::offline);
    case QNetworkReply::UnknownNetworkError:
        if (failure.offline)
            return CanvasError(Kind::offline);
        break;
    default:
        break;
    }
    return CanvasError::network(failure.description);
}

CanvasError classifyStatus(int status, const std::string &body, const std::string &host) {
    const auto text = canvasErrorText(body);
    switch (status) {
    case 401:
        return CanvasError(Kind::unauthorized);
    case 403:
        if (mentionsRateLimit(text.value_or(body)))
            return CanvasError(Kind::rateLimited);
        return CanvasError::forbidden(text);
    case 404:
        return looksLikeHTML(body) ? CanvasError::notCanvas(host) : CanvasError(Kind::notFound);
    case 429:
        return CanvasError(Kind::rateLimited);
    default:
        break;
    }
    if (status >= 500 && status <= 599)
        return CanvasError::canvasUnavailable(status);
    return CanvasError::unexpectedStatus(status, text);
}

std::optional<std::string> canvasErrorText(const std::string &body) {
    const std::string joined = join(decodeErrorMessages(body), " ");
    return joined.empty() ? std::nullopt : std::optional{joined};
}

std::optional<std::chrono::milliseconds> retryDelay(const CanvasError &error, int attempt) {
    using std::chrono::milliseconds;
    constexpr int mostAttempts = 3;
    if (attempt >= mostAttempts)
        return std::nullopt;
    switch (error.kind()) {
    case Kind::canvasUnavailable:
    case Kind::timedOut:
        return milliseconds(500) * attempt;
    case Kind::rateLimited:
        return milliseconds(1500) * attempt;
    default:
        return std::nullopt;
    }
}

std::optional<std::string> nextLink(std::string_view header) {
    std::optional<std::string> address;
    split(header, ',', [&](std::string_view piece) {
        const std::size_t semicolon = piece.find(';');
        if (semicolon == std::string_view::npos)
            return false;
        const bool next = split(piece.substr(semicolon + 1), ';', [](std::string_view segment) {
            return trim(segment, " ") == R"(rel="next")";
        });
        if (next)
            address = trim(trim(piece.substr(0, semicolon), " "), "<>");
        return next;
    });
    return address;
}

} // namespace ellwynd
