// The program's tables as parts of pages in Markdown.

#include "base/settings_table.h"
#include "packaging/documents/document_tables.h"
#include "packaging/documents/settings_panes.h"

namespace tallowin {

namespace {

std::string inCode(std::string_view text) {
  return "`" + std::string(text) + "`";
}

std::string defaultOf(const Setting& setting) {
  if (setting.registeredDefault().is_null()) {
    return "not set";
  }
  const auto value = textOfSetting(setting, setting.registeredDefault());
  return value.empty() ? "empty" : inCode(value);
}

std::string valuesOf(const Setting& setting) {
  std::string text;
  for (const auto& name : setting.cases) {
    text.append(text.empty() ? "" : ", ").append(inCode(name));
  }
  return text.empty() ? std::string(nameOfType(setting.type)) : text;
}

std::string settings() {
  std::string text;
  for (const auto& [pane, title] : settingsPanes) {
    text.append(text.empty() ? "" : "\n").append("## ").append(title);
    text.append("\n\n| setting | values | default | |\n|---|---|---|---|\n");
    for (const auto& setting : settingsTable()) {
      if (setting.pane == pane) {
        text.append("| ").append(inCode(setting.key)).append(" | ").append(valuesOf(setting)).append(" | ");
        text.append(defaultOf(setting)).append(" | ").append(setting.sentence).append(" |\n");
      }
    }
  }
  return text;
}

}  // namespace

DocumentTables markdownTables() {
  return {{"settings", settings()}};
}

}  // namespace tallowin
