#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "platform/property_list.h"
#include "platform/simulated/simulated_files.h"

namespace tallowin {

/// The program's preferences file, a JSON object, as a user edits it by hand. Main thread only.
class PreferencesFile {
 public:
  /// `initial` is what the file starts with; without any there is no file.
  PreferencesFile(SimulatedFiles& files, std::map<std::string, PropertyList> initial)
      : files_(files), initial_(std::move(initial)) {}

  /// Where the file is. Until this is told, edits do nothing.
  void use(const std::filesystem::path& path);

  /// Each rewrites the file in place. A file that is no JSON object counts as an empty one.
  void set(const std::string& key, const PropertyList& value);
  void remove(const std::string& key);

 private:
  [[nodiscard]] PropertyList read();
  void write(const PropertyList& preferences);

  SimulatedFiles& files_;
  const std::map<std::string, PropertyList> initial_;
  std::filesystem::path path_;
};

}  // namespace tallowin
