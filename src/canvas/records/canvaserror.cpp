#include "canvas/records/canvaserror.h"

namespace ellwynd {

CanvasError::CanvasError(Case which, std::optional<std::string> carried, int code)
    : kind(which), text(std::move(carried)), status(code), message(errorDescription()) {}

CanvasError::CanvasError(Case plain) : CanvasError(plain, std::nullopt, 0) {}

CanvasError CanvasError::cannotReachHost(std::string host) {
    return {Case::cannotReachHost, std::move(host), 0};
}

CanvasError CanvasError::tlsFailed(std::string host) {
    return {Case::tlsFailed, std::move(host), 0};
}

CanvasError CanvasError::network(std::string description) {
    return {Case::network, std::move(description), 0};
}

CanvasError CanvasError::forbidden(std::optional<std::string> detail) {
    return {Case::forbidden, std::move(detail), 0};
}

CanvasError CanvasError::canvasUnavailable(int status) {
    return {Case::canvasUnavailable, std::nullopt, status};
}

CanvasError CanvasError::unexpectedStatus(int status, std::optional<std::string> detail) {
    return {Case::unexpectedStatus, std::move(detail), status};
}

CanvasError CanvasError::notCanvas(std::string host) {
    return {Case::notCanvas, std::move(host), 0};
}

std::string CanvasError::errorDescription() const {
    const std::string carried = text.value_or("");
    const std::string ending = text ? ": " + carried : ".";
    const std::string code = std::to_string(status);
    switch (kind) {
    case Case::cannotReachHost:
        return "Couldn't reach " + carried + ".";
    case Case::tlsFailed:
        return "A secure connection to " + carried + " couldn't be established.";
    case Case::network:
        return "The connection to Canvas failed: " + carried;
    case Case::forbidden:
        return "Canvas refused the request" + ending;
    case Case::canvasUnavailable:
        return "Canvas isn't responding normally (status " + code + ").";
    case Case::unexpectedStatus:
        return "Canvas returned an unexpected response (status " + code + ")" + ending;
    case Case::notCanvas:
        return carried + " answered, but not like a Canvas server.";
    case Case::offline:
        return "Your Mac appears to be offline.";
    case Case::timedOut:
        return "Canvas took too long to answer.";
    case Case::unauthorized:
        return "Canvas rejected the access token.";
    case Case::rateLimited:
        return "Canvas is limiting requests right now.";
    case Case::notFound:
        return "Canvas couldn't find what Ellwynd asked for.";
    case Case::decodingFailed:
        return "Canvas's response couldn't be read.";
    case Case::nonHTTP:
        return "The server's response wasn't HTTP.";
    case Case::badURL:
        return "A valid Canvas request couldn't be built from the saved address.";
    }
    return {};
}

std::string CanvasError::recoverySuggestion() const {
    switch (kind) {
    case Case::cannotReachHost:
        return "Check the Canvas address in Settings ▸ Connection. It should be the address you "
               "use to sign in, like https://canvas.example.edu.";
    case Case::tlsFailed:
        return "This usually means a network proxy or captive portal is in the way. Try a "
               "different network, or ask your IT department.";
    case Case::network:
        return "Check your connection and try again.";
    case Case::forbidden:
        return "Your token works, but Canvas wouldn't allow this. Some institutions restrict API "
               "access by policy — if this keeps happening, ask whoever administers Canvas.";
    case Case::canvasUnavailable:
        return "This is on Canvas's side — an outage or maintenance. Try again later.";
    case Case::unexpectedStatus:
        return "Try again. If it keeps happening, the Canvas address in Settings ▸ Connection may "
               "not point at a Canvas server.";
    case Case::notCanvas:
        return "The address in Settings ▸ Connection reaches a website, but not Canvas's API. "
               "Check it is your institution's Canvas address, not a portal or login page in "
               "front of it.";
    case Case::offline:
        return "Check your internet connection and try again — nothing you had on screen is lost.";
    case Case::timedOut:
        return "Canvas may be busy. Ellwynd already retried; try again in a minute.";
    case Case::unauthorized:
        return "Generate a new token in Canvas (Account ▸ Settings ▸ Approved Integrations) and "
               "paste it in Settings ▸ Connection. Tokens stop working when they expire or are "
               "deleted in Canvas.";
    case Case::rateLimited:
        return "Ellwynd already slowed down and retried. Wait a minute before refreshing again.";
    case Case::notFound:
        return "If this course was just concluded or deleted in Canvas, refresh the course list. "
               "Otherwise check the Canvas address in Settings ▸ Connection.";
    case Case::decodingFailed:
        return "Try refreshing. If it keeps happening, Canvas may have changed its API — check "
               "for an Ellwynd update.";
    case Case::nonHTTP:
    case Case::badURL:
        return "Check the Canvas address in Settings ▸ Connection.";
    }
    return {};
}

} // namespace ellwynd
