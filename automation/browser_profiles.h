#pragma once

#include <string>
#include <string_view>

#include "platform/workspace.h"

namespace tallowin {

/// A browser with profiles, for whoever lets the user choose one.
struct ProfileBrowser {
  std::string_view name;  ///< as the user knows it
  std::string_view bundleIdentifier;
};

/// Opens Chromium-based browsers in one of their profiles. Main thread only.
class BrowserProfiles {
 public:
  explicit BrowserProfiles(Workspace& workspace) : workspace_(workspace) {}

  /// In the order in which they are offered.
  static constexpr ProfileBrowser browsers[] = {
      {"Google Chrome", "com.google.Chrome"},      {"Brave", "com.brave.Browser"},
      {"Microsoft Edge", "com.microsoft.edgemac"}, {"Vivaldi", "com.vivaldi.Vivaldi"},
      {"Arc", "company.thebrowser.Browser"},
  };

  /// `profile` is the name of the profile's folder, such as "Profile 1". Does nothing when the browser is not
  /// installed; whether it opens is not looked at.
  void open(std::string_view bundleIdentifier, const std::string& profile) const;

 private:
  Workspace& workspace_;
};

}  // namespace tallowin
