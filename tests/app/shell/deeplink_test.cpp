#include "app/shell/deeplink.h"

#include <gtest/gtest.h>

#include <string>

namespace ellwynd {
namespace {

using namespace std::string_literals;

TEST(DeepLink, NamesACourseOrNothing) {
    for (const auto &[rest, courseID] : std::vector<std::pair<const char *, std::int64_t>>{
             {"4021", 4021},
             {"+4021", 4021},
             {"-4021", -4021},
             {"0004021", 4021},
             {"9223372036854775807", INT64_MAX},
             {"-9223372036854775808", INT64_MIN},
             {"4021/students/7", 4021},
             {"4021?from=widget", 4021},
             {"4021#top", 4021},
         })
        EXPECT_EQ(courseOfLink("ellwynd://course/"s + rest), courseID) << rest;
    EXPECT_EQ(courseOfLink("ellwynd://somebody@course:80/4021"), 4021);
    // Another scheme or host, a different case, or no path.
    for (const char *link :
         {"other://course/4021", "Ellwynd://course/4021", "xellwynd://course/4021",
          "ellwynd:/course/4021", "ellwynd://courses/4021", "ellwynd://Course/4021",
          "ellwynd://course@elsewhere/4021", "ellwynd://course:port/4021", "ellwynd:///course/4021",
          "ellwynd://course", "ellwynd://course?4021", ""})
        EXPECT_EQ(courseOfLink(link), std::nullopt) << link;
    // Not a 64-bit decimal number.
    for (const std::string &number :
         {""s, "/4021"s, "4021x"s, " 4021"s, "0x10"s, "+"s, "-"s, "+-1"s, "++1"s, "%34021"s,
          "４０２１"s, "4021\0"s, "9223372036854775808"s, "-9223372036854775809"s,
          std::string(1'000'000, '9')})
        EXPECT_EQ(courseOfLink("ellwynd://course/" + number), std::nullopt) << number.substr(0, 60);
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
