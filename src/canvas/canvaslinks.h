// Addresses of Canvas pages, to open in the teacher's browser.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ellwynd {

/// Addresses below the saved Canvas address. Absent unless the base is a valid address (see
/// `httpsURL`) and every id is at least 1.
namespace canvasLinks {

[[nodiscard]] std::optional<std::string> course(const std::string &baseURL, std::int64_t courseID);
[[nodiscard]] std::optional<std::string>
grades(const std::string &baseURL, std::int64_t courseID, std::int64_t studentID);
[[nodiscard]] std::optional<std::string>
assignment(const std::string &baseURL, std::int64_t courseID, std::int64_t assignmentID);
/// The page where access tokens are created.
[[nodiscard]] std::optional<std::string> tokenPage(const std::string &baseURL);

} // namespace canvasLinks

} // namespace ellwynd
