#!/bin/bash
# Ends that nobody expects: kill_storm.sh PROGRAM [KILLS]
#
# Kills the running instance, on a simulated desktop in real time, at moments around its saves. Every file must parse
# each time, and every edit that was answered must be on the disk. Ends it by signals too, which leave it the time to
# write what nobody waits for.
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

# Starts the program and ends it with signal $1 after the rest has run.
life_until() {
  local signal=$1
  shift
  setsid "$PROGRAM" --home "$HOME_FOLDER" --platform simulated >>"$DESKTOP_DIRECTORY/log" 2>&1 &
  INSTANCE_GROUP=$!
  eventually instance_runs || return 1
  "$@" >/dev/null
  kill "-$signal" "$INSTANCE_GROUP"
  wait "$INSTANCE_GROUP" 2>/dev/null
  return 0
}

# Edits that are answered when they are saved, and others on their way to the disk.
edits() {
  ask edit 1 --name "n$1" --note "$(head -c $((RANDOM % 4000)) /dev/zero | tr '\0' x)"
  ask profile save "p$((RANDOM % 4))"
  ask --set hudDuration "1.$1"
  ask "tallowin://note/1?text=$1"
  sleep "0.$((RANDOM % 5))$((RANDOM % 10))"
}

lost=0
broken=""
for ((life = 1; life <= KILLS; ++life)); do
  life_until KILL edits "$life" || { broken+="no answer in life $life "; break; }
  [ "$(number_on_disk)" == "$life" ] || lost=$((lost + 1))
  broken+=$(broken_files)
done
pass_if "no file is broken" "" "$broken"
pass_if "no edit that was answered is lost" 0 "$lost"
for signal in TERM HUP INT; do
  life=$((life + 1))
  life_until "$signal" ask "tallowin://rename/1?name=n$life"
  pass_if "SIG$signal leaves time to save" "$life" "$(number_on_disk)"
done
echo "$PASSED passed, $FAILED failed"
[ $FAILED -eq 0 ]
