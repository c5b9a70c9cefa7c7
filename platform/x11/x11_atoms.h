#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tallowin {

/// The atoms that the X11 binding uses, in the order of x11AtomNames.
enum class X11Atom : std::size_t {
  utf8String,
  netNumberOfDesktops,
  netCurrentDesktop,
  netDesktopNames,
  netSupportingWmCheck,
  netWmName,
  netWmDesktop,
  netActiveWindow,
  edid,
  tallowinDesktopNames,
};

inline constexpr std::array<std::string_view, 10> x11AtomNames = {
    "UTF8_STRING",
    "_NET_NUMBER_OF_DESKTOPS",
    "_NET_CURRENT_DESKTOP",
    "_NET_DESKTOP_NAMES",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_WM_NAME",
    "_NET_WM_DESKTOP",
    "_NET_ACTIVE_WINDOW",
    "EDID",
    "_TALLOWIN_DESKTOP_NAMES",
};

}  // namespace tallowin
