#!/usr/bin/env bash
# run.sh [--accept] PROGRAM STORY...: runs the program on simulated desktops and compares what it prints, its exit
# status and its journal with what the story's folder says. Each line of a story's "commands" is one run: a scenario
# file, seen from the folder, and the arguments. With --accept what is seen becomes what is expected, to be read before
# it is committed.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
accept=
[ "${1:-}" != --accept ] || { accept=1; shift; }
program=$(realpath "$1")
shift
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failed=0

# Prints what every run of a story printed, its status and its journal.
run_story() {
  local scenario arguments
  cd "$here/$1" || exit 1
  while read -r scenario arguments; do
    rm -f "$scratch/journal"
    echo "\$ tallowin --simulate $(basename "$scenario")${arguments:+ $arguments}"
    # shellcheck disable=SC2086 # the arguments are words
    "$program" --simulate "$scenario" --journal "$scratch/journal" $arguments 2>&1
    echo "status $?"
    # Pictures differ from one machine to the next by their fonts.
    sed -E 's/^/  /; s/(\.jpg","size":)[0-9]+/\1 some/; s/("base64":)"[^"]+"/\1 some/' "$scratch/journal" 2>/dev/null || echo "  no journal"
  done <commands
}

for story in "$@"; do
  (run_story "$story") >"$scratch/seen"
  if [ -n "$accept" ]; then
    cp "$scratch/seen" "$here/$story/expected"
  elif ! diff -u "$here/$story/expected" "$scratch/seen"; then
    echo "FAIL $story"
    failed=1
  fi
done
exit "$failed"
