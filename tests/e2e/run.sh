#!/bin/bash
# The program on real window managers: run.sh [--results FILE] PROGRAM WINDOW-MANAGER...
#
# Each case is one line, "ok" or "FAIL" with what was expected and what was seen. What the desktop really does is seen by
# wmctrl, xprop and xdotool only. With --results each result is written to a file too, for window_manager_page.sh.
set -u
. "$(dirname "$0")/desktop.sh"
. "$(dirname "$0")/checks.sh"
. "$(dirname "$0")/window_witnesses.sh"
. "$(dirname "$0")/window_cases.sh"
. "$(dirname "$0")/automation_cases.sh"
. "$(dirname "$0")/shortcut_cases.sh"
. "$(dirname "$0")/dialog_cases.sh"
. "$(dirname "$0")/layout_cases.sh"
. "$(dirname "$0")/http_cases.sh"
. "$(dirname "$0")/hud_cases.sh"
. "$(dirname "$0")/ui_cases.sh"
. "$(dirname "$0")/monitor_cases.sh"

tallowin() {
  ask --platform x11 "$@"
}

desktop_count() {
  wmctrl -d | wc -l
}

# "1 [2] 3 4", as an independent program sees the desktops.
witnessed_desktops() {
  wmctrl -d | awk '{ n = $1 + 1; printf "%s%s", (NR > 1 ? " " : ""), ($2 == "*" ? "[" n "]" : n) } END { print "" }'
}

# The same as the program's probe sees them.
probed_desktops() {
  tallowin --probe |
    sed -n 's/^  \([* ]\) \[[0-9]*\] desktop \([0-9]*\) .*/\1 \2/p' |
    awk '{ printf "%s%s", (NR > 1 ? " " : ""), ($1 == "*" ? "[" $2 "]" : $1) } END { print "" }'
}

# Puts desktop index $1 in front without the program.
put_in_front() {
  wmctrl -s "$1"
  eventually output_is "$1" current_desktop
}

# switch_case FROM TO [classic]: desktop numbers from 1.
switch_case() {
  local from=$1 to=$2
  put_in_front $((from - 1))
  local said
  said=$(tallowin --switch "$to" ${3:+"$3"})
  pass_if "--switch $to${3:+ $3} from $from shows it" $((to - 1)) "$(current_desktop)"
  pass_if "--switch $to${3:+ $3} from $from says so" "switch to desktop $to: posted
active desktop: $to
exit 0" "$(echo "$said" | grep '^switch to'; echo "$said" | tail -n 2 | sed 's/^  after [0-9.]*s //')"
  # The classic way is a setting that stays; back to the usual one.
  [ -z "${3:-}" ] || tallowin --set switchMode instant >/dev/null
}

probe_cases() {
  capability "See the desktops, and which one is shown"
  pass_if "--probe is healthy, may do everything, and shows one display" "bridge health: 0b1011111 healthy=true
display Main menuBar=true name=
accessibility=true screenRecording=true
exit 0" "$(tallowin --probe | grep -oE '^(bridge.*|accessibility.*|display.* name=|exit.*)')"
  pass_if "--probe agrees with wmctrl -d" "$(witnessed_desktops)" "$(probed_desktops)"
}

switch_cases() {
  capability "Switch to a desktop by its number"
  switch_case 1 4
  switch_case 4 2
  switch_case 2 1
  switch_case 1 3 classic
  switch_case 3 2 classic
  switch_case 3 3
  put_in_front 1
  pass_if "--switch says that there is no hot key" "hotkey 119: bound=false keyCode=0 mods=0x0 enabled=false
accessibility trusted: true" "$(tallowin --switch 2 | head -n 2)"
  pass_if "--switch 99 finds none, and leaves the desktop alone" "desktop 99 not found
exit 1
1" "$(tallowin --switch 99; current_desktop)"
}

count_cases() {
  capability "Follow desktops that others add and remove"
  local count
  for count in 6 2 4; do
    wmctrl -n "$count"
    pass_if_eventually "wmctrl -n $count is obeyed" "$count" desktop_count
    pass_if "--probe sees $count desktops" "$(witnessed_desktops)" "$(probed_desktops)"
  done
  wmctrl -n 6
  eventually output_is 6 desktop_count
  switch_case 1 6
  put_in_front 0
  wmctrl -n 4
  eventually output_is 4 desktop_count
}

