// Aligned columns of plain text.
#pragma once

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
    [[nodiscard]] std::string text() const;

  private:
    std::vector<Column> columns;
    std::vector<std::vector<std::string>> rows;
};

} // namespace ellwynd::cli
