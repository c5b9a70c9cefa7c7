#pragma once

#include <cstdint>
#include <expected>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/delayed_steps.h"
#include "core/program_services.h"
#include "platform/pinned.h"

namespace tallowin {

/// A key combination that users write as text, such as "cmd+shift+1".
struct Keystroke {
  VirtualKeyCode keyCode = 0;
  std::uint64_t flags = 0;  ///< CGEventFlag
  bool operator==(const Keystroke&) const = default;

  /// Reads modifiers and a key in any case and order, joined by "+". Of several keys the last one counts. Nothing when
  /// there is none, or the last one is not known; an empty part is a key that is not known.
  [[nodiscard]] static std::optional<Keystroke> parse(std::string_view text);

  /// Presses the key combination and releases it as if by hand; does nothing for a text that is none. Main thread only.
  static void send(std::string_view text, Events& events);
};

/// A browser with profiles, for whoever lets the user choose one.
struct ProfileBrowser {
  std::string_view name;  ///< as the user knows it
  std::string_view bundleIdentifier;
};

/// Chromium-based browsers and their profiles.
struct BrowserProfiles {
  /// In the order in which they are offered.
  static constexpr ProfileBrowser browsers[] = {
      {"Google Chrome", "com.google.Chrome"},      {"Brave", "com.brave.Browser"},
      {"Microsoft Edge", "com.microsoft.edgemac"}, {"Vivaldi", "com.vivaldi.Vivaldi"},
      {"Arc", "company.thebrowser.Browser"},
  };

  /// Opens a browser in one of its profiles, by the name of the profile's folder, such as "Profile 1". Does nothing
  /// when the browser is not installed; whether it opens is not looked at. Main thread only.
  static void open(Workspace& workspace, std::string_view bundleIdentifier, const std::string& profile);
};

/// Does what the user wants done when a Space is left and entered. Nothing that goes wrong is told but in the log. Main
/// thread only.
class AutomationRunner : Pinned {
 public:
  /// Whether a Space has no windows.
  using IsSpaceEmpty = std::function<bool(const Space&)>;
  /// The applications with a window on a Space.
  using AppsOnSpace = std::function<std::set<ProcessID>(const Space&)>;

  AutomationRunner(const ProgramServices& services, IsSpaceEmpty isSpaceEmpty, AppsOnSpace appsOnSpace);

  /// To be called once for every change of the active Space; without `from` at the start. Programs are started at once;
  /// the rest follows within half a second, whatever Space is active then. Does nothing while the setting
  /// "runAutomations" is off.
  void spaceChanged(const std::optional<Space>& from, const Space& to);

  /// Opens the applications and URLs of an automation now, whatever its conditions.
  void launch(const SpaceAutomation& automation);

  /// The names of the user's shortcuts, sorted; none when they cannot be had. Blocks until the tool that lists them has
  /// ended.
  [[nodiscard]] std::vector<std::string> availableShortcuts();

 private:
  void leave(const Space& space, const SpaceAutomation& automation);
  void enter(const Space& space, const SpaceAutomation& automation);
  /// Whether the conditions for opening applications and URLs on entering are met; then the Space counts as launched.
  [[nodiscard]] bool mayLaunch(const Space& space, const SpaceAutomation& automation);

  void runShortcut(const std::string& name);
  void runScript(const std::string& command, const Space& space);
  void run(const ProcessRequest& request);

  const ProgramServices& services_;
  const IsSpaceEmpty isSpaceEmpty_;
  const AppsOnSpace appsOnSpace_;

  std::set<std::string> launched_;  ///< ids of the Spaces whose applications were opened since the start
  DelayedSteps steps_;
};

/// A Markdown file of notes for each Space, in the user's Documents. Main thread only.
class NoteFiles {
 public:
  explicit NoteFiles(const ProgramServices& services) : services_(services) {}

  /// Where they are. Made when missing; a failure to make it is found by whoever uses it.
  [[nodiscard]] std::filesystem::path folder() const;

  /// Opens the Space's file with the default application, after making it from the Space's name and note when there is
  /// none. The error says in the system's words why it could not be made; it is logged, and nothing is opened then.
  [[nodiscard]] std::expected<void, FileError> open(const Space& space) const;

 private:
  [[nodiscard]] std::filesystem::path file(const std::string& title) const;

  const ProgramServices& services_;
};

}  // namespace tallowin
