#include "presentation/model/menu.h"

#include <gmock/gmock.h>

#include "base/words.h"

namespace tallowin {
namespace {

using Kind = MenuEntry::Kind;

/// A line for each entry: its mark, its label, and what it asks for.
void list(const Menu& menu, const std::string& indent, std::vector<std::string>& lines) {
  for (const auto& entry : menu) {
    lines.push_back(indent + (entry.isMarked ? "*" : "") + (entry.kind == Kind::heading ? "# " : "") +
                    (entry.kind == Kind::separator ? "---" : entry.label) +
                    (entry.request.empty() ? "" : " = " + joined(entry.request, " ")) +
                    (entry.asksForFile ? " FILE" : ""));
    list(entry.entries, indent + " ", lines);
  }
}

std::vector<std::string> linesOf(const Menu& menu) {
  std::vector<std::string> lines;
  list(menu, "", lines);
  return lines;
}

SpaceRow space(std::optional<std::int64_t> number, std::string name, std::optional<std::string> group = {}) {
  return {.id = name, .name = name, .desktopNumber = number, .group = std::move(group)};
}

MenuContent everything() {
  MenuContent content;
  content.spaces = {space(1, "Code", "Work"), space(2, "Home"), space(3, "Mail", "Work"), space({}, "Film")};
  content.spaces[2].isActive = true;
  content.canGoBack = content.canUndoMinimize = content.canAdd = content.canRemove = true;
  content.savedSpaces = {"Trip"};
  content.profiles = {"Day", "Night"};
  content.activeProfile = "Night";
  content.templates = {"Student"};
  content.earlierStates = {"12:00  before an import"};
  return content;
}

TEST(StatusMenu, HasEverythingThatCanBeDone) {
  EXPECT_THAT(linesOf(statusMenu(everything())),
              testing::ElementsAre(
                  "2  Home = switch 2", "Film = switch Film", "# Work", "1  Code = switch 1", "*3  Mail = switch 3",
                  "Back = back", "---", "Move Window to", " 1  Code = move-window 1", " 2  Home = move-window 2",
                  "Minimize All = minimize-all", "Undo Minimize = undo-minimize", "Scratchpad = scratchpad",
                  "Save and Close Space = save-space", "Reopen", " Trip = reopen Trip", "---", "This Space",
                  " Rename… = tallowin://rename/current", " Note… = ask-note current",
                  " Launch Its Apps Now = automation current run", " ---", " Add Desktop = add-desktop",
                  " Remove Desktop = remove-desktop current --ask", "Profile", " Day = profile use Day",
                  " *Night = profile use Night", "Template", " Student = template apply Student", " ---",
                  " Import… = template import FILE", "Window Layout", " Save = save-layout",
                  " Restore = restore-layout", " Prepare to Unplug = eject", "Restore an Earlier State",
                  " 12:00  before an import = restore 1", "---", "Quit = quit"));
}

TEST(StatusMenu, LeavesOutWhatCannotBeDone) {
  EXPECT_THAT(linesOf(statusMenu({})),
              testing::ElementsAre("Minimize All = minimize-all", "Scratchpad = scratchpad",
                                   "Save and Close Space = save-space", "---", "Template",
                                   " Import… = template import FILE", "Window Layout", " Save = save-layout",
                                   " Restore = restore-layout", " Prepare to Unplug = eject", "---", "Quit = quit"));
}

TEST(StatusMenu, FindsEntriesByTheirLabels) {
  const auto menu = statusMenu(everything());
  const auto* const found = entryAt(menu, {"Profile", "Day"});
  ASSERT_NE(found, nullptr);
  EXPECT_THAT(found->request, testing::ElementsAre("profile", "use", "Day"));
  for (const std::vector<std::string>& path :
       {std::vector<std::string>{}, {"Profile"}, {"Work"}, {"Profile", "Dusk"}, {"Quit", "Day"}, {""}}) {
    EXPECT_EQ(entryAt(menu, path), nullptr) << testing::PrintToString(path);
  }
}

}  // namespace
}  // namespace tallowin
