#!/bin/bash
# Switching desktops and hearing of it, under openbox and i3 in virtual servers, beside other programs. Prints table
# rows (rows.sh).
#   bench_switch.sh BUILD-DIRECTORY [RUNS]
set -uo pipefail
. "$(dirname "$0")/rows.sh"
RUNS=${2:-50}
trap stop_desktop EXIT
trap 'exit 130' INT TERM

OURS="$BUILD/tallowin"

start_instance() {
  start_group "$OURS" --platform x11
  eventually "$OURS" current >/dev/null 2>&1
}

# Scripts on entering the first two desktops write a line to a pipe, which cat prints. They run in a login shell of the
# user's, which reads the system's profile first; so does the peer's.
until_scripts_begin() {
  local pipe=$DESKTOP_DIRECTORY/entered number user_shell
  user_shell=$(getent passwd "$(id -un)" | cut -d : -f 7)
  mkfifo "$pipe"
  echo "exec cat <>$pipe" >"$pipe.sh"
  echo "xprop -spy -root _NET_CURRENT_DESKTOP | while read -r _; do $user_shell -lc 'echo entered'; done" >"$pipe.peer"
  echo "{\"scriptOnEnter\": \"echo entered >$pipe\"}" >"$pipe.json"
  for number in 1 2; do
    "$OURS" automation "$number" set "$pipe.json" || exit 1
  done
  beside watch_latency "another program's switch until a script on entering writes (ms)" "sh $pipe.sh" \
    "xprop -spy and a login shell" "sh $pipe.peer"
}

under_openbox() {
  beside switch_latency "switch by command line, start to change (ms), without an instance" \
    "$OURS --home $DESKTOP_DIRECTORY/alone --platform x11 --switch %n" "wmctrl -s" "wmctrl -s %i"
  start_instance || exit 1
  beside switch_latency "switch by command line, start to change (ms)" "$OURS tallowin://switch/%n" \
    "wmctrl -s" "wmctrl -s %i" "xdotool set_desktop" "xdotool set_desktop %i"
  beside command_latency "switch by command line, start to end (ms)" "$OURS tallowin://switch/%n" \
    "wmctrl -s" "wmctrl -s %i" "xdotool set_desktop" "xdotool set_desktop %i"
  "$BUILD/bench/request_latency" "$RUNS" "$XDG_RUNTIME_DIR/tallowin" |
    rows "request to the instance until the change (ms)" "bare xcb program" || exit 1
  wmctrl -a TRIAL # with its desktop, the first
  "$BUILD/bench/request_latency" "$RUNS" "$XDG_RUNTIME_DIR/tallowin" "$(xdotool search --name '^TRIAL$')" |
    rows "front window moved, request to the instance until the change (ms)" "bare xcb program" || exit 1
  beside add_latency "desktop added by command line, start to change (ms)" "$OURS tallowin://add-desktop" \
    "wmctrl -n" "wmctrl -n 5"
  beside watch_latency "another program's switch until the line of \`watch\` (ms)" "$OURS watch" \
    "xprop -spy" "xprop -spy -root _NET_CURRENT_DESKTOP"
  until_scripts_begin
  "$OURS" quit
}

# Under i3 a desktop stays only while it has a window.
second_desktop_stays() {
  wmctrl -l | grep -q '^0x[0-9a-f]*  *1 .* SECOND$'
}

under_i3() {
  i3-msg -q workspace number 2
  start_group xterm -T SECOND
  eventually second_desktop_stays && start_instance || exit 1
  beside switch_latency "switch under i3, start to change (ms)" "$OURS tallowin://switch/%n" \
    "i3-msg workspace" "i3-msg -q workspace number %n" "wmctrl -s" "wmctrl -s %i"
  beside watch_latency "another program's switch until the line of \`watch\` under i3 (ms)" "$OURS watch" \
    "i3-msg -t subscribe" 'i3-msg -t subscribe -m ["workspace"]' "xprop -spy" "xprop -spy -root _NET_CURRENT_DESKTOP"
  "$OURS" quit
}

for window_manager in openbox i3; do
  start_server && start_window_manager "$window_manager" || exit 1
  "under_$window_manager"
  stop_desktop
done
