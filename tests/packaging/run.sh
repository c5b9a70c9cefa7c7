#!/bin/bash
# What is installed, as a Linux desktop sees it: run.sh BUILD-FOLDER
#
# Each case is one line, "ok" or "FAIL" with what was expected and what was seen.
set -u
. "$(dirname "$0")/../e2e/desktop.sh"
. "$(dirname "$0")/../e2e/checks.sh"
. "$(dirname "$0")/file_cases.sh"
. "$(dirname "$0")/completion_cases.sh"
. "$(dirname "$0")/desktop_cases.sh"

ID=com.quorvex.Tallowin

if [ $# -ne 1 ]; then
  echo "usage: run.sh BUILD-FOLDER" >&2
  exit 64
fi
BUILD=$(realpath "$1")
INSTALLED=$(mktemp -d "${TMPDIR:-/tmp}/tallowin-installed.XXXXXX")
trap 'stop_desktop; rm -rf "$INSTALLED"' EXIT
trap 'exit 130' INT TERM

# A whole system's tree, and a prefix of its own.
STAGE=$INSTALLED/stage
PREFIX=$INSTALLED/prefix
DESTDIR=$STAGE cmake --install "$BUILD" --prefix /usr >"$INSTALLED/log" || cat "$INSTALLED/log"
cmake --install "$BUILD" --prefix "$PREFIX" >"$INSTALLED/log" || cat "$INSTALLED/log"

file_cases
desktop_cases

echo "$PASSED passed, $FAILED failed"
[ $FAILED -eq 0 ]