# A switch while the title bar of TRIAL is held takes the window along, and it goes on following the pointer.
drag_case() {
  capability "Take a window that you are dragging along to another desktop"
  put_in_front 0
  local window x y before step
  window=$(window_called TRIAL)
  if [ "$(xprop -id "$window" -notype _NET_FRAME_EXTENTS | cut -d , -f 3)" == " 0" ]; then
    skip "On the machine of the test windows had no title bar"
    return
  fi
  read -r x y < <(xwininfo -id "$window" | awk '/Absolute upper-left X/ { x = $4 } /Absolute upper-left Y/ { y = $4 }
    END { print x + 60, y - 8 }')
  xdotool mousemove "$x" "$y" mousedown 1
  for step in 5 10 15 20 25 30; do # one alone does not begin a drag
    xdotool mousemove $((x + step)) $((y + step))
  done
  if ! eventually window_has_moved "$window" "$x" && is_optional "$LABEL"; then
    xdotool mouseup 1
    skip "On the machine of the test xdotool could not begin a drag"
    return
  fi
  pass_if "a title bar can be dragged" yes "$(window_has_moved "$window" "$x" && echo yes)"
  tallowin --switch 2 >/dev/null
  pass_if_eventually "the dragged window comes along" 1 desktop_of "$window"
  pass_if_eventually "its desktop is shown" 1 current_desktop
  before=$(window_left "$window")
  for step in 40 60 80; do
    xdotool mousemove $((x + step)) $((y + 30))
  done
  pass_if_eventually "the drag goes on" $((before + 50)) window_left "$window"
  xdotool mouseup 1
  wmctrl -i -r "$window" -t 0
  pass_if_eventually "it can be moved afterwards" 0 desktop_of "$window"
}

window_left() {
  xwininfo -id "$1" | sed -n 's/.*Absolute upper-left X: *//p'
}

# Whether the window is no longer where it was when the pointer was 60 pixels from its left edge.
window_has_moved() {
  [ "$(window_left "$1")" != $(($2 - 60)) ]
}

desktop_of() {
  xprop -id "$1" -notype _NET_WM_DESKTOP 2>/dev/null | sed 's/.*= //'
}

capture_case() {
  capability "Take pictures of desktops"
  put_in_front 0
  pass_if "--capture succeeds" "exit 0" "$(tallowin --capture | tail -n 1)"
  pass_if "it writes one JPEG file" " ff d8 ff" \
    "$(find "$DESKTOP_DIRECTORY/tallowin" -name '*.jp*g' -exec head -c 3 {} \; | od -An -tx1)"
}

# Workspaces of i3 come and go, and their indexes shift.
dynamic_cases() {
  capability "Follow desktops that others add and remove"
  i3-msg -q 'workspace "1"'
  i3-msg -q 'workspace "3: web"; exec xterm -T WEB'
  eventually window_is_listed WEB
  i3-msg -q 'workspace "mail"; exec xterm -T MAIL'
  eventually window_is_listed MAIL
  pass_if_eventually "i3 has three workspaces" 3 desktop_count
  local ids_before
  ids_before=$(probed_ids)
  pass_if "ids come from the names" "managed-1 managed-3" "$(echo "$ids_before" | cut -d ' ' -f 1-2)"
  probe_cases
  capability "Switch to a desktop by its number"
  switch_case 3 1
  switch_case 1 3
  switch_case 3 2 classic
  capability "Follow desktops that others add and remove"
  # Workspace 1 goes when its window has gone and another workspace is shown.
  wmctrl -F -c TRIAL
  pass_if_eventually "workspace 1 goes" 2 desktop_count
  pass_if "ids stay with the names when indexes shift" "${ids_before#* }" "$(probed_ids)"
  probe_cases
  capability "Switch to a desktop by its number"
  switch_case 1 2
  switch_case 2 1
}

probed_ids() {
  tallowin --probe | sed -n 's/.* id=\([^ ]*\).*/\1/p' | paste -sd ' '
}

# The running instance follows others, names, switches, goes back, and survives being killed.
instance_cases() {
  capability "Run all the time, one instance for all callers"
  pass_if "nobody answers before it runs" 'tallowin: not running; "tallowin" starts it
exit 69' "$(ask current)"
  put_in_front 0
  [ "$LABEL" != openbox ] || start_cases
  start_instance
  pass_if "a second start finds the first" "tallowin: already running
exit 0" "$(ask)"
  start_watching
  capability "Name desktops, so that pagers show it"
  pass_if "a name is taken" "exit 0" "$(ask "tallowin://rename/2?name=Mail%20%26%20more")"
  pass_if_eventually "pagers show the name" "Mail & more" named_by_pagers 2
  [ "$LABEL" != openbox ] || restart_case
  capability "Switch by name, and go back"
  pass_if "a URL switches" "exit 0" "$(ask tallowin://switch/mail)"
  pass_if_eventually "it is shown" 1 current_desktop
  pass_if_eventually "current names it" "Mail & more
exit 0" ask current
  xdotool set_desktop 0
  pass_if_eventually "watch follows xdotool" "active 1" last_watched
  pass_if "back goes back" "exit 0" "$(ask tallowin://back)"
  pass_if_eventually "to where it was" 1 current_desktop
  pass_if "a word ends when it has happened" "exit 0 0" "$(ask switch 1) $(current_desktop)"
  pass_if "or says why not" "tallowin: No Space is called nowhere
exit 1" "$(ask switch nowhere)"
  ask switch 2 >/dev/null
  capability "Run all the time, one instance for all callers"
  eventually grep -qs 'Mail & more' "$DESKTOP_DIRECTORY/tallowin/.local/share/Tallowin/spaces.json"
  kill -KILL -- "-$INSTANCE_GROUP"
  eventually group_is_gone "$INSTANCE_GROUP"
  wait "$WATCHER"
  pass_if "watch says that it has gone" "tallowin: the running tallowin has gone away" \
    "$(tail -n 1 "$DESKTOP_DIRECTORY/watched")"
  start_instance
  pass_if_eventually "nothing is lost" "Mail & more
exit 0" ask current
  quit_instance
}

# Calls that do something start the instance, one for all of them; others leave it at that.
start_cases() {
  local process
  pass_if "a command with --no-start starts nothing" 'tallowin: not running; "tallowin" starts it
exit 69' "$(ask --no-start tallowin://back)"
  pass_if "nor does one without a display" "tallowin: not running, and not started: cannot reach an X server: DISPLAY is not set
exit 69" "$(DISPLAY='' ask tallowin://back)"
  pass_if "doctor says that it is not running" "attention  Tallowin is not running.
exit 69" "$(ask doctor | sed -n '1p;$p')"
  seq 50 | xargs -P 50 -I_ "$PROGRAM" --home "$DESKTOP_DIRECTORY/tallowin" 'tallowin://rename/2?name=First'
  pass_if "fifty commands at once are performed" 0 $?
  process=$(pgrep -f -- "tallowin-main --home $DESKTOP_DIRECTORY/tallowin")
  pass_if "which has a session and a place of its own" "$process $HOME /dev/null" \
    "$(ps -o sess= -p "$process" | tr -d ' ') $(readlink "/proc/$process/cwd") $(readlink "/proc/$process/fd/0")"
  seq 500 | xargs -P 50 -I_ "$PROGRAM" --home "$DESKTOP_DIRECTORY/tallowin" current >"$DESKTOP_DIRECTORY/answers" 2>&1
  pass_if "fifty callers at a time are all answered" "500 Desktop 1" "$(sort "$DESKTOP_DIRECTORY/answers" | uniq -c | xargs)"
  pass_if "a caller from another display is told so" "tallowin: the running Tallowin works on display $DISPLAY, not on :99999
exit 0" "$(DISPLAY=:99999 ask list | tail -n 2)"
  ask 'tallowin://rename/2?name=' >/dev/null
  pass_if "it quits" "exit 0" "$(ask quit)"
  pass_if_eventually "and is gone" "" pgrep -f -- "--home $DESKTOP_DIRECTORY/tallowin"
}

# The name is there after openbox has started again, and the instance goes on.
restart_case() {
  restart_openbox
  pass_if_eventually "a name outlives a restart of the window manager" "Mail & more" named_by_pagers 2
}

restart_openbox() {
  local spy=$DESKTOP_DIRECTORY/restarts
  start_group bash -c "stdbuf -oL xprop -spy -root _NET_SUPPORTING_WM_CHECK >'$spy'"
  local spy_group=$STARTED_GROUP
  eventually grep -qs WM_CHECK "$spy"
  openbox --restart
  eventually output_is 2 grep -c WM_CHECK "$spy"
  end_group "$spy_group"
}

named_by_pagers() {
  xprop -root -notype -f _NET_DESKTOP_NAMES 8u _NET_DESKTOP_NAMES | sed 's/^[^=]*= //; s/^"//; s/"$//; s/", "/\n/g' |
    sed -n "${1}p"
}

# Sets WATCHER to a process that writes what it watches to a file.
start_watching() {
  timeout 600 "$PROGRAM" --home "$DESKTOP_DIRECTORY/tallowin" watch >"$DESKTOP_DIRECTORY/watched" 2>&1 &
  WATCHER=$!
  eventually grep -qs state "$DESKTOP_DIRECTORY/watched"
}

last_watched() {
  tail -n 1 "$DESKTOP_DIRECTORY/watched" | cut -f 2,3 | tr '\t' ' '
}

# Starts window manager $1 on a server of its own.
start_desktop() {
  if ! start_server || ! start_window_manager "$1"; then
    pass_if "starts and manages a window" yes "no; its log ends: $(tail -n 3 "$DESKTOP_DIRECTORY/log")"
    stop_desktop
    return 1
  fi
}

# The version in the name of Debian's package, where there is one.
version_of() {
  dpkg-query -W -f '${Version}\n' "$(dpkg-query -S "$(command -v "$1")" 2>/dev/null | cut -d : -f 1)" 2>/dev/null |
    sed 's/^[0-9]*://; s/[-+].*//'
}

window_manager_cases() {
  LABEL=$1
  capability "See the desktops, and which one is shown"
  record version "$(version_of "$1")"
  start_desktop "$1" || return
  if [ "$1" == i3 ]; then
    dynamic_cases
  else
    put_in_front 0
    probe_cases
    pass_if "--probe names desktops by position" "managed-1 managed-2 managed-3 managed-4" "$(probed_ids)"
    switch_cases
    count_cases
    drag_case
  fi
  capture_case
  instance_cases
  capability ""
  [ "$1" != openbox ] || http_cases
  stop_desktop
  local cases
  for cases in window_cases automation_cases shortcut_cases hud_cases dialog_cases; do
    start_desktop "$1" || return
    [ "$1" != i3 ] || hold_workspaces
    install_notes
    $cases
    stop_desktop
  done
  [[ $1 =~ ^(openbox|xfwm4)$ ]] || return
  start_desktop "$1" || return
  ui_cases
  stop_desktop
  [ "$1" == openbox ] || return
  start_desktop "$1" || return
  monitor_cases
  stop_desktop
}

known_desktops() {
  ask list | grep -c '  '
}

# On a simulated desktop, with every option that a start may have.
with_options() {
  echo '{"managedDisplaySpaces": [{"Display Identifier": "Main", "Spaces": [{"ManagedSpaceID": 1}, {"ManagedSpaceID": 2}]}]}' \
    >"$DESKTOP_DIRECTORY/scenario.json"
  ask --scenario "$DESKTOP_DIRECTORY/scenario.json" --port "$(unused_port)" --settings windows --demo "$@" >/dev/null
}

# A server without a window manager, then with one, then no server at all.
degraded_cases() {
  capability ""
  LABEL="no window manager"
  start_server || return
  pass_if "--platform auto --probe is degraded" 1 \
    "$(ask --platform auto --probe | grep -c '^bridge health: .*healthy=false$')"
  pass_if "--platform x11 --switch has no desktops" "no snapshot
exit 1" "$(tallowin --switch 2)"
  start_instance --platform auto
  start_window_manager openbox
  pass_if_eventually "a program that is there first sees its desktops" "$(wmctrl -d | wc -l)" known_desktops
  LABEL="lost server"
  end_group "$SERVER_GROUP"
  eventually group_is_gone "$INSTANCE_GROUP"
  pass_if "the program ends" gone "$(group_lives "$INSTANCE_GROUP" || echo gone)"
  pass_if "the program says why" 1 "$(grep -c '^tallowin: the X server has gone away$' "$DESKTOP_DIRECTORY/log")"
  end_group "$INSTANCE_GROUP"
  LABEL="no server"
  pass_if "--platform x11 says why in one line, and fails" \
    "tallowin: cannot reach the X server \"$DISPLAY\" that DISPLAY names
exit failed" "$(tallowin --probe | sed 's/^exit [1-9][0-9]*$/exit failed/')"
  pass_if "under Wayland alone nothing is started, for a command neither" "exit 69 exit 69" \
    "$(WAYLAND_DISPLAY=w ask | tail -n 1) $(WAYLAND_DISPLAY=w ask next | tail -n 1)"
  pass_if "--probe tells why" 1 "$(WAYLAND_DISPLAY=w ask --probe | grep -c '^tallowin: this Wayland desktop does not let')"
  pass_if "--platform none has no desktop" "exit 69" "$(ask --platform none doctor | tail -n 1)"
  pass_if "a command starts it as it is told: with the sample names of the demo" "Code
exit 0" "$(with_options 'tallowin://rename/2?name=Trial'; ask list --names | sed -n '2p;$p')"
  ask quit >/dev/null
  stop_desktop
}

if [ "${1:-}" == --results ] && [ $# -gt 2 ]; then
  RESULTS=$(realpath "$2")
  : >"$RESULTS"
  shift 2
fi
if [ $# -lt 2 ]; then
  echo "usage: run.sh [--results FILE] PROGRAM WINDOW-MANAGER..." >&2
  exit 64
fi
PROGRAM=$(realpath "$1")
PANEL=$(realpath "$(dirname "$0")/status_notifier_panel.py")
shift
trap stop_desktop EXIT
trap 'exit 130' INT TERM

for wm in "$@"; do
  LABEL=$wm
  if command -v "$wm" >/dev/null; then
    window_manager_cases "$wm"
  elif is_optional "$wm"; then
    skip "not installed"
  else
    pass_if "is installed" yes no
  fi
done
degraded_cases

[ $SKIPPED -eq 0 ] || echo "$SKIPPED skipped"
echo "$PASSED passed, $FAILED failed"
[ $FAILED -eq 0 ]
