#include "platform/simulated/simulated_files.h"

#include <algorithm>
#include <utility>

#include "base/json_text.h"
#include "base/unicode.h"

namespace tallowin {

const Folders& simulatedFolders() {
  static const Folders folders = {"/home/user",        "/home/user/.local/share", "/home/user/.config",
                                  "/home/user/.cache", "/home/user/Documents",    "/run/user/1000"};
  return folders;
}

std::string simulatedPath(std::string_view text) {
  if (text == "~" || text.starts_with("~/")) {
    return simulatedFolders().home.string() + std::string(text.substr(1));
  }
  return text.starts_with("/") ? std::string(text) : std::string();
}

namespace {

using Path = std::filesystem::path;

constexpr std::string_view base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The system's own words (errno.h).
FileError noSuchFile() {
  return {true, "No such file or directory"};
}
FileError refused(const char* why) {
  return {false, why};
}

std::string key(const Path& path) {
  auto text = (Path("/") / path).lexically_normal().string();
  if (text.size() > 1 && text.ends_with('/')) {
    text.pop_back();
  }
  return text;
}

std::string parentOf(const std::string& path) {
  return key(Path(path).parent_path());
}

}  // namespace

std::string base64(std::string_view bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const auto group = bytes.substr(i, 3);
    std::uint32_t bits = 0;
    for (std::size_t j = 0; j < 3; ++j) {
      bits = bits << 8 | (j < group.size() ? static_cast<unsigned char>(group[j]) : 0U);
    }
    for (std::size_t j = 0; j < 4; ++j) {
      text += j <= group.size() ? base64Digits[bits >> (18 - 6 * j) & 0x3F] : '=';
    }
  }
  return text;
}

std::optional<std::string> bytesOfBase64(std::string_view text) {
  if (text.size() % 4 != 0) {
    return std::nullopt;
  }
  const auto padding = text.ends_with("==") ? 2U : text.ends_with("=") ? 1U : 0U;
  text.remove_suffix(padding);
  std::string bytes;
  std::uint32_t bits = 0;
  unsigned pending = 0;
  for (const char c : text) {
    const auto digit = base64Digits.find(c);
    if (digit == std::string_view::npos) {
      return std::nullopt;
    }
    bits = bits << 6 | static_cast<std::uint32_t>(digit);
    pending += 6;
    if (pending >= 8) {
      pending -= 8;
      bytes += static_cast<char>(static_cast<unsigned char>(bits >> pending));
    }
  }
  return bytes;
}

SimulatedFiles::SimulatedFiles(MainQueue& queue, const Clock& clock, Journal& journal)
    : queue_(queue), clock_(clock), journal_(journal), folders_({"/"}) {}

std::expected<std::string, FileError> SimulatedFiles::read(const Path& path) {
  const auto found = files_.find(key(path));
  if (found != files_.end()) {
    return found->second.bytes;
  }
  return std::unexpected(folders_.contains(key(path)) ? refused("Is a directory") : noSuchFile());
}

std::optional<FileError> SimulatedFiles::refusal(const Path& path) const {
  const auto name = key(path);
  const auto folder = parentOf(name);
  const bool isForbidden = unwritable_.contains(name) || unwritable_.contains(folder);
  return files_.contains(folder)      ? std::optional(refused("Not a directory"))
         : !folders_.contains(folder) ? std::optional(noSuchFile())
         : isForbidden                ? std::optional(refused("Permission denied"))
         : folders_.contains(name)    ? std::optional(refused("Is a directory"))
                                      : std::nullopt;
}

/// Why the disk fails before a file of this size has taken the old one's place.
std::optional<FileError> SimulatedFiles::failure(std::size_t size) const {
  if (failing_ && *failing_ <= WriteStage::rename) {
    return refused("Input/output error");
  }
  return room_ && size > *room_ ? std::optional(refused("No space left on device")) : std::nullopt;
}

