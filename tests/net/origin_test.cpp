#include "net/origin.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

TEST(Origin, LinksAreComparedWithTheRequestedURL) {
    struct Row {
        /// As the teacher typed it.
        const char *typed;
        const char *link;
        bool same;
    };
    for (const Row &row : {
             Row{"https://h.example", "https://h.example/x", true},
             Row{"https://h.example", "https://h.example", true},
             Row{"https://h.example", "https://h.example:443?x", true},
             Row{"https://H.Example", "https://h.example/x", true},
             Row{"https://h.example:", "https://h.example/x", true},
             Row{"https://h.example:0443", "https://h.example/x", true},
             Row{"https://h.example:08443", "https://h.example:8443/x", true},
             Row{"https://b\u00fccher.example", "https://xn--bcher-kva.example/x", true},
             Row{"https://[::1]:8443", "https://[::1]:8443/x", true},
             Row{"https://h.example", "https://H.example/x", false},
             Row{"https://h.example", "https://h.example:8443/x", false},
             Row{"https://h.example", "http://h.example/x", false},
             Row{"https://h.example", "HTTPS://h.example/x", false},
             Row{"https://h.example", "https://h.example.evil.example/x", false},
             Row{"https://h.example", "https://other.example/x", false},
             Row{"https://h.example", "https://h.example@evil.example/", false},
             Row{"https://h.example", "https://me@h.example/", false},
             Row{"https://h.example", "https://@h.example/", false},
             Row{"https://h.example", "https://h.example\\@evil.example/", false},
             Row{"https://h.example", "https://%68.example/", false},
             Row{"https://h.example", "/relative", false},
             Row{"https://h.example", "https:///x", false},
             Row{"https://h.example", "", false},
         }) {
        const auto requested = httpsURL(row.typed);
        ASSERT_TRUE(requested) << row.typed;
        EXPECT_EQ(isSameOrigin(*requested, row.link), row.same) << row.typed << " " << row.link;
    }
}

} // namespace
} // namespace ellwynd
