#include "platform/x11/x11_desktop_names_record.h"

#include <algorithm>
#include <charconv>

namespace tallowin {

namespace {

/// As many as both lists and the number before them can have.
constexpr std::size_t mostTexts = 2 * std::size_t{maximumDesktopCount} + 1;

std::size_t decimal(std::string_view text) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : 0;
}

}  // namespace

DesktopNamesRecord parseDesktopNamesRecord(const X11Property& property) {
  const auto texts = parseTexts(property, mostTexts);
  const auto count = texts.empty() ? 0 : decimal(texts[0]);
  if (count == 0 || count >= texts.size()) {
    return {};
  }
  const auto middle = texts.begin() + 1 + static_cast<std::ptrdiff_t>(count);
  return {.written = {texts.begin() + 1, middle}, .own = {middle, texts.end()}};
}

std::string encodeDesktopNamesRecord(const DesktopNamesRecord& record) {
  return encodeTexts({std::to_string(record.written.size())}) + encodeTexts(record.written) + encodeTexts(record.own);
}

std::string encodeTexts(const std::vector<std::string>& texts) {
  std::string bytes;
  for (const auto& text : texts) {
    bytes += text;
    bytes += '\0';
  }
  return bytes;
}

std::vector<std::string> ownDesktopNames(const std::vector<std::string>& current, const DesktopNamesRecord& record,
                                         bool dynamic) {
  if (current == record.written) {
    return record.own;
  }
  if (dynamic) {
    return current;
  }
  std::vector<std::string> own;
  for (std::size_t index = 0; index < current.size(); ++index) {
    const bool written = index < record.written.size() && current[index] == record.written[index];
    if (!written || index < record.own.size()) {
      own.resize(index);  // what only filled the list up to here has no name
      own.push_back(written ? record.own[index] : current[index]);
    }
  }
  return own;
}

}  // namespace tallowin
