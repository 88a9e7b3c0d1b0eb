#include "net/origin.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

TEST(Origin, LinksAreComparedWithTheRequestedURL) {
    struct Row {
        /// As the teacher typed it.
        const char *typed;
        const char *link;
    };
    for (const Row &row : {
             Row{"https://h.example", "https://h.example/x"},
             Row{"https://h.example", "https://h.example"},
             Row{"https://h.example", "https://h.example:443?x"},
             Row{"https://H.Example", "https://h.example/x"},
             Row{"https://h.example:", "https://h.example/x"},
             Row{"https://h.example:0443", "https://h.example/x"},
             Row{"https://h.example:08443", "https://h.example:8443/x"},
             Row{"https://b\u00fccher.example", "https://xn--bcher-kva.example/x"},
             Row{"https://[::1]:8443", "https://[::1]:8443/x"},
         }) {
        const auto requested = httpsURL(row.typed);
        ASSERT_TRUE(requested) << row.typed;
        EXPECT_TRUE(isSameOrigin(*requested, row.link)) << row.typed << " " << row.link;
    }
    const QUrl requested = httpsURL("https://h.example").value();
    for (const char *link :
         {"https://H.example/x", "https://h.example:8443/x", "http://h.example/x",
          "HTTPS://h.example/x", "https://h.example.evil.example/x", "https://other.example/x",
          "https://h.example@evil.example/", "https://me@h.example/", "https://@h.example/",
          "https://h.example\\@evil.example/", "https://%68.example/", "/relative", "https:///x",
          ""})
        EXPECT_FALSE(isSameOrigin(requested, link)) << link;
}

} // namespace
} // namespace ellwynd
