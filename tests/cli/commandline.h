// A fixture that runs commands in this process.
#pragma once

#include "cli/run.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <iomanip>
#include <sstream>

namespace ellwynd::cli {

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

/// The words of a command line; those with blanks are in single quotes.
inline std::vector<std::string> wordsOf(const std::string &line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> std::quoted(word, '\'');)
        words.push_back(word);
    return words;
}

struct CommandLineTest : testing::Test {
    test::TemporaryFolder folder;
    std::filesystem::path preferences = folder.path() / "Preferences.json";
    std::string input;

    [[nodiscard]] Outcome call(const std::string &line) const {
        std::istringstream in(input);
        std::ostringstream out;
        std::ostringstream err;
        const int status = run(wordsOf(line), in, out, err, preferences);
        return {status, out.str(), err.str()};
    }

    [[nodiscard]] nlohmann::json document(const std::string &line) const {
        const Outcome outcome = call(line + " --json");
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return nlohmann::json::parse(outcome.out);
    }
};

} // namespace ellwynd::cli
