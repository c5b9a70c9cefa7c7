#include "base/file_preferences.h"

#include <utility>

#include "base/json_text.h"
#include "base/keep_aside.h"

namespace tallowin {

namespace {

constexpr auto category = "Settings";
constexpr unsigned privateFolder = 0700;
constexpr unsigned privateFile = 0600;

}  // namespace

FilePreferences::FilePreferences(Services services, std::filesystem::path file, GlobalPreferences global)
    : services_(services), file_(std::move(file)), global_(std::move(global)) {}

std::optional<PropertyList> FilePreferences::objectForKey(std::string_view key) {
  lookOncePerTurn();
  const auto found = values_.find(key);
  return found != values_.end() ? std::optional(found->second) : std::nullopt;
}

bool FilePreferences::setObject(std::string_view key, PropertyList value) {
  return change([&](Values& values) { values.insert_or_assign(std::string(key), std::move(value)); });
}

bool FilePreferences::setObjects(const std::map<std::string, PropertyList>& values) {
  return change([&](Values& all) {
    for (const auto& [key, value] : values) {
      all.insert_or_assign(key, value);
    }
  });
}

bool FilePreferences::removeObject(std::string_view key) {
  if (!objectForKey(key)) {
    return true;
  }
  return change([key](Values& values) {
    if (const auto found = values.find(key); found != values.end()) {
      values.erase(found);
    }
  });
}

std::optional<std::string> FilePreferences::fault() {
  readIfChanged();
  return content_ == Content::known ? std::nullopt : std::optional(fault_);
}

std::map<std::string, PropertyList> FilePreferences::persistentDomain() {
  readIfChanged();
  return {values_.begin(), values_.end()};
}

void FilePreferences::synchronize() {
  readIfChanged();
  tellIfChanged();
}

Subscription FilePreferences::observe(std::function<void()> observer) {
  if (watch_ == nullptr) {
    readIfChanged();
    told_ = values_;
    const auto look = [this] { synchronize(); };
    watch_ = std::make_unique<ReplacedFileWatch>(services_.files, services_.mainQueue, file_, look);
    watch_->onWatched = look;
    watch_->start();
  }
  return changed_.subscribe(std::move(observer));
}

std::optional<PropertyList> FilePreferences::CFPreferencesCopyValue(std::string_view key) {
  return global_(key);
}

/// Many settings are read in one turn.
void FilePreferences::lookOncePerTurn() {
  if (!std::exchange(*looked_, true)) {
    readIfChanged();
    services_.mainQueue.async([looked = looked_] { *looked = false; });
  }
}

void FilePreferences::readIfChanged() {
  const auto stamp = services_.files.stamp(file_);
  if (stamp == stamp_) {
    return;
  }
  stamp_ = stamp;
  if (stamp) {
    read();
  } else {
    content_ = Content::known;
    values_.clear();
  }
}

void FilePreferences::read() {
  const auto text = services_.files.read(file_);
  if (!text) {
    stamp_.reset();  // what kept it from being read may pass without changing it
    reportFault(Content::notReadable, "cannot read " + file_.string() + ": " + text.error().description);
    return;
  }
  const auto parsed = parseJSON(*text);
  if (!parsed || !parsed->is_object()) {
    reportFault(Content::notUnderstood, "cannot understand " + file_.string() + " (" +
                                            (parsed ? "it is not a JSON object" : parsed.error()) + ")");
    return;
  }
  content_ = Content::known;
  values_ = parsed->get<Values>();
}

void FilePreferences::reportFault(Content content, const std::string& why) {
  if (content_ != content || fault_ != why) {
    services_.log.error(category, why);
  }
  content_ = content;
  fault_ = why;
}

bool FilePreferences::change(const std::function<void(Values&)>& edit) {
  if (const auto made = services_.files.createDirectory(file_.parent_path(), privateFolder); !made) {
    return failWrite(made.error().description);
  }
  const auto lock = services_.files.lock(file_.string() + ".lock");
  readIfChanged();
  if (content_ == Content::notReadable) {
    return failWrite("it cannot be read");
  }
  auto values = values_;
  edit(values);
  return write(std::move(values));
}

bool FilePreferences::write(Values values) {
  if (content_ == Content::notUnderstood) {
    const auto aside = keepAside(services_.files, services_.clock, file_);
    if (!aside) {
      return failWrite("what stands in it cannot be kept aside: " + aside.error().description);
    }
    services_.log.error(category, "kept " + file_.string() + " as " + aside->filename().string());
  }
  if (const auto written = services_.files.writeAtomically(file_, prettyJSON(values), privateFile); !written) {
    return failWrite(written.error().description);
  }
  content_ = Content::known;
  values_ = std::move(values);
  stamp_ = services_.files.stamp(file_);
  told_ = values_;
  changed_.tell();
  return true;
}

void FilePreferences::tellIfChanged() {
  if (values_ != told_) {
    told_ = values_;
    changed_.tell();
  }
}

bool FilePreferences::failWrite(const std::string& why) {
  services_.log.error(category, "cannot write " + file_.string() + ": " + why);
  return false;
}

}  // namespace tallowin
