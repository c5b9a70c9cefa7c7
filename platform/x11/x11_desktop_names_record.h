#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/x11/root_properties.h"

namespace tallowin {

/// What was last mirrored to _NET_DESKTOP_NAMES, and the window manager's own names under it. The property
/// _TALLOWIN_DESKTOP_NAMES of the root window holds it, so that the window manager's names outlive the program: a list
/// of texts, of which the first is the number of written names in decimal; these follow, then the others.
struct DesktopNamesRecord {
  std::vector<std::string> written;
  std::vector<std::string> own;
  bool operator==(const DesktopNamesRecord&) const = default;
};

/// Reads the property. One that is absent or makes no sense gives an empty record.
[[nodiscard]] DesktopNamesRecord parseDesktopNamesRecord(const X11Property& property);

/// The property's bytes.
[[nodiscard]] std::string encodeDesktopNamesRecord(const DesktopNamesRecord& record);

/// The texts, each followed by a zero byte, which none of them may contain.
[[nodiscard]] std::string encodeTexts(const std::vector<std::string>& texts);

/// The names that the window manager gave, when _NET_DESKTOP_NAMES is `current`.
///
/// A name that stands where the record says it was written stands for the one under it; all others are the window
/// manager's. Where desktops are `dynamic` the window manager writes all names anew whenever one comes or goes, so that
/// any of its names may stand where the same one was written for another desktop: there the list counts as a whole, as
/// written or as the window manager's.
[[nodiscard]] std::vector<std::string> ownDesktopNames(const std::vector<std::string>& current,
                                                       const DesktopNamesRecord& record, bool dynamic);

}  // namespace tallowin
