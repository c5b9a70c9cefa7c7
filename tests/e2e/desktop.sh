# shellcheck shell=bash
# One X server and one window manager at a time, on a home folder of their own. To be sourced.
. "$(dirname "${BASH_SOURCE[0]}")/window_managers.sh"

OLD_HOME=$HOME
DESKTOP_DIRECTORY=
SERVER_GROUP=
WM_GROUP=
TRIAL_GROUP=
BUS_GROUP=

# Runs "$@" in a process group of its own, so that whatever it starts can be ended with it. Sets STARTED_GROUP.
start_group() {
  setsid "$@" >>"$DESKTOP_DIRECTORY/log" 2>&1 &
  STARTED_GROUP=$!
}

group_lives() {
  ps -o stat= --sid "$1" | grep -qv '^Z'
}

# Ends group $1: politely, and by force after 0.3 seconds, as fluxbox may hang when it is told to end.
end_group() {
  [ -n "$1" ] || return 0
  kill -TERM -- "-$1" 2>/dev/null
  local tries=30
  while [ $tries -gt 0 ] && group_lives "$1"; do
    sleep 0.01
    tries=$((tries - 1))
  done
  kill -KILL -- "-$1" 2>/dev/null
  wait "$1" 2>/dev/null
  return 0
}

# Runs "$@" again and again until it succeeds; false after 30 seconds.
eventually() {
  local end=$((SECONDS + 30))
  until "$@"; do
    [ $SECONDS -lt $end ] || return 1
    sleep 0.01
  done
}

# Starts a server, whose number it picks itself, and points DISPLAY, HOME and the XDG folders at fresh ones.
start_server() {
  DESKTOP_DIRECTORY=$(mktemp -d "${TMPDIR:-/tmp}/tallowin-e2e.XXXXXX")
  export HOME=$DESKTOP_DIRECTORY/home XDG_RUNTIME_DIR=$DESKTOP_DIRECTORY/run
  unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_STATE_HOME XDG_CACHE_HOME DBUS_SESSION_BUS_ADDRESS I3SOCK WAYLAND_DISPLAY
  mkdir -m 700 "$HOME" "$XDG_RUNTIME_DIR"
  mkfifo "$DESKTOP_DIRECTORY/display"
  setsid Xvfb -displayfd 8 -screen 0 1280x800x24 -nolisten tcp -noreset \
    8>"$DESKTOP_DIRECTORY/display" >>"$DESKTOP_DIRECTORY/log" 2>&1 &
  SERVER_GROUP=$!
  local number
  read -r -t 60 number <"$DESKTOP_DIRECTORY/display" || return 1
  export DISPLAY=:$number
}

# Starts a message bus for the user of the desktop.
start_bus() {
  export DBUS_SESSION_BUS_ADDRESS=unix:path=$XDG_RUNTIME_DIR/bus
  start_group dbus-daemon --session --nofork --nopidfile --address="$DBUS_SESSION_BUS_ADDRESS"
  BUS_GROUP=$STARTED_GROUP
  eventually bus_answers
}

bus_answers() {
  busctl --user list >/dev/null 2>&1
}

# Starts window manager $1 on the server and waits until it manages a window, which then stays.
start_window_manager() {
  configure_window_manager "$1"
  start_group "${WM_COMMAND[@]}"
  WM_GROUP=$STARTED_GROUP
  eventually show_trial_window
}

# A window that is mapped just when openbox has started is never managed, so each try is a window of its own.
show_trial_window() {
  check_window_exists || return 1
  end_group "$TRIAL_GROUP"
  start_group xterm -T TRIAL -geometry 40x10+100+100
  TRIAL_GROUP=$STARTED_GROUP
  local tries=500
  until trial_is_managed; do
    [ $tries -gt 0 ] || return 1
    sleep 0.01
    tries=$((tries - 1))
  done
}

check_window_exists() {
  xprop -root -notype _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id # 0x[1-9a-f]'
}

trial_is_managed() {
  wmctrl -l 2>/dev/null | grep -q ' TRIAL$'
}

current_desktop() {
  xprop -root -notype _NET_CURRENT_DESKTOP | sed 's/.*= //'
}

stop_window_manager() {
  end_group "$TRIAL_GROUP"
  end_group "$WM_GROUP"
  TRIAL_GROUP=
  WM_GROUP=
}

# Ends everything and removes every file. Harmless when nothing runs.
stop_desktop() {
  stop_window_manager
  end_group "$SERVER_GROUP"
  SERVER_GROUP=
  [ -z "$DESKTOP_DIRECTORY" ] || rm -rf "$DESKTOP_DIRECTORY"
  DESKTOP_DIRECTORY=
  export HOME=$OLD_HOME
  unset DISPLAY
}
