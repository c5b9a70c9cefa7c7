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
    "string:$ID"
}

# The process that owns the program's name on the bus.
process_on_bus() {
  dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus / \
    org.freedesktop.DBus.GetConnectionUnixProcessID "string:$ID" | grep -oE '[0-9]+$'
}

loaded_modules() {
  awk '/tallowin-.*\.so/ { print $NF }' "/proc/$(pgrep -g "$INSTANCE_GROUP" -x tallowin-main | head -n 1)/maps" |
    xargs -rn 1 basename | sort -u | paste -sd ' '
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
  start_bus
  start_group tallowin
  INSTANCE_GROUP=$STARTED_GROUP
  eventually eval 'tallowin list >/dev/null 2>&1'
  wmctrl -s 0
  clean "xdg-open takes the URL" env XDG_CURRENT_DESKTOP=X-Generic xdg-open tallowin://switch/2
  pass_if_eventually "xdg-open tallowin://switch/2 shows desktop 2" 1 current_desktop
  pass_if "a Space is named" "exit 0" "$(installed 'tallowin://rename/2?name=Mail%20%26%20more')"
  completion_cases
  LABEL=installed
  installed tallowin://switch/99 >/dev/null
  pass_if_eventually "its message goes through the module beside it" tallowin-dbus.so loaded_modules
  installed --capture >/dev/null
  pass_if "so do pictures" 1 "$(find "$HOME" -name '*.jp*g' | wc -l)"
  pass_if_eventually "it has its name on the bus" '   boolean true' is_on_bus
  installed quit >/dev/null
  eventually group_is_gone "$INSTANCE_GROUP"
  pass_if "a command has it started" "exit 0" "$(installed tallowin://switch/1)"
  pass_if "by the bus" 1 "$(tr '\0' '\n' <"/proc/$(process_on_bus)/environ" | grep -c ^DBUS_STARTER_BUS_TYPE=)"
  pass_if_eventually "and performed" 0 current_desktop
  installed quit >/dev/null
  end_group "$BUS_GROUP"
  stop_desktop
}
