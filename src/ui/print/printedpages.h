// The pages of a printed roster and of a printed student.
#pragma once

#include "app/print/printedtexts.h"

#include <variant>

class QByteArray;
class QPagedPaintDevice;

namespace ellwynd {

/// What is printed.
using PrintedDocument = std::variant<PrintedRoster, PrintedStudent>;

/// Prints on all pages that are needed, in light colours.
/// @return false if the device could not be opened, or failed.
[[nodiscard]] bool printPages(QPagedPaintDevice &device, const PrintedDocument &document);

/// The document as a PDF file; empty if it could not be made.
[[nodiscard]] QByteArray pdf(const PrintedDocument &document);

/// The roster's title or the student's name.
[[nodiscard]] const std::string &titleOf(const PrintedDocument &document);

} // namespace ellwynd
