#!/bin/bash
# Ends that nobody expects: kill_storm.sh PROGRAM [KILLS]
#
# Kills the running instance, on a simulated desktop in real time, at moments around its saves. Every file must parse
# each time, and a name that was on the disk must never give way to an older one.
set -u
. "$(dirname "$0")/desktop.sh"
. "$(dirname "$0")/checks.sh"

LABEL="killed"
PROGRAM=$(realpath "$1")
KILLS=${2:-20}
RANDOM=1
DESKTOP_DIRECTORY=$(mktemp -d "${TMPDIR:-/tmp}/tallowin-kill.XXXXXX")
HOME_FOLDER=$DESKTOP_DIRECTORY/tallowin
SPACES=$HOME_FOLDER/.local/share/Tallowin/spaces.json
INSTANCE_GROUP=
trap 'kill -KILL "$INSTANCE_GROUP" 2>/dev/null; rm -rf "$DESKTOP_DIRECTORY"' EXIT
trap 'exit 130' INT TERM

# The number in the first Space's name as the file has it; 0 without a file.
number_on_disk() {
  [ -e "$SPACES" ] || { echo 0; return; }
  jq -r 'to_entries[0].value.name | ltrimstr("n")' "$SPACES" 2>/dev/null || echo broken
}

broken_files() {
  find "$HOME_FOLDER" -name '*.json' -print0 | xargs -0 -r -n 1 sh -c 'jq -e . "$0" >/dev/null 2>&1 || echo "$0"'
}

# One life of the program: edits, saves, and the end somewhere in the half second in which they reach the disk.
one_life() {
  setsid "$PROGRAM" --home "$HOME_FOLDER" --platform simulated >>"$DESKTOP_DIRECTORY/log" 2>&1 &
  INSTANCE_GROUP=$!
  eventually instance_runs || return 1
  ask edit 1 --name "n$1" --note "$(head -c $((RANDOM % 4000)) /dev/zero | tr '\0' x)" >/dev/null
  ask profile save "p$((RANDOM % 4))" >/dev/null
  ask --set hudDuration "1.$1" >/dev/null
  sleep "0.$((RANDOM % 5))$((RANDOM % 10))"
  BEFORE=$(number_on_disk)
  kill -KILL "$INSTANCE_GROUP"
  wait "$INSTANCE_GROUP" 2>/dev/null
  return 0
}

lost=0
broken=""
saved=0
for ((life = 1; life <= KILLS; ++life)); do
  one_life "$life" || { broken+="no answer in life $life "; break; }
  after=$(number_on_disk)
  [ "$BEFORE" != broken ] && [ "$after" != broken ] && [ "$after" -ge "$BEFORE" ] || lost=$((lost + 1))
  [ "$after" != "$life" ] || saved=$((saved + 1))
  broken+=$(broken_files)
done
pass_if "no file is broken" "" "$broken"
pass_if "no edit that was on the disk is lost" 0 "$lost"
pass_if "some edits were saved in time" yes "$([ $saved -gt 0 ] && echo yes)"
echo "$KILLS kills, $saved edits saved in time"
echo "$PASSED passed, $FAILED failed"
[ $FAILED -eq 0 ]
