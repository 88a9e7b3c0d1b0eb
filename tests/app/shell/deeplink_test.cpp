#include "app/shell/deeplink.h"

#include <gtest/gtest.h>

#include <string>

namespace ellwynd {
namespace {

TEST(DeepLink, NamesACourseOrNothing) {
    struct Row {
        std::string link;
        std::optional<std::int64_t> courseID;
    };
    const std::string megabyte(1'000'000, '9');
    for (const Row &row : {
             Row{"ellwynd://course/4021", 4021},
             Row{"ellwynd://course/+4021", 4021},
             Row{"ellwynd://course/-4021", -4021},
             Row{"ellwynd://course/0004021", 4021},
             Row{"ellwynd://course/9223372036854775807", INT64_MAX},
             Row{"ellwynd://course/-9223372036854775808", INT64_MIN},
             Row{"ellwynd://course/4021/", 4021},
             Row{"ellwynd://course/4021/students/7", 4021},
             Row{"ellwynd://course/4021?from=widget", 4021},
             Row{"ellwynd://course/4021#top", 4021},
             Row{"ellwynd://course/4021/a?b#c", 4021},
             Row{"ellwynd://somebody@course:80/4021", 4021},
             // Another scheme or host, or a different case.
             Row{"other://course/4021", std::nullopt},
             Row{"Ellwynd://course/4021", std::nullopt},
             Row{"xellwynd://course/4021", std::nullopt},
             Row{" ellwynd://course/4021", std::nullopt},
             Row{"ellwynd:/course/4021", std::nullopt},
             Row{"ellwynd:course/4021", std::nullopt},
             Row{"ellwynd://courses/4021", std::nullopt},
             Row{"ellwynd://Course/4021", std::nullopt},
             Row{"ellwynd://course.example/4021", std::nullopt},
             Row{"ellwynd://course@elsewhere/4021", std::nullopt},
             Row{"ellwynd://course:port/4021", std::nullopt},
             Row{"ellwynd:///course/4021", std::nullopt},
             // Not a 64-bit decimal number.
             Row{"ellwynd://course", std::nullopt},
             Row{"ellwynd://course/", std::nullopt},
             Row{"ellwynd://course?4021", std::nullopt},
             Row{"ellwynd://course//4021", std::nullopt},
             Row{"ellwynd://course/abc", std::nullopt},
             Row{"ellwynd://course/4021x", std::nullopt},
             Row{"ellwynd://course/ 4021", std::nullopt},
             Row{"ellwynd://course/4021 ", std::nullopt},
             Row{"ellwynd://course/4,021", std::nullopt},
             Row{"ellwynd://course/0x10", std::nullopt},
             Row{"ellwynd://course/1e3", std::nullopt},
             Row{"ellwynd://course/+", std::nullopt},
             Row{"ellwynd://course/-", std::nullopt},
             Row{"ellwynd://course/+-1", std::nullopt},
             Row{"ellwynd://course/++1", std::nullopt},
             Row{"ellwynd://course/%34021", std::nullopt},
             Row{"ellwynd://course/４０２１", std::nullopt},
             Row{std::string("ellwynd://course/4021\0", 22), std::nullopt},
             Row{"ellwynd://course/9223372036854775808", std::nullopt},
             Row{"ellwynd://course/-9223372036854775809", std::nullopt},
             Row{"ellwynd://course/" + megabyte, std::nullopt},
             Row{"", std::nullopt},
         })
        EXPECT_EQ(courseOfLink(row.link), row.courseID) << row.link.substr(0, 60);
}

TEST(DeepLink, RecognisesWordsThatLookLikeLinks) {
    for (const char *word : {"ellwynd://course/1", "https://canvas.example.edu", "a+b-c.1:x"})
        EXPECT_TRUE(looksLikeLink(word)) << word;
    for (const char *word :
         {"", ":", "course", "--help", "-SampleData", "1:2", "/tmp/a:b", "a b:c"})
        EXPECT_FALSE(looksLikeLink(word)) << word;
}

} // namespace
} // namespace ellwynd
