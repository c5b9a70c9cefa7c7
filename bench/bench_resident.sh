#!/bin/bash
# The resident program under openbox in a virtual server, beside its peers: the time a command takes, the time until
# another program's switch is seen, and its memory.
#   bench_resident.sh BUILD-DIRECTORY [RUNS]
set -u
if [ $# -lt 1 ]; then
  echo "usage: bench_resident.sh BUILD-DIRECTORY [RUNS]" >&2
  exit 64
fi
BUILD=$(realpath "$1")
RUNS=${2:-100}
. "$(dirname "$0")/../tests/e2e/desktop.sh"
trap stop_desktop EXIT
trap 'exit 130' INT TERM

# Memory of process $1 in KiB, shared pages counted in proportion.
memory() { awk '/^Pss:/ { print $2 }' "/proc/$1/smaps_rollup"; }

start_server && start_window_manager openbox || exit 1
start_group "$BUILD/tallowin" --platform x11
resident=$STARTED_GROUP
eventually "$BUILD/tallowin" list >/dev/null

echo "A command, from start to end:"
"$BUILD/bench/command_latency" "$RUNS" "wmctrl -s %i" "$BUILD/tallowin tallowin://switch/%n" "xdotool set_desktop %i" \
  "$BUILD/tallowin current" || exit 1
echo "A switch, from the command's start to the change:"
"$BUILD/bench/switch_latency" "$RUNS" "wmctrl -s %i" "$BUILD/tallowin tallowin://switch/%n" "xdotool set_desktop %i" ||
  exit 1
echo "Another program's switch, from the change to the line:"
"$BUILD/bench/watch_latency" "$((RUNS / 2))" "xprop -spy -root _NET_CURRENT_DESKTOP" "$BUILD/tallowin watch" || exit 1

before=$(memory "$resident")
for i in $(seq 5000); do
  "$BUILD/tallowin" tallowin://switch/2
  "$BUILD/tallowin" tallowin://switch/1
done
echo "Memory (proportional set): $before KiB, after 10,000 commands to switch $(memory "$resident") KiB"
before=$(awk '/ctxt/ { sum += $2 } END { print sum }' /proc/"$resident"/task/*/status)
sleep 20
echo "Idle: $(($(awk '/ctxt/ { sum += $2 } END { print sum }' /proc/"$resident"/task/*/status) - before)) wake-ups in 20 s"
"$BUILD/tallowin" quit
