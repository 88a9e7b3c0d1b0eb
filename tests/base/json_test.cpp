#include "base/files.h"
#include "base/json.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace ellwynd {
namespace {

TEST(JSON, NumbersTooLargeForADoubleAreNull) {
    for (const auto &[text, read] :
         {std::pair{R"({"a": 1e999, "b": 5})", R"({"a":null,"b":5})"},
          {R"([-1e999,2E+400,1e308])", "[null,null,1e+308]"},
          {R"({"1e999": "a \"1e999\" \\", "b": [1e999]})",
           R"({"1e999":"a \"1e999\" \\","b":[null]})"},
          {"[1e-999, 1e999, -0]", "[0.0,null,0]"}})
        EXPECT_EQ(parseJSON(text).dump(), read) << text;
}

TEST(JSON, NumbersOutOfRangeAreRecognised) {
    const auto object = parseJSON(
        R"({"huge": 1e999, "none": null, "beyond": 9223372036854775808, "large": -1e19,
            "max": 9223372036854775807, "real": 5.5, "text": "1e999"})");
    for (const char *key : {"huge", "none", "beyond", "large"})
        EXPECT_TRUE(isOutOfRange(object, key)) << key;
    for (const char *key : {"max", "real", "text", "absent"})
        EXPECT_FALSE(isOutOfRange(object, key)) << key;
    EXPECT_FALSE(isOutOfRange(parseJSON("[null]"), "none"));
}

TEST(JSON, ErrorsDoNotQuoteTheText) {
    const std::string deep = std::string(64, '[') + std::string(64, ']');
    EXPECT_NO_THROW((void)parseJSON(deep));
    for (const auto &[text, problem] : std::vector<std::pair<std::string, std::string>>{
             {"", "It is not valid JSON."},
             {"{\"secret\": x}", "It is not valid JSON."},
             {"[1e999, \"secret", "It is not valid JSON."},
             {"[1e999,]", "It is not valid JSON."},
             {"[\"\xff\"]", "It is not valid JSON."},
             {"[" + deep + "]", "It is nested too deeply."},
             {"[1e999, " + deep + "]", "It is nested too deeply."},
             {std::string(2'000'000, '['), "It is nested too deeply."}}) {
        std::string reported = "none";
        try {
            (void)parseJSON(text);
        } catch (const FileError &error) {
            reported = error.what();
        }
        EXPECT_EQ(reported, problem) << text.substr(0, 40);
    }
}

TEST(JSON, ReadsByType) {
    const auto object = parseJSON(
        R"({"max": 9223372036854775807, "min": -9223372036854775808, "beyond": 9223372036854775808,
            "real": 5.0, "text": "5", "none": null})");
    EXPECT_EQ(integerOf(memberOf(object, "max")), INT64_MAX);
    EXPECT_EQ(integerOf(memberOf(object, "min")), INT64_MIN);
    for (const char *key : {"beyond", "real", "text", "none", "absent"})
        EXPECT_EQ(integerOf(memberOf(object, key)), std::nullopt) << key;
    EXPECT_EQ(numberOf(memberOf(object, "real")), 5);
    EXPECT_EQ(numberOf(memberOf(object, "text")), std::nullopt);
    EXPECT_EQ(stringOf(memberOf(object, "text")), "5");
    EXPECT_EQ(stringOf(memberOf(object, "real")), std::nullopt);
    EXPECT_TRUE(memberOf(parseJSON("[1]"), "text").is_null());
}

} // namespace
} // namespace ellwynd
