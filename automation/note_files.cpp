#include "automation/note_files.h"

#include <tuple>

#include "base/app_paths.h"
#include "base/unicode.h"
#include "base/url.h"

namespace tallowin {

namespace {

constexpr std::size_t longestName = 255;  // in bytes; limits.h, NAME_MAX
constexpr std::string_view suffix = ".md";

}  // namespace

std::filesystem::path NoteFiles::folder() const {
  auto folder = folders_.documents / "Tallowin Notes";
  std::ignore = files_.createDirectory(folder);
  return folder;
}

/// Control characters were once part of the name: such a file is found under it.
std::filesystem::path NoteFiles::file(const std::string& title) const {
  const auto name = asFileName(title, "/:");
  const auto nameOf = [](std::string_view text) {
    return std::string(charactersWithin(text, longestName - suffix.size())).append(suffix);
  };
  auto earlier = folder() / nameOf(name);
  return files_.exists(earlier) ? earlier : folder() / nameOf(printable(name, "-"));
}

std::expected<void, FileError> NoteFiles::open(const Space& space, const SpaceStore& store) const {
  const auto title = store.displayName(space);
  const auto path = file(title);
  if (!files_.exists(path)) {
    const auto text = "# " + title + "\n\n" + store.meta(space.id).note.value_or("") + "\n\n- [ ] \n";
    if (const auto written = files_.writeAtomically(path, text); !written) {
      log_.error("NoteFiles", "cannot write " + path.string() + ": " + written.error().description);
      return written;
    }
  }
  workspace_.openURL(fileURL(path));
  return {};
}

}  // namespace tallowin