std::expected<void, FileError> SimulatedFiles::journalled(std::string_view op, nlohmann::ordered_json arguments,
                                                          std::optional<FileError> error) {
  if (error) {
    arguments["error"] = error->description;
  }
  journal_.record(op, arguments);
  return error ? std::expected<void, FileError>(std::unexpected(std::move(*error))) : std::expected<void, FileError>{};
}

std::expected<void, FileError> SimulatedFiles::writeAtomically(const Path& path, std::string_view bytes, unsigned mode,
                                                               OldMode old) {
  auto error = refusal(path).or_else([&] { return failure(bytes.size()); });
  if (!error) {
    put(key(path), bytes, mode, old);
    error = failing_ ? std::optional(refused("Input/output error")) : std::nullopt;
  }
  return journalled("writeAtomically", {{"path", key(path)}, {"size", bytes.size()}}, std::move(error));
}

std::expected<void, FileError> SimulatedFiles::restrictMode(const Path& path, unsigned mode) {
  const auto found = files_.find(key(path));
  if (found == files_.end()) {
    return std::unexpected(noSuchFile());
  }
  if ((found->second.mode & ~mode) == 0) {
    return {};
  }
  auto error = refusal(path);
  if (!error) {
    found->second.mode &= mode;
  }
  return journalled("restrictMode", {{"path", key(path)}}, std::move(error));
}

std::expected<void, FileError> SimulatedFiles::createDirectory(const Path& path, unsigned /*mode*/) {
  const auto name = key(path);
  if (folders_.contains(name)) {
    return {};
  }
  std::vector<std::string> made;
  for (auto folder = name; !folders_.contains(folder); folder = parentOf(folder)) {
    if (files_.contains(folder)) {
      return journalled("createDirectory", {{"path", name}}, refused("Not a directory"));
    }
    made.push_back(folder);
  }
  auto error = refusal(made.back()).or_else([&] { return failure(1); });  // a folder takes room
  if (!error) {
    folders_.insert(made.begin(), made.end());
  }
  return journalled("createDirectory", {{"path", name}}, std::move(error));
}

std::expected<void, FileError> SimulatedFiles::rename(const Path& from, const Path& to) {
  const auto source = files_.find(key(from));
  auto error = source == files_.end() ? std::optional(noSuchFile()) : refusal(from);
  error = error.or_else([&] { return refusal(to); });
  if (!error && key(from) != key(to)) {
    tell(source->second, {.renamed = true});
    auto moved = files_.extract(source);
    take(to);
    moved.key() = key(to);
    files_.insert(std::move(moved));
  }
  return journalled("rename", {{"from", key(from)}, {"to", key(to)}}, std::move(error));
}

std::expected<void, FileError> SimulatedFiles::remove(const Path& path) {
  auto error = files_.contains(key(path)) ? refusal(path) : std::optional(noSuchFile());
  if (!error) {
    take(path);
  }
  return journalled("remove", {{"path", key(path)}}, std::move(error));
}

bool SimulatedFiles::exists(const Path& path) {
  return files_.contains(key(path)) || folders_.contains(key(path));
}

std::vector<std::string> SimulatedFiles::list(const Path& folder) {
  std::set<std::string> names;
  const auto addChild = [&, parent = key(folder)](const std::string& path) {
    if (path != "/" && parentOf(path) == parent) {
      names.insert(Path(path).filename().string());
    }
  };
  for (const auto& [path, file] : files_) {
    addChild(path);
  }
  std::ranges::for_each(folders_, addChild);
  return {names.begin(), names.end()};
}

std::optional<FileStamp> SimulatedFiles::stamp(const Path& path) {
  const auto found = files_.find(key(path));
  if (found == files_.end()) {
    return std::nullopt;
  }
  return FileStamp{found->second.modified, found->second.bytes.size(), found->second.identity};
}

std::optional<Subscription> SimulatedFiles::watch(const Path& path, std::function<void(FileEvents)> onEvent) {
  const auto found = files_.find(key(path));
  if (found == files_.end()) {
    return std::nullopt;
  }
  // The subscription is the one owner: once it is let go of, nobody is told, not even of what has happened before.
  auto watch = std::make_shared<Watch>(Watch{std::move(onEvent)});
  std::erase_if(found->second.watches, [](const auto& entry) { return entry.expired(); });
  found->second.watches.push_back(watch);
  return Subscription([watch]() mutable { watch.reset(); });
}

