#include "base/text_table.h"

#include <algorithm>

#include "base/unicode.h"
#include "base/words.h"

namespace tallowin {

void TextTable::add(const std::vector<std::string>& cells) {
  auto& row = rows_.emplace_back();
  for (const auto& cell : cells) {
    row.push_back(printable(cell));
  }
}

std::string TextTable::text() const {
  std::vector<std::size_t> widths(columns_.size());
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], displayWidth(row[i]));
    }
  }
  std::string text;
  for (const auto& row : rows_) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line.append(i > 0 ? columns_[i].gap : 0, ' ');
      line += columns_[i].alignment == Alignment::right ? std::string(widths[i] - displayWidth(row[i]), ' ') + row[i]
                                                        : padded(row[i], widths[i]);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
  }
  return text;
}

}  // namespace tallowin
