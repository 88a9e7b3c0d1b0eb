// The "Link" header and the addresses in it.
#include "canvas/client/linkheader.h"

#include "fuzz/target.h"
#include "net/origin.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace ellwynd;
    const std::string_view header = fuzz::text(data, size);
    if (const auto next = nextLink(header)) {
        fuzz::require(header.find("rel=\"next\"") != std::string_view::npos);
        // A URL of the same origin has the same host and port when it is requested.
        const QUrl url(QString::fromStdString(*next), QUrl::StrictMode);
        if (isSameOrigin(QUrl(QStringLiteral("https://h.example")), *next)) {
            fuzz::require(url.scheme() == QLatin1String("https"));
            fuzz::require(url.host() == QLatin1String("h.example"));
            fuzz::require(url.port(443) == 443 && url.userInfo().isEmpty());
        }
    }
    return 0;
}
