#include "automation/record_file.h"

#include <algorithm>

#include "base/json_text.h"
#include "base/keep_aside.h"

namespace tallowin {

namespace {

constexpr unsigned privateFile = 0600;

}  // namespace

void RecordFile::log(std::string_view what, std::string_view why) const {
  services_.log.error(category_, std::string(what) + " " + path_.string() + ": " + std::string(why));
}

std::optional<std::string> RecordFile::read() {
  auto bytes = services_.files.read(path_);
  content_ = bytes || bytes.error().notFound ? Content::known : Content::notReadable;
  if (content_ == Content::notReadable) {
    log("cannot read", bytes.error().description);
  }
  return bytes ? std::optional(*std::move(bytes)) : std::nullopt;
}

PropertyList RecordFile::readList(const std::function<bool(const PropertyList&)>& isRecord) {
  const auto bytes = read();
  if (!bytes) {
    return PropertyList::array();
  }
  auto json = parseJSON(*bytes);
  if (json && json->is_array() && std::ranges::all_of(*json, isRecord)) {
    return *std::move(json);
  }
  notUnderstood(json ? "a record has the wrong form" : json.error());
  return PropertyList::array();
}

void RecordFile::notUnderstood(std::string_view why) {
  content_ = Content::notUnderstood;
  log("cannot understand", why);
}

bool RecordFile::makeReplaceable() {
  if (content_ == Content::notUnderstood) {
    const auto aside = keepAside(services_.files, services_.clock, path_);
    if (!aside) {
      log("cannot keep aside", aside.error().description);
      return false;
    }
    log("kept", "now " + aside->filename().string());
    content_ = Content::known;
  }
  return content_ == Content::known;
}

bool RecordFile::write(std::string_view bytes) {
  if (!makeReplaceable()) {
    log("did not replace", "what stands in it cannot be read");
    return false;
  }
  const auto written = services_.files.writeAtomically(path_, bytes, privateFile);
  if (!written) {
    log("cannot write", written.error().description);
  }
  return written.has_value();
}

}  // namespace tallowin
