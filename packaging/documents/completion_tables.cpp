// The program's tables as parts of shells' completions.

#include <utility>
#include <vector>

#include "app/command_line.h"
#include "base/settings_table.h"
#include "commands/cli/request_words.h"
#include "commands/command_url.h"
#include "packaging/documents/document_tables.h"

namespace tallowin {

namespace {

using Texts = std::vector<std::string>;

/// In single quotes, as all shells understand them.
std::string inQuotes(std::string_view text) {
  std::string result = "'";
  for (const char character : text) {
    result.append(character == '\'' ? std::string_view("'\\''") : std::string_view(&character, 1));
  }
  return result + "'";
}

/// Arguments for a printf that goes on over lines; the last line ends the command.
std::string pairs(const std::vector<std::pair<std::string, std::string>>& entries) {
  std::string text;
  for (const auto& [written, meaning] : entries) {
    text.append(text.empty() ? "" : " \\\n").append("        ");
    text.append(inQuotes(written)).append(" ").append(inQuotes(meaning));
  }
  return text + "\n";
}

/// How a shell writes one case that prints lines.
using CaseWriter = std::string (*)(const std::string& name, const std::string& command);

std::string shellCase(const std::string& name, const std::string& command) {
  return "    " + name + ") " + command + " ;;\n";
}

std::string fishCase(const std::string& name, const std::string& command) {
  return "        case " + name + "\n            " + command + "\n";
}

/// Nothing where there is nothing to print.
std::string printing(CaseWriter writer, std::string_view name, const Texts& lines) {
  if (lines.empty()) {
    return "";
  }
  std::string command = "printf '%s\\n'";
  for (const auto& line : lines) {
    command.append(" ").append(inQuotes(line));
  }
  return writer(std::string(name), command);
}

/// Operands without the brackets that say that they may be missing.
Texts plainOperands(const RequestWord& word) {
  auto operands = operandsOf(word);
  for (auto& operand : operands) {
    std::erase_if(operand, [](char character) { return character == '[' || character == ']'; });
  }
  return operands;
}

Texts valuesOf(const Setting& setting) {
  return setting.type == SettingType::boolean ? Texts{"true", "false"}
                                              : Texts(setting.cases.begin(), setting.cases.end());
}

/// What can be said of a URL before a Space or a name is: with the slash where one follows.
std::string urlStart(const CommandURL& url) {
  return "tallowin://" + std::string(url.host) + (url.rest.starts_with('/') ? "/" : "");
}

DocumentTables tables(CaseWriter writer) {
  std::vector<std::pair<std::string, std::string>> words;
  std::vector<std::pair<std::string, std::string>> options;
  std::vector<std::pair<std::string, std::string>> urls;
  std::vector<std::pair<std::string, std::string>> settings;
  DocumentTables tables;
  for (const auto& word : requestWordTable()) {
    words.emplace_back(word.name, word.sentence);
    tables["operand-cases"] += printing(writer, word.name, plainOperands(word));
    tables["word-option-cases"] += printing(writer, word.name, optionsOf(word));
  }
  for (const auto& option : commandLineOptions()) {
    options.emplace_back(option.name, option.sentence);
    tables["option-value-cases"] += printing(writer, option.name, {option.values().begin(), option.values().end()});
  }
  for (const auto& url : commandURLs()) {
    urls.emplace_back(urlStart(url), url.sentence);
    const bool takesSpace = url.rest.starts_with("/SPACE");
    tables["operand-cases"] += printing(writer, urlStart(url), takesSpace ? Texts{"SPACE"} : Texts{});
  }
  for (const auto& setting : settingsTable()) {
    settings.emplace_back(setting.key, setting.sentence);
    tables["setting-value-cases"] += printing(writer, setting.key, valuesOf(setting));
  }
  tables["words"] = pairs(words);
  tables["options"] = pairs(options);
  tables["urls"] = pairs(urls);
  tables["settings"] = pairs(settings);
  return tables;
}

}  // namespace

DocumentTables shellTables() {
  return tables(shellCase);
}

DocumentTables fishTables() {
  return tables(fishCase);
}

}  // namespace tallowin
