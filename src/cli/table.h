// Aligned columns for people.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ellwynd::cli {

/// Text for a terminal: control characters become blanks, so that no name can move the cursor.
[[nodiscard]] std::string printable(std::string_view text);

/// Terminal columns of a UTF-8 text: East Asian wide characters take two, combining marks none.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// Rows of cells under headers. Columns are as wide as their widest cell; the last is not padded.
class Table {
  public:
    struct Column {
        std::string header;
        bool rightAligned = false;
    };

    explicit Table(std::vector<Column> layout) : columns(std::move(layout)) {}

    void add(std::vector<std::string> cells);
    [[nodiscard]] std::string text() const;

  private:
    std::vector<Column> columns;
    std::vector<std::vector<std::string>> rows;
};

} // namespace ellwynd::cli
