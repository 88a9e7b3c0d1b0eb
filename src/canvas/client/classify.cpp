#include "canvas/client/classify.h"

#include "canvas/client/errorbody.h"

#include <algorithm>

namespace ellwynd {

namespace {

using Kind = CanvasError::Kind;

/// Compares letters independently of the locale, since in Turkish "I" is not the capital of "i".
bool mentionsRateLimit(std::string_view text) {
    constexpr std::string_view phrase = "rate limit";
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; };
    const auto same = [&lower](char left, char right) { return lower(left) == right; };
    return std::search(text.begin(), text.end(), phrase.begin(), phrase.end(), same) != text.end();
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

std::optional<std::chrono::milliseconds> retryDelay(const CanvasError &error, int attempt) {
    using std::chrono::milliseconds;
    constexpr int maxAttempts = 3;
    if (attempt >= maxAttempts)
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

} // namespace ellwynd
