#!/bin/bash
# Knowing about windows, and putting them back, under openbox in a virtual server, beside wmctrl. Prints table rows
# (rows.sh).
#   bench_windows.sh BUILD-DIRECTORY [RUNS]
set -uo pipefail
. "$(dirname "$0")/rows.sh"
RUNS=${2:-20}
trap stop_desktop EXIT
trap 'exit 130' INT TERM

OURS="$BUILD/tallowin"

# Opens as many windows as are missing for there to be $1; they stay while the descriptor OPEN_WINDOWS is open.
open_windows() {
  exec {OPEN_WINDOWS}< <("$BUILD/bench/open_windows" "$1")
  read -r -u "$OPEN_WINDOWS" || exit 1
}

# list_windows COUNT: with so many open.
list_windows() {
  local subject
  open_windows "$1"
  beside command_latency "$1 windows by command line: \`windows --all\` (ms)" "$OURS windows --all" \
    "wmctrl -lpGx" "wmctrl -lpGx"
  for subject in list contents; do
    echo "  $subject of $1 windows" >&2
    "$BUILD/bench/bench_window_list" "$RUNS" "$subject" "wmctrl -lpGx" |
      rows "$1 windows in the instance: their $subject (ms)" "wmctrl -lpGx" || exit 1
  done
}

# restore FIGURE AWAY [COMMAND]...: the commands put one window back.
restore() {
  local figure=$1 away=$2
  shift 2
  echo "  $figure" >&2
  "$BUILD/bench/restore_latency" "$RUNS" "$away" "$OURS tallowin://restore-layout" "$@" |
    rows "$figure" "wmctrl for each window" || exit 1
}

only_one_window() {
  [ "$(xprop -root _NET_CLIENT_LIST | grep -o 0x | wc -l)" == 1 ]
}

start_server && start_window_manager openbox || exit 1
start_group "$OURS" --platform x11
eventually "$OURS" current >/dev/null 2>&1 || exit 1

open_windows 20
"$OURS" tallowin://save-layout || exit 1
restore "layout of 20 windows restored on their desktop, each (ms)" 0 "wmctrl -i -r %w -e 0,%x,%y,-1,-1"
restore "layout of 20 windows restored from another desktop, each (ms)" 1 \
  "wmctrl -i -r %w -t 0" "wmctrl -i -r %w -e 0,%x,%y,-1,-1"
exec {OPEN_WINDOWS}<&-
eventually only_one_window || exit 1
for count in 10 100 1000; do
  list_windows "$count"
done
"$OURS" quit