void SimulatedFiles::tell(const File& file, FileEvents events) {
  for (const auto& entry : file.watches) {
    queue_.async([entry, events] {
      if (const auto watch = entry.lock()) {
        watch->onEvent(events);
      }
    });
  }
}

/// Replaces the file, which lives on for those who watch it only as a deleted one.
void SimulatedFiles::put(const std::string& path, std::string_view bytes, unsigned mode, OldMode oldMode) {
  const auto old = files_.find(path);
  const auto newMode = old == files_.end() || oldMode == OldMode::replaced ? mode : old->second.mode;
  take(path);
  const auto now = std::chrono::duration_cast<std::chrono::nanoseconds>(clock_.now().time_since_epoch()).count();
  lastModified_ = std::max<std::int64_t>(now, lastModified_ + 1);
  files_[path] = {std::string(bytes), newMode, lastModified_, ++lastIdentity_, {}};
}

void SimulatedFiles::placeFolder(const Path& path) {
  for (auto folder = key(path); !folders_.contains(folder); folder = parentOf(folder)) {
    take(folder);
    folders_.insert(folder);
  }
}

void SimulatedFiles::overwrite(const Path& path, std::string_view bytes) {
  const auto name = key(path);
  if (folders_.contains(name)) {
    return;
  }
  auto watches = files_.contains(name) ? std::exchange(files_[name].watches, {}) : decltype(File::watches){};
  const auto identity = files_.contains(name) ? files_[name].identity : ++lastIdentity_;
  placeFolder(parentOf(name));
  put(name, bytes, 0644, OldMode::kept);
  auto& file = files_[name];
  file.identity = identity;
  file.watches = std::move(watches);
  tell(file, {.written = true});
}

void SimulatedFiles::replace(const Path& path, std::string_view bytes) {
  if (!folders_.contains(key(path))) {
    placeFolder(parentOf(key(path)));
    put(key(path), bytes, 0644, OldMode::kept);
  }
}

void SimulatedFiles::take(const Path& path) {
  if (const auto found = files_.find(key(path)); found != files_.end()) {
    tell(found->second, {.deleted = true});
    files_.erase(found);
  }
}

void SimulatedFiles::corrupt(const Path& path) {
  if (const auto found = files_.find(key(path)); found != files_.end()) {
    overwrite(path, found->second.bytes.substr(0, found->second.bytes.size() / 2) + "\xFF\xFE\xC0");
  }
}

void SimulatedFiles::setUnwritable(const Path& path, bool unwritable) {
  if (unwritable) {
    unwritable_.insert(key(path));
  } else {
    unwritable_.erase(key(path));
  }
}

nlohmann::ordered_json SimulatedFiles::contents() const {
  auto result = nlohmann::ordered_json::object();
  for (const auto& [path, file] : files_) {
    result[path] = isValidUTF8(file.bytes) ? nlohmann::ordered_json(file.bytes)
                                           : nlohmann::ordered_json{{"base64", base64(file.bytes)}};
  }
  return result;
}

void PreferencesFile::use(const std::filesystem::path& path) {
  path_ = path;
  if (!initial_.empty()) {
    write(initial_);
  }
}

void PreferencesFile::set(const std::string& key, const PropertyList& value) {
  auto preferences = read();
  preferences[key] = value;
  write(preferences);
}

void PreferencesFile::remove(const std::string& key) {
  auto preferences = read();
  preferences.erase(key);
  write(preferences);
}

PropertyList PreferencesFile::read() {
  const auto parsed = parseJSON(files_.read(path_).value_or(""));
  return parsed && parsed->is_object() ? *parsed : PropertyList::object();
}

void PreferencesFile::write(const PropertyList& preferences) {
  if (!path_.empty()) {
    files_.overwrite(path_, prettyJSON(preferences));
  }
}

}  // namespace tallowin
