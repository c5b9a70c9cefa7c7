#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tallowin {

/// Lines of cells for reading in a terminal.
class TextTable {
 public:
  enum class Alignment { left, right };

  struct Column {
    Alignment alignment = Alignment::left;
    std::size_t gap = 2;  ///< so many blanks before it, but for the first one
  };

  explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

  /// Adds a line, with one cell for each column. What would move the cursor is taken out.
  void add(const std::vector<std::string>& cells);

  /// The lines, columns aligned, without blanks at the ends.
  [[nodiscard]] std::string text() const;

 private:
  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace tallowin
