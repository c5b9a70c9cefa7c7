#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tallowin {

/// The atoms that the X11 binding uses: how they are called here, and by the server.
#define TALLOWIN_X11_ATOMS(X)                                         \
  X(utf8String, "UTF8_STRING")                                        \
  X(netNumberOfDesktops, "_NET_NUMBER_OF_DESKTOPS")                   \
  X(netCurrentDesktop, "_NET_CURRENT_DESKTOP")                        \
  X(netDesktopNames, "_NET_DESKTOP_NAMES")                            \
  X(netWorkarea, "_NET_WORKAREA")                                     \
  X(netSupported, "_NET_SUPPORTED")                                   \
  X(netSupportingWmCheck, "_NET_SUPPORTING_WM_CHECK")                 \
  X(netWmName, "_NET_WM_NAME")                                        \
  X(netWmDesktop, "_NET_WM_DESKTOP")                                  \
  X(netActiveWindow, "_NET_ACTIVE_WINDOW")                            \
  X(edid, "EDID")                                                     \
  X(netClientList, "_NET_CLIENT_LIST")                                \
  X(netWmPid, "_NET_WM_PID")                                          \
  X(netWmState, "_NET_WM_STATE")                                      \
  X(netWmStateHidden, "_NET_WM_STATE_HIDDEN")                         \
  X(netWmStateSticky, "_NET_WM_STATE_STICKY")                         \
  X(netWmStateAbove, "_NET_WM_STATE_ABOVE")                           \
  X(netWmStateFullscreen, "_NET_WM_STATE_FULLSCREEN")                 \
  X(netWmStateMaximizedVert, "_NET_WM_STATE_MAXIMIZED_VERT")          \
  X(netWmStateMaximizedHorz, "_NET_WM_STATE_MAXIMIZED_HORZ")          \
  X(netWmWindowType, "_NET_WM_WINDOW_TYPE")                           \
  X(netWmWindowTypeDesktop, "_NET_WM_WINDOW_TYPE_DESKTOP")            \
  X(netWmWindowTypeDock, "_NET_WM_WINDOW_TYPE_DOCK")                  \
  X(netWmWindowTypeToolbar, "_NET_WM_WINDOW_TYPE_TOOLBAR")            \
  X(netWmWindowTypeMenu, "_NET_WM_WINDOW_TYPE_MENU")                  \
  X(netWmWindowTypeUtility, "_NET_WM_WINDOW_TYPE_UTILITY")            \
  X(netWmWindowTypeSplash, "_NET_WM_WINDOW_TYPE_SPLASH")              \
  X(netWmWindowTypeDialog, "_NET_WM_WINDOW_TYPE_DIALOG")              \
  X(netWmWindowTypeDropdownMenu, "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU") \
  X(netWmWindowTypePopupMenu, "_NET_WM_WINDOW_TYPE_POPUP_MENU")       \
  X(netWmWindowTypeTooltip, "_NET_WM_WINDOW_TYPE_TOOLTIP")            \
  X(netWmWindowTypeNotification, "_NET_WM_WINDOW_TYPE_NOTIFICATION")  \
  X(netWmWindowTypeCombo, "_NET_WM_WINDOW_TYPE_COMBO")                \
  X(netWmWindowTypeDnd, "_NET_WM_WINDOW_TYPE_DND")                    \
  X(netWmWindowTypeNormal, "_NET_WM_WINDOW_TYPE_NORMAL")              \
  X(netWmWindowOpacity, "_NET_WM_WINDOW_OPACITY")                     \
  X(netFrameExtents, "_NET_FRAME_EXTENTS")                            \
  X(netCloseWindow, "_NET_CLOSE_WINDOW")                              \
  X(netMoveresizeWindow, "_NET_MOVERESIZE_WINDOW")                    \
  X(netRestackWindow, "_NET_RESTACK_WINDOW")                          \
  X(wmChangeState, "WM_CHANGE_STATE")                                 \
  X(tallowinDesktopNames, "_TALLOWIN_DESKTOP_NAMES")                  \
  X(clipboard, "CLIPBOARD")                                           \
  X(targets, "TARGETS")                                               \
  X(timestamp, "TIMESTAMP")                                           \
  X(multiple, "MULTIPLE")                                             \
  X(atomPair, "ATOM_PAIR")                                            \
  X(plainTextInUTF8, "text/plain;charset=utf-8")

#define TALLOWIN_X11_ATOM(atom, name) atom,
enum class X11Atom : std::size_t { TALLOWIN_X11_ATOMS(TALLOWIN_X11_ATOM) };
#undef TALLOWIN_X11_ATOM

/// Their names, in the order of X11Atom.
#define TALLOWIN_X11_ATOM(atom, name) name,
inline constexpr auto x11AtomNames = std::to_array<std::string_view>({TALLOWIN_X11_ATOMS(TALLOWIN_X11_ATOM)});
#undef TALLOWIN_X11_ATOM

}  // namespace tallowin
