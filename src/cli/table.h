// Aligned columns of plain text.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ellwynd::cli {

/// Rows of cells under headers. Every cell is shown on one line. A column is as wide as its widest
/// cell; the last is not padded.
class Table {
  public:
    struct Column {
        std::string header;
        bool rightAligned = false;
    };

    explicit Table(std::vector<Column> columns) : columns(std::move(columns)) {}

    void add(std::vector<std::string> cells);
    /// Adds a first column of ids, one for each row: all of them, or else those of rows whose names
    /// are alike (up to letter case and accents), and no column if there are none.
    void
    addIDs(const std::vector<std::int64_t> &ids, const std::vector<std::string> &names, bool all);
    /// @param limit the width of the terminal, in which the last column is continued below its
    /// beginning; 0 for no limit. Ignored where that column would be too narrow.
    [[nodiscard]] std::string text(std::size_t limit = 0) const;

  private:
    std::vector<Column> columns;
    std::vector<std::vector<std::string>> rows;
};

} // namespace ellwynd::cli
