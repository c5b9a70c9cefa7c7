#!/bin/bash
# What windows take: the pop-up, hot keys, and what switching takes with them and without, under openbox in two virtual
# servers. Prints table rows (rows.sh).
#   bench_ui.sh BUILD-DIRECTORY [RUNS [SWITCHES]]
# Memory is looked at before and after so many SWITCHES.
set -uo pipefail
. "$(dirname "$0")/rows.sh"
RUNS=${2:-50}
SWITCHES=${3:-10000}
WITHOUT_SERVER=
WITHOUT_DIRECTORY=
clean_up() {
  end_group "$WITHOUT_SERVER"
  [ -z "$WITHOUT_DIRECTORY" ] || rm -rf "$WITHOUT_DIRECTORY"
  stop_desktop
}
trap clean_up EXIT
trap 'exit 130' INT TERM

OURS="$BUILD/tallowin"

# A server of its own, with an instance that shows no windows. Sets WITHOUT, the words that begin a command there.
prepare_without() {
  start_server && start_window_manager openbox || exit 1
  start_group "$OURS" --platform x11 --no-ui
  eventually "$OURS" current >/dev/null 2>&1 || exit 1
  WITHOUT=(env "DISPLAY=$DISPLAY" "HOME=$HOME" "XDG_RUNTIME_DIR=$XDG_RUNTIME_DIR")
  WITHOUT_FOLDER=$XDG_RUNTIME_DIR/tallowin
  WITHOUT_SERVER=$SERVER_GROUP
  WITHOUT_DIRECTORY=$DESKTOP_DIRECTORY
}

ui_process() {
  pgrep -f "^$BUILD/tallowin-ui" | while read -r process; do
    tr '\0' '\n' <"/proc/$process/environ" | grep -qx "DISPLAY=$DISPLAY" && echo "$process"
  done
}

has_windows() {
  xwininfo -root -tree 2>/dev/null | grep -q '"tallowin-hud"'
}

# Both take turns, a tenth of the runs at a time.
switching_beside() {
  local turn
  for turn in 1 2 3 4 5 6 7 8 9 10; do
    "$BUILD/bench/request_latency" $((RUNS / 10 + 1)) "$XDG_RUNTIME_DIR/tallowin" | sed -n 's/^1 /1 /p'
    "${WITHOUT[@]}" "$BUILD/bench/request_latency" $((RUNS / 10 + 1)) "$WITHOUT_FOLDER" | sed -n 's/^1 /2 /p'
  done
}

# Those of the two processes: subjects 1 and 2.
both() {
  echo "1 $("$1" "$UI")"
  echo "2 $("$1" "$RESIDENT")"
}

idle() {
  local before
  sleep 5
  before=$(both wake_ups)
  sleep 20
  join <(echo "$before") <(both wake_ups) | awk '{ print $1, ($3 - $2) / 20 }'
}

growth() {
  local before number
  before=$(both own_memory)
  for number in $(seq $((SWITCHES / 2))); do
    "$OURS" tallowin://switch/2
    "$OURS" tallowin://switch/1
  done
  printf '%s\n' "1 $(own_memory "$UI")" "2 $(echo "$before" | sed -n 's/^1 //p')" |
    rows "own memory of tallowin-ui after $SWITCHES switches (KiB)" "before them"
  printf '%s\n' "1 $(own_memory "$RESIDENT")" "2 $(echo "$before" | sed -n 's/^2 //p')" |
    rows "own memory of the resident program after $SWITCHES switches (KiB)" "before them"
}

prepare_without
start_server && start_window_manager openbox || exit 1
"$OURS" --set hudDuration 0.1
"$OURS" --set shortcuts '{"super+1": "switch 1", "super+2": "switch 2"}' # as many keys as the window manager's own
start_group "$OURS" --platform x11
RESIDENT=$STARTED_GROUP
eventually has_windows || exit 1
UI=$(ui_process)
sleep 1
both memory | rows "memory of tallowin-ui (PSS, KiB)" "the resident program" || exit 1
idle | rows "wake-ups per second of tallowin-ui, idle" "the resident program" || exit 1
# The upper edge of the pop-up, which is an eighth from the top.
"$BUILD/bench/hud_latency" "$RUNS" 640 104 |
  rows "another program's switch until the pop-up's first pixel (ms)" || exit 1
switching_beside | rows "request to the instance until the change, with windows (ms)" "without windows" || exit 1
beside switch_latency "hot key until the change (ms)" "xdotool key super+%n" "the window manager's own" \
  "xdotool key super+F%n"
growth
"$OURS" quit
"${WITHOUT[@]}" "$OURS" quit
