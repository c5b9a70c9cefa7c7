#pragma once

#include <expected>
#include <filesystem>

#include "core/space.h"
#include "core/space_store.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/log.h"
#include "platform/workspace.h"

namespace tallowin {

/// A Markdown file of notes for each Space, in the user's Documents. Main thread only.
class NoteFiles {
 public:
  NoteFiles(Files& files, Workspace& workspace, const Folders& folders, Log& log)
      : files_(files), workspace_(workspace), folders_(folders), log_(log) {}

  /// Where they are. Made when missing; a failure to make it is found by whoever uses it.
  [[nodiscard]] std::filesystem::path folder() const;

  /// Opens the Space's file with the default application, after making it from the Space's name and note when there is
  /// none. The error says in the system's words why it could not be made; it is logged, and nothing is opened then.
  [[nodiscard]] std::expected<void, FileError> open(const Space& space, const SpaceStore& store) const;

 private:
  [[nodiscard]] std::filesystem::path file(const std::string& title) const;

  Files& files_;
  Workspace& workspace_;
  const Folders& folders_;
  Log& log_;
};

}  // namespace tallowin
