#include "base/file_preferences.h"

#include "base/json_text.h"
#include "base/keep_aside.h"

namespace tallowin {

namespace {

constexpr auto category = "Settings";
constexpr unsigned privateFolder = 0700;
constexpr unsigned privateFile = 0600;

}  // namespace

FilePreferences::FilePreferences(Files& files, const Clock& clock, Log& log, std::filesystem::path file,
                                 GlobalPreferences global)
    : files_(files), clock_(clock), log_(log), file_(std::move(file)), global_(std::move(global)) {}

std::optional<PropertyList> FilePreferences::objectForKey(std::string_view key) {
  readIfChanged();
  const auto found = values_.find(key);
  return found != values_.end() ? std::optional(found->second) : std::nullopt;
}

bool FilePreferences::setObject(std::string_view key, PropertyList value) {
  readIfChanged();
  auto values = values_;
  values.insert_or_assign(std::string(key), std::move(value));
  return write(std::move(values));
}

bool FilePreferences::removeObject(std::string_view key) {
  readIfChanged();
  auto values = values_;
  const auto found = values.find(key);
  if (found == values.end()) {
    return true;
  }
  values.erase(found);
  return write(std::move(values));
}

std::map<std::string, PropertyList> FilePreferences::persistentDomain() {
  readIfChanged();
  return {values_.begin(), values_.end()};
}

Subscription FilePreferences::observe(std::function<void()> observer) {
  return changed_.subscribe(std::move(observer));
}

std::optional<PropertyList> FilePreferences::CFPreferencesCopyValue(std::string_view key) {
  return global_(key);
}

void FilePreferences::readIfChanged() {
  const auto stamp = files_.stamp(file_);
  if (stamp == stamp_) {
    return;
  }
  stamp_ = stamp;
  replaceable_ = true;
  if (stamp) {
    read();
  } else {
    values_.clear();
  }
}

void FilePreferences::read() {
  const auto text = files_.read(file_);
  if (!text) {
    replaceable_ = false;
    log_.error(category, "cannot read " + file_.string() + ": " + text.error().description);
    return;
  }
  const auto parsed = parseJSON(*text);
  if (!parsed) {
    reportUnreadable(parsed.error());
  } else if (!parsed->is_object()) {
    reportUnreadable("it is not a JSON object");
  } else {
    values_ = parsed->get<Values>();
  }
}

void FilePreferences::reportUnreadable(const std::string& why) {
  const auto aside = keepAside(files_, clock_, file_);
  replaceable_ = aside.has_value();
  stamp_ = files_.stamp(file_);
  const auto what = "cannot understand " + file_.string() + " (" + why + ")";
  if (aside) {
    log_.error(category, what + ", kept as " + aside->filename().string());
  } else {
    log_.error(category, what + " nor keep it aside: " + aside.error().description);
  }
}

bool FilePreferences::write(Values values) {
  if (!replaceable_) {
    log_.error(category, "did not replace " + file_.string() + ", which cannot be read");
    return false;
  }
  auto made = files_.createDirectory(file_.parent_path(), privateFolder);
  if (made) {
    made = files_.writeAtomically(file_, prettyJSON(values), privateFile);
  }
  if (!made) {
    log_.error(category, "cannot write " + file_.string() + ": " + made.error().description);
    return false;
  }
  values_ = std::move(values);
  stamp_ = files_.stamp(file_);
  changed_.tell();
  return true;
}

}  // namespace tallowin
