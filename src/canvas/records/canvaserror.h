// The error of Canvas reads.
#pragma once

#include <exception>
#include <optional>
#include <string>

namespace ellwynd {

/// Why a Canvas read failed. The message and the recovery text are shown to the teacher.
class CanvasError : public std::exception {
  public:
    enum class Kind {
        cannotReachHost,
        tlsFailed,
        network,
        forbidden,
        canvasUnavailable,
        unexpectedStatus,
        notCanvas,
        offline,
        timedOut,
        unauthorized,
        rateLimited,
        notFound,
        decodingFailed,
        nonHTTP,
        badURL,
    };

    static CanvasError cannotReachHost(std::string host);
    static CanvasError tlsFailed(std::string host);
    static CanvasError network(std::string description);
    static CanvasError forbidden(std::optional<std::string> detail);
    static CanvasError canvasUnavailable(int status);
    static CanvasError unexpectedStatus(int status, std::optional<std::string> detail);
    static CanvasError notCanvas(std::string host);
    /// For the eight kinds without a value.
    explicit CanvasError(Kind kind);

    [[nodiscard]] Kind kind() const { return errorKind; }

    /// Whether the request may have failed for want of a network, so that it is worth trying again
    /// when there is one.
    [[nodiscard]] bool lacksNetwork() const {
        return errorKind == Kind::offline || errorKind == Kind::cannotReachHost ||
            errorKind == Kind::network;
    }

    /// What happened, in a sentence.
    [[nodiscard]] std::string errorDescription() const;
    /// What the teacher can do about it.
    [[nodiscard]] std::string recoverySuggestion() const;

    [[nodiscard]] const char *what() const noexcept override { return message.c_str(); }

    bool operator==(const CanvasError &other) const {
        return errorKind == other.errorKind && text == other.text && status == other.status;
    }

  private:
    CanvasError(Kind errorKind, std::optional<std::string> text, int status);

    Kind errorKind;
    /// The kind's host, description or detail.
    std::optional<std::string> text;
    int status = 0;
    std::string message;
};

} // namespace ellwynd
