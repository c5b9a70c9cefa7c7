#!/bin/bash
# How long a switch takes, from the start of the program to the change of the desktop, under openbox in a virtual server:
#   bench_switch.sh PROGRAM SWITCH_LATENCY [RUNS]
# SWITCH_LATENCY is the program built from switch_latency.cpp. The others are measured in the same run, taking turns.
set -u
if [ $# -lt 2 ]; then
  echo "usage: bench_switch.sh PROGRAM SWITCH_LATENCY [RUNS]" >&2
  exit 64
fi
PROGRAM=$(realpath "$1")
LATENCY=$(realpath "$2")
RUNS=${3:-50}
. "$(dirname "$0")/../tests/e2e/desktop.sh"
trap stop_desktop EXIT
trap 'exit 130' INT TERM

start_server && start_window_manager openbox || exit 1
"$LATENCY" "$RUNS" "$PROGRAM --home $DESKTOP_DIRECTORY/tallowin --platform x11 --switch %n" "wmctrl -s %i" \
  "xdotool set_desktop %i"
