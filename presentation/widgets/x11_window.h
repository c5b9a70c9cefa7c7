#pragma once

#include <functional>

class QScreen;
class QWidget;

namespace tallowin {

/// What Qt does not say to the X server and the window manager of a window. Nothing happens on other platforms.

/// Sets WM_CLASS (ICCCM 4.1.2.5) to this instance name and the class "Tallowin". To be called before the first show.
void setWindowInstance(QWidget& window, const char* instance);

/// Gives it the focus, as the user wants it just now. QWidget::activateWindow() is what a program may ask for by
/// itself, and is refused by some window managers while another window is in use.
void activateForUser(QWidget& window);

/// Whether a compositor runs, so that windows can be translucent (the owner of _NET_WM_CM_Sn).
[[nodiscard]] bool hasCompositor();

/// Whether the window in front on the current desktop is full-screen (EWMH _NET_WM_STATE_FULLSCREEN), so that nothing
/// may be shown over it that the user did not ask for.
[[nodiscard]] bool isFullScreenInFront();

/// The screen that the pointer is on, else the primary one.
[[nodiscard]] QScreen* screenAtPointer();

/// Runs `then` soon after a screen has gone, as long as `window` lives: what was shown there stays outside all others.
void whenScreenGoes(QWidget& window, std::function<void()> then);

}  // namespace tallowin
