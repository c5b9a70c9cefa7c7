#!/usr/bin/env bash
# run.sh [--accept] PROGRAM STORY...: runs the program on simulated desktops and compares what it prints, its exit
# status and its journal with what the story's folder says. Each line of a story's "commands" is one run: a scenario
# file, seen from the folder, and the arguments. What comes with every start and every switch is left out of the
# journal, unless a line "about OPERATION..." before the runs names it, by its operation or by the name of the file that
# is written; "about everything" leaves nothing out. With --accept what is seen becomes what is expected, to be read
# before it is committed.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
accept=
[ "${1:-}" != --accept ] || { accept=1; shift; }
program=$(realpath "$1")
shift
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failed=0

# What comes with every start and every switch.
usual='SLSRegisterConnectionNotifyProc AXIsProcessTrustedWithOptions registerHotKey unregisterHotKey welcome hud statusItem feedback
  desktopLabel spaceDock captureDisplay createDirectory state.json preferences.json jpg log'

# told ABOUT...: the lines of a journal that belong to a story about this. Errors always do.
told() {
  awk -v usual="$usual" -v about="$*" '
    BEGIN {
      split(usual, words); for (i in words) hidden[words[i]]
      split(about, words); for (i in words) named[words[i]]
      for (word in named) delete hidden[word]
    }
    "everything" in named || /"error":"|"level":"error"/ { print; next }
    {
      op = $0; sub(/.*"op":"/, "", op); sub(/".*/, "", op)
      file = ""
      if (!(op in named) && op == "writeAtomically") {
        file = $0; sub(/","size".*/, "", file); sub(/.*\//, "", file); sub(/.*\.jpg/, "jpg", file)
      }
      if (!(op in hidden || file in hidden)) print
    }'
}

# Prints what every run of a story printed, its status and its journal.
run_story() {
  local scenario arguments about=
  cd "$here/$1" || exit 1
  while read -r scenario arguments; do
    if [ "$scenario" = about ]; then about=$arguments; continue; fi
    rm -f "$scratch/journal"
    echo "\$ tallowin --simulate $(basename "$scenario")${arguments:+ $arguments}"
    # shellcheck disable=SC2086 # the arguments are words
    "$program" --simulate "$scenario" --journal "$scratch/journal" $arguments 2>&1
    echo "status $?"
    # Pictures differ from one machine to the next by their fonts.
    if [ -e "$scratch/journal" ]; then
      # shellcheck disable=SC2086 # so are these
      told $about <"$scratch/journal" |
        sed -E 's/^/  /; s/(\.(jpg|png)","size":)[0-9]+/\1 some/; s/("base64":)"[^"]+"/\1 some/'
    else
      echo "  no journal"
    fi
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
