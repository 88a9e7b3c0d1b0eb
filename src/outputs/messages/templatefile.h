// The text of the templates' file.
#pragma once

#include "outputs/messages/messagetemplate.h"

namespace ellwynd {

/// Reads a JSON array of templates. Dates are numbers of seconds since 2001-01-01T00:00:00Z.
/// @throws FileError for anything else: another shape, an id that is not a UUID, a date outside the
///         years of four digits. The message quotes nothing of the text.
[[nodiscard]] std::vector<MessageTemplate> decodeTemplates(std::string_view text);

/// The same as text, indented, with keys in alphabetical order.
[[nodiscard]] std::string encodeTemplates(const std::vector<MessageTemplate> &templates);

} // namespace ellwynd
