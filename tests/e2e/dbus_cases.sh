#!/bin/bash
# The program on the user's message bus: dbus_cases.sh PROGRAM
#
# It runs under openbox. What is on the bus is called, read and heard by busctl and gdbus; what the desktop does is seen
# by xprop. The examples of docs/dbus.md are run by tests/documents.
set -u
. "$(dirname "$0")/desktop.sh"
. "$(dirname "$0")/checks.sh"

LABEL="D-Bus"
PROGRAM=$(realpath "$1")
PAGE=$(dirname "$0")/../../docs/dbus.md
NAME=com.quorvex.Tallowin
OBJECT=/com/quorvex/Tallowin
INSTANCE_GROUP=
trap 'end_group "$INSTANCE_GROUP"; end_group "$BUS_GROUP"; stop_desktop' EXIT
trap 'exit 130' INT TERM

has_owner() {
  busctl --user status $NAME >/dev/null 2>&1
}

tw() {
  busctl --user call $NAME $OBJECT $NAME "$@" 2>&1
}

# application METHOD ARGUMENTS...: of the desktop's own interface.
application() {
  gdbus call --session -d $NAME -o $OBJECT -m "org.freedesktop.Application.$1" "${@:2}" 2>&1
}

property() {
  busctl --user get-property $NAME $OBJECT $NAME "$1"
}

# "Method signature" for each one, sorted.
introspected() {
  busctl --user introspect $NAME $OBJECT $NAME | awk '$2 == "method" { print substr($1, 2), $3 }' | sort
}
# shellcheck disable=SC2016 # these are the page's own quotes
documented() {
  sed -n 's/^| `tw \([A-Za-z0-9]*\) \{0,1\}\([abs]*\).*/\1 \2/p' "$PAGE" | sed 's/ $/ -/' | sort
}

no_bus_case() {
  start_instance --verbose
  pass_if "it runs without a bus" "exit 0" "$(ask list | tail -n 1)"
  ask edit 2 --name Trial >/dev/null
  ask edit 2 --name '' >/dev/null
  pass_if_eventually "and says so once" 1 grep -c 'cannot call this one by D-Bus' "$DESKTOP_DIRECTORY/log"
  quit_instance
}

command_cases() {
  pass_if "SwitchTo returns" "" "$(tw SwitchTo s 3)"
  pass_if_eventually "and the desktop is shown" 2 current_desktop
  pass_if "Do answers when it has happened" 'bs true "" 3' "$(tw Do as 2 switch 4) $(current_desktop)"
  pass_if "and why it did not" 'bs false "No Space is called nowhere"' "$(tw Do as 2 switch nowhere)"
  pass_if "Perform answers what could not be done" "Call failed: There is no Desktop 9" \
    "$(tw Perform s tallowin://remove-desktop/9)"
  tw SwitchTo s 3
  tw Rename ss 1 Mail
  tw SwitchTo s mai
  pass_if_eventually "the intent answers" 's "Mail"' tw CurrentSpaceIntent
  pass_if "a wrong argument is refused" \
    "Call failed: Invalid arguments 'i' to call com.quorvex.Tallowin.SwitchTo(), expecting 's'." \
    "$(tw SwitchTo i 1)"
  pass_if "an action steps" "()" "$(application ActivateAction next '[]' "{'desktop-startup-id': <'a'>}")"
  pass_if_eventually "which shows" 1 current_desktop
}

# Properties, and the changes that another program hears of.
property_cases() {
  local heard=$DESKTOP_DIRECTORY/heard group
  pass_if "the names can be read" 'as 4 "Mail" "Desktop 2" "Desktop 3" "Desktop 4"' "$(property Names)"
  pass_if_eventually "and the current Space" '(xs) 2 "Desktop 2"' property Current
  pass_if "and all of them" "1 Mail, 2 Desktop 2, 3 Desktop 3, 4 Desktop 4" \
    "$(busctl --user --json=short get-property $NAME $OBJECT $NAME Spaces |
      jq -r '[.data[] | "\(.number.data) \(.name.data)"] | join(", ")')"
  start_group bash -c "exec gdbus monitor --session -d $NAME >'$heard'"
  group=$STARTED_GROUP
  eventually grep -qs 'is owned by' "$heard"
  tw SwitchTo s 1
  pass_if_eventually "a switch is heard" "'Current': <(int64 1, 'Mail')>" heard_of Current "$heard"
  pass_if "but no name" "" "$(heard_of Names "$heard")"
  wmctrl -n 5
  pass_if_eventually "a desktop is heard" "'Names': <['Mail', 'Desktop 2', 'Desktop 3', 'Desktop 4', 'Desktop 5']>" \
    heard_of Names "$heard"
  wmctrl -n 4
  end_group "$group"
}

# The value of property $1 in the last signal that had it.
heard_of() {
  grep PropertiesChanged "$2" | grep -oE "'$1': <(\[[^]]*\]|\([^)]*\))>" | tail -n 1
}

# Another instance waits for the name, and has it when the first one has gone.
successor_case() {
  local other=("$PROGRAM" --home "$DESKTOP_DIRECTORY/other") group
  start_group "${other[@]}" --platform x11 --verbose
  group=$STARTED_GROUP
  pass_if_eventually "a second one waits for the name" 1 \
    grep -c 'another program has the D-Bus name' "$DESKTOP_DIRECTORY/log"
  "${other[@]}" edit 2 --name Successor
  ask quit >/dev/null
  pass_if_eventually "and has it after the first" Successor second_name
  "${other[@]}" quit
  eventually group_is_gone "$group"
  pass_if_eventually "nobody has it at the end" "" eval 'has_owner && echo owned'
}

second_name() {
  property Names | cut -d '"' -f 4
}

lost_bus_case() {
  start_instance --verbose
  eventually has_owner
  end_group "$BUS_GROUP"
  pass_if_eventually "a bus that goes is said" 1 grep -c 'the bus has gone' "$DESKTOP_DIRECTORY/log"
  pass_if "and the program goes on" "exit 0" "$(ask list | tail -n 1)"
  start_bus
  ask edit 2 --name Back >/dev/null
  pass_if_eventually "with the next change it is there again" Back second_name
}

if ! start_server || ! start_window_manager openbox; then
  pass_if "the desktop starts" yes no
fi
export DBUS_SESSION_BUS_ADDRESS=unix:path=$XDG_RUNTIME_DIR/bus
pass_if "the program itself does without libsystemd" "" "$(ldd "$PROGRAM-main" | grep systemd)"
no_bus_case
start_bus
start_instance --verbose
pass_if_eventually "the name is taken" yes eval 'has_owner && echo yes'
command_cases
property_cases
pass_if "the page has every method with its arguments" "$(introspected)" "$(documented)"
successor_case
lost_bus_case
echo "$PASSED passed, $FAILED failed"
[ $FAILED -eq 0 ]
