#include "platform/simulated/simulated_folders.h"

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

}  // namespace tallowin
