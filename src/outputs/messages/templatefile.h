// The format of the template file.
#pragma once

#include "outputs/messages/messagetemplate.h"

namespace ellwynd {

/// Reads a JSON array of templates. Dates are seconds since 2001-01-01T00:00:00Z; one that is a
/// number out of range is replaced by the template's other date.
/// @throws FileError for anything else, including an id that is not a UUID and a date outside the
///         years 0 to 9999. The message does not quote the text.
[[nodiscard]] std::vector<MessageTemplate> decodeTemplates(std::string_view text);

/// Writes indented JSON with keys in alphabetical order.
[[nodiscard]] std::string encodeTemplates(const std::vector<MessageTemplate> &templates);

} // namespace ellwynd
