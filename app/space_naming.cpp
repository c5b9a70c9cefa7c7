#include "app/space_naming.h"

#include "core/shown_spaces.h"

namespace tallowin {

void SpaceNaming::give(const std::string& name, const std::string& spaceID) {
  store_.setName(name, spaceID);
  if (!name.empty()) {
    store_.remember(name);
  }
}

Shown SpaceNaming::ask(const Space& space, bool isNew, std::function<void()> answered) {
  return dialog_.present(
      shownSpace(space, store_), isNew,
      lifetime_.bound([this, id = space.id, answered = std::move(answered)](const std::optional<std::string>& name) {
        if (name) {
          give(*name, id);
        }
        answered();
      }));
}

}  // namespace tallowin
