#!/bin/bash
# Windows that come and go at any moment: window_stress.sh PROGRAM [SECONDS [WINDOW-MANAGER]]
#
# While one process opens, moves, minimises and kills windows in an order that is the same each time, the running
# instance lists, saves, restores, minimises and moves them. It must answer each time and be as well as ever at the end;
# with sanitizers in the program, what they find ends it.
set -u
. "$(dirname "$0")/desktop.sh"
. "$(dirname "$0")/checks.sh"

MOST_WINDOWS=24

# Opens a window of a small client, its process id in CLIENTS.
open_client() {
  xev -name "S$RANDOM" -geometry "$((100 + RANDOM % 400))x$((100 + RANDOM % 300))+$((RANDOM % 800))+$((RANDOM % 500))" \
    -event mouse >/dev/null 2>&1 &
  CLIENTS+=($!)
}

# Kills one client without warning.
kill_client() {
  local victim=$((RANDOM % ${#CLIENTS[@]}))
  kill -KILL "${CLIENTS[victim]}"
  wait "${CLIENTS[victim]}"
  CLIENTS=("${CLIENTS[@]:0:victim}" "${CLIENTS[@]:victim+1}")
}

# Has the window manager do something to a window that may go meanwhile.
touch_client() {
  local window
  window=$(xdotool search --pid "${CLIENTS[RANDOM % ${#CLIENTS[@]}]}" | tail -n 1)
  [ -n "$window" ] || return
  case $((RANDOM % 4)) in
    0) xdotool set_desktop_for_window "$window" $((RANDOM % 4)) ;;
    1) xdotool windowminimize "$window" ;;
    2) xdotool windowmove "$window" $((RANDOM % 800)) $((RANDOM % 500)) ;;
    3) xdotool windowkill "$window" ;;
  esac
}

# Never ends.
storm() {
  RANDOM=1
  CLIENTS=()
  while true; do
    case $((${#CLIENTS[@]} < 4 ? 0 : ${#CLIENTS[@]} >= MOST_WINDOWS ? 2 : RANDOM % 5)) in
      0 | 1) open_client ;;
      2) kill_client ;;
      *) touch_client ;;
    esac
  done 2>/dev/null
}

# Asks for one thing after the other until the time is up. The first unexpected answer ends it.
ask_for_everything() {
  local end=$((SECONDS + $1)) request said
  local requests=('windows --all --json' tallowin://save-layout 'windows --all' tallowin://restore-layout 'mark s'
    tallowin://move-window/next 'windows --json' tallowin://minimize-all tallowin://restore-layout 'jump s'
    tallowin://undo-minimize tallowin://next)
  while [ $SECONDS -lt "$end" ]; do
    for request in "${requests[@]}"; do
      # shellcheck disable=SC2086 # a request is words
      said=$(ask $request)
      if ! is_expected "$said"; then
        echo "$request: $said"
        return
      fi
      ANSWERS=$((ANSWERS + 1))
    done
  done
}

# What was done, or one sentence that says why not: the windows may be on other desktops just then, or gone.
is_expected() {
  [[ $1 == *"exit 0" || $1 =~ ^"tallowin: "[^$'\n']+$'\n'"exit 1"$ ]]
}

count_listed() {
  ask windows --all --json | sed '$d' | jq length
}

stress() {
  local storm_group
  start_instance
  export -f storm open_client kill_client touch_client
  start_group env MOST_WINDOWS=$MOST_WINDOWS bash -c storm
  storm_group=$STARTED_GROUP
  ask_for_everything "$1" >"$DESKTOP_DIRECTORY/unexpected"
  pass_if "every request is answered" "" "$(cat "$DESKTOP_DIRECTORY/unexpected")"
  end_group "$storm_group"
  pass_if_eventually "only what was there before is left" 1 count_listed
  pass_if "it ends when it is told" "exit 0" "$(ask quit)"
  wait "$INSTANCE_GROUP"
  pass_if "it ends well" 0 $?
  pass_if "no sanitizer has found anything" "" \
    "$(grep -E 'ERROR: |runtime error: |SUMMARY: ' "$DESKTOP_DIRECTORY/log")"
  [ $FAILED -eq 0 ] || tail -n 60 "$DESKTOP_DIRECTORY/log"
}

if [ $# -lt 1 ]; then
  echo "usage: window_stress.sh PROGRAM [SECONDS [WINDOW-MANAGER]]" >&2
  exit 64
fi
PROGRAM=$(realpath "$1")
LABEL=${3:-openbox}
ANSWERS=0
trap stop_desktop EXIT
trap 'exit 130' INT TERM
start_server && start_window_manager "$LABEL" || exit 1
stress "${2:-12}"
echo "$ANSWERS requests; $PASSED passed, $FAILED failed"
[ $FAILED -eq 0 ]
