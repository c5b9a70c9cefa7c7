#include "base/preferences.h"

#include <utility>

#include "base/json_text.h"
#include "base/property_list_reading.h"

namespace tallowin {

bool isNaturalScrolling(const std::optional<PropertyList>& preference) {
  if (!preference) {
    return true;
  }
  const auto flag = property_list::boolean(*preference);
  return flag ? *flag : property_list::integer(*preference).value_or(1) != 0;
}

Preferences::Preferences(Storage& storage, Files& files, MainQueue& mainQueue, std::filesystem::path file,
                         GlobalPreferences global)
    : files_(files),
      mainQueue_(mainQueue),
      path_(std::move(file)),
      global_(std::move(global)),
      file_(storage, path_, "Settings") {
  file_.onSaved = [this] {
    values_ = current();
    unsaved_.clear();
    stamp_ = files_.stamp(path_);
  };
}

std::optional<PropertyList> Preferences::objectForKey(std::string_view key) {
  lookOncePerTurn();
  if (const auto unsaved = unsaved_.find(key); unsaved != unsaved_.end()) {
    return unsaved->second;
  }
  const auto found = values_.find(key);
  return found != values_.end() ? std::optional(found->second) : std::nullopt;
}

bool Preferences::setObject(std::string_view key, PropertyList value) {
  return change({{std::string(key), std::move(value)}});
}

bool Preferences::setObjects(const std::map<std::string, PropertyList>& values) {
  return change({values.begin(), values.end()});
}

bool Preferences::removeObject(std::string_view key) {
  return objectForKey(key) ? change({{std::string(key), std::nullopt}}) : !unsaved_.contains(key);
}

std::optional<std::string> Preferences::fault() {
  readIfChanged();
  return file_.fault();
}

std::map<std::string, PropertyList> Preferences::persistentDomain() {
  readIfChanged();
  return {values_.begin(), values_.end()};
}

void Preferences::synchronize() {
  readIfChanged();
  tellIfChanged();
}

Subscription Preferences::observe(std::function<void()> observer) {
  if (watch_ == nullptr) {
    readIfChanged();
    told_ = current();
    const auto look = [this] { synchronize(); };
    watch_ = std::make_unique<ReplacedFileWatch>(files_, mainQueue_, path_, look);
    watch_->onWatched = look;
    watch_->start();
  }
  return changed_.subscribe(std::move(observer));
}

/// Many settings are read in one turn.
void Preferences::lookOncePerTurn() {
  if (!std::exchange(*looked_, true)) {
    readIfChanged();
    mainQueue_.async([looked = looked_] { *looked = false; });
  }
}

void Preferences::readIfChanged() {
  const auto stamp = files_.stamp(path_);
  if (stamp != stamp_) {
    stamp_ = stamp;
    read();
  }
}

void Preferences::read() {
  auto values = file_.read([](std::string_view text) -> std::expected<Values, std::string> {
    const auto json = parseJSON(text);
    if (json && json->is_object()) {
      return json->get<Values>();
    }
    return std::unexpected(json ? "it is not a JSON object" : json.error());
  });
  if (values) {
    values_ = *std::move(values);
  } else if (!file_.fault()) {
    values_.clear();  // there is no file
  } else if (!file_.isReadable()) {
    stamp_.reset();  // what kept it from being read may pass without changing it
  }
}

bool Preferences::change(Edits edits) {
  edits.merge(unsaved_);
  unsaved_ = std::move(edits);
  const bool saved = file_.write([this] { return textToWrite(); }).has_value();
  told_ = current();
  changed_.tell();
  return saved;
}

/// What others have written since the last look stays, but for the keys that are to be changed.
RecordFile::Text Preferences::textToWrite() {
  // The lock file lies in the folder. A folder that cannot be made is told by the write.
  static_cast<void>(files_.createDirectory(path_.parent_path(), privateFolder));
  auto lock = std::make_shared<Subscription>(files_.lock(path_.string() + ".lock"));
  readIfChanged();
  return [lock = std::move(lock), values = current()] { return prettyJSON(values); };
}

Preferences::Values Preferences::current() const {
  auto values = values_;
  for (const auto& [key, value] : unsaved_) {
    if (value) {
      values.insert_or_assign(key, *value);
    } else if (const auto found = values.find(key); found != values.end()) {
      values.erase(found);
    }
  }
  return values;
}

void Preferences::tellIfChanged() {
  if (auto values = current(); values != told_) {
    told_ = std::move(values);
    changed_.tell();
  }
}

}  // namespace tallowin
