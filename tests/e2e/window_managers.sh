# shellcheck shell=bash
# The window managers of the end-to-end tests, each with a configuration of four desktops. To be sourced.

# Whether the matrix may do without this window manager where it is not installed.
is_optional() {
  [[ $1 =~ ^(kwin_x11|metacity|fluxbox|icewm)$ ]]
}

# Writes the configuration of window manager $1 into $HOME, which is fresh, and sets WM_COMMAND to what starts it.
configure_window_manager() {
  case $1 in
    openbox)
      mkdir -p "$HOME/.config/openbox"
      sed 's#<number>[0-9]*</number>#<number>4</number>#' /etc/xdg/openbox/rc.xml >"$HOME/.config/openbox/rc.xml"
      WM_COMMAND=(openbox --sm-disable)
      ;;
    xfwm4)
      WM_COMMAND=(dbus-run-session -- xfwm4 --compositor=off --vblank=off)
      ;;
    i3)
      mkdir -p "$HOME/.config/i3"
      cat >"$HOME/.config/i3/config" <<'CONFIG'
# i3 config file (v4)
font pango:monospace 8
for_window [class=".*"] floating enable
CONFIG
      WM_COMMAND=(i3 -c "$HOME/.config/i3/config")
      ;;
    kwin_x11)
      mkdir -p "$HOME/.config"
      cat >"$HOME/.config/kwinrc" <<'CONFIG'
[Desktops]
Number=4
Rows=1
[Compositing]
Enabled=false
[org.kde.kdecoration2]
library=org.kde.breeze
CONFIG
      WM_COMMAND=(env QT_QPA_PLATFORM=xcb dbus-run-session -- kwin_x11 --no-kactivities --replace)
      ;;
    metacity)
      WM_COMMAND=(env GSETTINGS_BACKEND=memory metacity --sm-disable --no-composite --replace)
      ;;
    fluxbox)
      mkdir -p "$HOME/.fluxbox"
      # The default style runs a program for its wallpaper, which may put up a window of its own.
      ln -s /bin/true "$HOME/.fluxbox/fbsetbg"
      cat >"$HOME/.fluxbox/init" <<'CONFIG'
session.screen0.workspaces: 4
session.screen0.toolbar.visible: false
CONFIG
      WM_COMMAND=(env "PATH=$HOME/.fluxbox:$PATH" fluxbox -rc "$HOME/.fluxbox/init")
      ;;
    icewm)
      mkdir -p "$HOME/.icewm"
      printf 'WorkspaceNames="1","2","3","4"\nShowTaskBar=0\n' >"$HOME/.icewm/preferences"
      WM_COMMAND=(icewm)
      ;;
  esac
}
