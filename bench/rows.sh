# shellcheck shell=bash
# What the measuring scripts share: a virtual server, and table rows. To be sourced first, with their arguments, the
# first of which is the build directory; expects RUNS afterwards.
#
# A row: figure | ours, median and (5th-95th percentile) | peer | its | ours / its | how often ours was measured

if [ $# -lt 1 ]; then
  echo "usage: $(sed -n 's/^#   //p' "$0")" >&2
  exit 64
fi
BUILD=$(realpath "$1")
BENCH=$(dirname "${BASH_SOURCE[0]}")
. "$BENCH/../tests/e2e/desktop.sh"

# rows FIGURE PEER...: makes rows of the samples on standard input (rows.awk), which are of ours and of each peer.
rows() {
  local figure=$1
  shift
  sort -k 1,1n -k 2,2g | awk -v figure="$figure" -v peers="${*:+$(printf '%s\t' "$@")}" -f "$BENCH/rows.awk"
}

# The name of the program that a command starts.
program_of() {
  local word
  for word in $1; do
    case $word in
      env | *=*) ;;
      *) echo "$word" && return ;;
    esac
  done
}

# The command, or nothing when the program that it starts is not installed.
where_installed() {
  command -v "$(program_of "$1")" >/dev/null && echo "$1"
}

# beside MEASURE FIGURE OURS [PEER COMMAND]...: a row for each peer, measured with bench program MEASURE.
beside() {
  local measure=$1 figure=$2 commands=("$3") peers=()
  shift 3
  while [ $# -gt 1 ]; do
    peers+=("$1")
    commands+=("$(where_installed "$2")")
    shift 2
  done
  echo "  $figure" >&2
  "$BUILD/bench/$measure" "$RUNS" "${commands[@]}" | rows "$figure" "${peers[@]}" || exit 1
}

# Memory of process $1 in KiB, shared pages counted in proportion (PSS).
memory() { awk '/^Pss:/ { print $2 }' "/proc/$1/smaps_rollup"; }

# The same of the pages that it has written to and shares with nobody, which no other program makes smaller.
own_memory() { awk '/^Private_Dirty:/ { print $2 }' "/proc/$1/smaps_rollup"; }

# How often the threads of process $1 have been put on a processor since it was started.
wake_ups() { awk '/ctxt_switches/ { sum += $2 } END { print sum }' /proc/"$1"/task/*/status; }
