# shellcheck shell=bash
# The installed program on a real desktop, found by its desktop entry and its name on the bus. To be sourced.
# shellcheck disable=SC2034 # LABEL is for checks.sh

installed() {
  timeout 20 tallowin "$@" 2>&1
  echo "exit $?"
}

# Whether somebody owns the program's name on the bus.
is_on_bus() {
  dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner \
    "string:$ID" | grep -q true
}

loaded_modules() {
  awk '/tallowin-.*\.so/ { print $NF }' "/proc/$(pgrep -g "$INSTANCE_GROUP" -x tallowin-main | head -n 1)/maps" |
    xargs -rn 1 basename | sort -u | paste -sd ' '
}

is_answered() {
  [ "$(installed list | tail -n 1)" == "exit 0" ]
}

desktop_cases() {
  LABEL=installed
  export PATH=$PREFIX/bin:$PATH
  pass_if "it runs in a stage" "tallowin $(sed -n 's/^CMAKE_PROJECT_VERSION:.*=//p' "$BUILD/CMakeCache.txt")" \
    "$("$STAGE/usr/bin/tallowin" --version)"
  if ! start_server || ! start_window_manager openbox; then
    pass_if "openbox starts" yes "no; its log ends: $(tail -n 3 "$DESKTOP_DIRECTORY/log")"
    return
  fi
  export XDG_DATA_DIRS=$PREFIX/share:/usr/share
  update-desktop-database "$PREFIX/share/applications"
  DBUS_SESSION_BUS_ADDRESS=unix:path=$DESKTOP_DIRECTORY/bus
  export DBUS_SESSION_BUS_ADDRESS
  start_group dbus-daemon --session --nofork --nopidfile "--address=$DBUS_SESSION_BUS_ADDRESS"
  local bus_group=$STARTED_GROUP
  eventually test -S "$DESKTOP_DIRECTORY/bus"
  start_group tallowin
  INSTANCE_GROUP=$STARTED_GROUP
  eventually is_answered
  wmctrl -s 0
  clean "xdg-open takes the URL" env XDG_CURRENT_DESKTOP=X-Generic xdg-open tallowin://switch/2
  pass_if_eventually "xdg-open tallowin://switch/2 shows desktop 2" 1 current_desktop
  pass_if "a Space is named" "exit 0" "$(installed 'tallowin://rename/2?name=Mail%20%26%20more')"
  completion_cases
  LABEL=installed
  installed tallowin://switch/99 >/dev/null
  pass_if_eventually "its message goes through the module beside it" tallowin-dbus.so loaded_modules
  pass_if "so do pictures" "exit 0" "$(installed --capture | tail -n 1)"
  pass_if "which are there" 1 "$(find "$HOME" -name '*.jp*g' | wc -l)"
  bus_cases
  installed quit >/dev/null
  end_group "$INSTANCE_GROUP"
  end_group "$bus_group"
  stop_desktop
}

# What the desktop is promised of the bus is true.
bus_cases() {
  eventually is_on_bus
  pass_if "it has its name on the bus" yes "$(is_on_bus && echo yes)"
  installed quit >/dev/null
  eventually group_is_gone "$INSTANCE_GROUP"
  dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.StartServiceByName \
    "string:$ID" uint32:0 >/dev/null 2>&1
  pass_if_eventually "the bus starts it by its name" "exit 0" eval 'installed list | tail -n 1'
}
