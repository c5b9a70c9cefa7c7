#pragma once

#include <expected>
#include <string>

#include "packaging/documents/document_tables.h"

namespace tallowin {

/// The text with each line that is "@NAME@" alone replaced by the table of that name. The error says which placeholder
/// has no table.
[[nodiscard]] std::expected<std::string, std::string> filledIn(const std::string& text, const DocumentTables& tables);

}  // namespace tallowin
