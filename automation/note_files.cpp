#include "automation/note_files.h"

#include <algorithm>
#include <tuple>

#include "automation/openable_url.h"

namespace tallowin {

std::filesystem::path NoteFiles::folder() const {
  auto folder = folders_.documents / "Tallowin Notes";
  std::ignore = files_.createDirectory(folder);
  return folder;
}

void NoteFiles::open(const Space& space, const SpaceStore& store) const {
  const auto title = store.displayName(space);
  auto name = title + ".md";
  std::ranges::replace_if(name, [](char c) { return c == '/' || c == ':'; }, '-');
  const auto file = folder() / name;
  const auto text = "# " + title + "\n\n" + store.meta(space.id).note.value_or("") + "\n\n- [ ] \n";
  if (files_.exists(file) || files_.writeAtomically(file, text)) {
    workspace_.openURL(fileURL(file));
  }
}

}  // namespace tallowin
