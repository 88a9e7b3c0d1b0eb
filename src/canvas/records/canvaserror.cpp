#include "canvas/records/canvaserror.h"

namespace ellwynd {

CanvasError::CanvasError(Kind errorKind, std::optional<std::string> text, int status)
    : errorKind(errorKind), text(std::move(text)), status(status), message(errorDescription()) {}

CanvasError::CanvasError(Kind kind) : CanvasError(kind, std::nullopt, 0) {}

CanvasError CanvasError::cannotReachHost(std::string host) {
    return {Kind::cannotReachHost, std::move(host), 0};
}

CanvasError CanvasError::tlsFailed(std::string host) {
    return {Kind::tlsFailed, std::move(host), 0};
}

CanvasError CanvasError::network(std::string description) {
    return {Kind::network, std::move(description), 0};
}

CanvasError CanvasError::forbidden(std::optional<std::string> detail) {
    return {Kind::forbidden, std::move(detail), 0};
}

CanvasError CanvasError::canvasUnavailable(int status) {
    return {Kind::canvasUnavailable, std::nullopt, status};
}

CanvasError CanvasError::unexpectedStatus(int status, std::optional<std::string> detail) {
    return {Kind::unexpectedStatus, std::move(detail), status};
}

CanvasError CanvasError::notCanvas(std::string host) {
    return {Kind::notCanvas, std::move(host), 0};
}

std::string CanvasError::errorDescription() const {
    const std::string carried = text.value_or("");
    const std::string ending = text ? ": " + carried : ".";
    const std::string code = std::to_string(status);
    switch (errorKind) {
    case Kind::cannotReachHost:
        return "Couldn't reach " + carried + ".";
    case Kind::tlsFailed:
        return "A secure connection to " + carried + " couldn't be established.";
    case Kind::network:
        return "The connection to Canvas failed: " + carried;
    case Kind::forbidden:
        return "Canvas refused the request" + ending;
    case Kind::canvasUnavailable:
        return "Canvas isn't responding normally (status " + code + ").";
    case Kind::unexpectedStatus:
        return "Canvas returned an unexpected response (status " + code + ")" + ending;
    case Kind::notCanvas:
        return carried + " answered, but not like a Canvas server.";
    case Kind::offline:
        return "Your Mac appears to be offline.";
    case Kind::timedOut:
        return "Canvas took too long to answer.";
    case Kind::unauthorized:
        return "Canvas rejected the access token.";
    case Kind::rateLimited:
        return "Canvas is limiting requests right now.";
    case Kind::notFound:
        return "Canvas couldn't find what Ellwynd asked for.";
    case Kind::decodingFailed:
        return "Canvas's response couldn't be read.";
    case Kind::nonHTTP:
        return "The server's response wasn't HTTP.";
    case Kind::badURL:
        return "A valid Canvas request couldn't be built from the saved address.";
    }
    return {};
}

std::string CanvasError::recoverySuggestion() const {
    switch (errorKind) {
    case Kind::cannotReachHost:
        return "Check the Canvas address in Settings ▸ Connection. It should be the address you "
               "use to sign in, like https://canvas.example.edu.";
    case Kind::tlsFailed:
        return "This usually means a network proxy or captive portal is in the way. Try a "
               "different network, or ask your IT department.";
    case Kind::network:
        return "Check your connection and try again.";
    case Kind::forbidden:
        return "Your token works, but Canvas wouldn't allow this. Some institutions restrict API "
               "access by policy — if this keeps happening, ask whoever administers Canvas.";
    case Kind::canvasUnavailable:
        return "This is on Canvas's side — an outage or maintenance. Try again later.";
    case Kind::unexpectedStatus:
        return "Try again. If it keeps happening, the Canvas address in Settings ▸ Connection may "
               "not point at a Canvas server.";
    case Kind::notCanvas:
        return "The address in Settings ▸ Connection reaches a website, but not Canvas's API. "
               "Check it is your institution's Canvas address, not a portal or login page in "
               "front of it.";
    case Kind::offline:
        return "Check your internet connection and try again — nothing you had on screen is lost.";
    case Kind::timedOut:
        return "Canvas may be busy. Ellwynd already retried; try again in a minute.";
    case Kind::unauthorized:
        return "Generate a new token in Canvas (Account ▸ Settings ▸ Approved Integrations) and "
               "paste it in Settings ▸ Connection. Tokens stop working when they expire or are "
               "deleted in Canvas.";
    case Kind::rateLimited:
        return "Ellwynd already slowed down and retried. Wait a minute before refreshing again.";
    case Kind::notFound:
        return "If this course was just concluded or deleted in Canvas, refresh the course list. "
               "Otherwise check the Canvas address in Settings ▸ Connection.";
    case Kind::decodingFailed:
        return "Try refreshing. If it keeps happening, Canvas may have changed its API — check "
               "for an Ellwynd update.";
    case Kind::nonHTTP:
    case Kind::badURL:
        return "Check the Canvas address in Settings ▸ Connection.";
    }
    return {};
}

} // namespace ellwynd
