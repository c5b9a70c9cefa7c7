// The program's tables as parts of manual pages.

#include "app/command_line.h"
#include "app/help_text.h"
#include "app/program.h"
#include "base/settings_table.h"
#include "commands/cli/request_words.h"
#include "commands/command_url.h"
#include "packaging/documents/document_tables.h"
#include "packaging/documents/settings_panes.h"

namespace tallowin {

namespace {

/// Characters that roff would take for something else, or print as something else (groff_char(7)).
std::string roff(std::string_view text) {
  static const std::map<char, std::string_view> escapes = {
      {'\\', "\\e"}, {'-', "\\-"}, {'~', "\\(ti"}, {'^', "\\(ha"}, {'`', "\\(ga"}, {'\'', "\\(aq"}, {'"', "\\(dq"}};
  std::string escaped = text.starts_with('.') ? "\\&" : "";
  for (const char character : text) {
    const auto escape = escapes.find(character);
    escaped.append(escape != escapes.end() ? escape->second : std::string_view(&character, 1));
  }
  return escaped;
}

/// Names in capitals, which stand for something else, in italics; everything else in bold.
std::string usageInRoff(const std::string& usage) {
  std::string text;
  bool italic = false;
  for (const char character : usage) {
    const bool capital = character >= 'A' && character <= 'Z';
    const bool inWord = italic && (capital || character == '-');
    if (capital != italic && !inWord) {
      italic = capital;
      text.append(italic ? "\\fI" : "\\fB");
    }
    text.append(roff({&character, 1}));
  }
  return "\\fB" + text + "\\fR";
}

std::string entry(const std::string& usage, std::string_view meaning) {
  return ".TP\n" + usageInRoff(usage) + "\n" + roff(meaning) + "\n";
}

std::string words() {
  std::string text;
  for (const auto& word : requestWordTable()) {
    text += entry(usageOf(word), word.sentence);
  }
  return text;
}

std::string options() {
  std::string text;
  for (const auto& option : commandLineOptions()) {
    text += entry(usageOf(option), option.sentence);
  }
  return text;
}

std::string urls() {
  std::string text;
  for (const auto& url : commandURLs()) {
    text += entry("tallowin://" + std::string(url.host) + std::string(url.rest), url.sentence);
  }
  return text;
}

std::string exitStatuses() {
  std::string text;
  for (const auto& [status, meaning] : exitStatusMeanings()) {
    text += entry(std::to_string(status), meaning);
  }
  return text;
}

std::string defaultOf(const Setting& setting) {
  if (setting.registeredDefault().is_null()) {
    return "not set";
  }
  const auto value = textOfSetting(setting, setting.registeredDefault());
  return value.empty() ? "empty" : "\\fB" + roff(value) + "\\fR";
}

std::string casesOf(const Setting& setting) {
  std::string text;
  for (const auto& name : setting.cases) {
    text.append(text.empty() ? " One of \\fB" : "\\fR, \\fB").append(roff(name));
  }
  return text.empty() ? text : text + "\\fR.";
}

std::string settings() {
  std::string text;
  for (const auto& [pane, title] : settingsPanes) {
    text.append(".SS ").append(title).append("\n");
    for (const auto& setting : settingsTable()) {
      if (setting.pane == pane) {
        text.append(".TP\n\\fB").append(setting.key).append("\\fR (");
        text.append(nameOfType(setting.type)).append("; ").append(defaultOf(setting)).append(")\n");
        text.append(roff(setting.sentence)).append(casesOf(setting)).append("\n");
      }
    }
  }
  return text;
}

}  // namespace

DocumentTables manualTables() {
  return {{"words", words()},
          {"options", options()},
          {"version", ".ds version " + programVersion().version + "\n"},
          {"urls", urls()},
          {"exit-statuses", exitStatuses()},
          {"settings", settings()}};
}

}  // namespace tallowin
