#include "packaging/documents/document_template.h"

#include <sstream>

namespace tallowin {

namespace {

bool isPlaceholder(const std::string& line) {
  return line.size() > 2 && line.front() == '@' && line.back() == '@' && line.find(' ') == std::string::npos;
}

}  // namespace

std::expected<std::string, std::string> filledIn(const std::string& text, const DocumentTables& tables) {
  std::istringstream lines(text);
  std::string filled;
  for (std::string line; std::getline(lines, line);) {
    if (!isPlaceholder(line)) {
      filled.append(line).append("\n");
      continue;
    }
    const auto table = tables.find(line.substr(1, line.size() - 2));
    if (table == tables.end()) {
      return std::unexpected("there is no table for " + line);
    }
    filled.append(table->second);
  }
  return filled;
}

}  // namespace tallowin
