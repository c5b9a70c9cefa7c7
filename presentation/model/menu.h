#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "presentation/model/status_item.h"

namespace tallowin {

/// One line of a menu.
struct MenuEntry {
  enum class Kind { action, heading, separator, submenu };
  /// How an action that says whether something holds is marked.
  enum class Mark { none, check, radio };

  Kind kind = Kind::action;
  std::string label = {};                    ///< as the user reads it: no mnemonics, no markup
  std::vector<std::string> request = {};     ///< what choosing it asks for, in the words of the command line
  bool asksForFile = false;                  ///< the path of a file that the user chooses follows the words
  Mark mark = Mark::none;                    ///< radio: one of its siblings
  bool isMarked = false;                     ///< that it holds
  std::optional<std::string> colorHex = {};  ///< of a dot before the label, as HUD::colorHex
  std::string symbol = {};                   ///< name of a system symbol image before the label; may be empty
  std::vector<MenuEntry> entries = {};       ///< of a submenu
  bool operator==(const MenuEntry&) const = default;
};

/// What the user can choose from, from top to bottom.
using Menu = std::vector<MenuEntry>;

/// What the menu of the status item is made of.
struct MenuContent {
  std::vector<SpaceRow> spaces = {};
  bool canGoBack = false;
  bool canUndoMinimize = false;
  bool canAdd = false;     ///< desktops
  bool canRemove = false;  ///< desktops
  std::vector<std::string> savedSpaces = {};
  std::vector<std::string> profiles = {};
  std::optional<std::string> activeProfile = {};
  std::vector<std::string> templates = {};  ///< built-in ones first
  /// The copies that were kept, the latest first, as `restore` numbers them from 1.
  std::vector<std::string> earlierStates = {};
};

/// The menu of the status item. What cannot be done is left out.
[[nodiscard]] Menu statusMenu(const MenuContent& content);

/// Visits the entries from top to bottom, those of a submenu behind it; the depth of the outermost is 0.
void visitMenu(const Menu& menu, const std::function<void(const MenuEntry& entry, std::size_t depth)>& visit);

/// The entry with these labels on the way to it, from the outermost; null when there is none, or it does nothing.
[[nodiscard]] const MenuEntry* entryAt(const Menu& menu, const std::vector<std::string>& path);

}  // namespace tallowin
