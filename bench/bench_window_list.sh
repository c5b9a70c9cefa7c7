#!/bin/bash
# How long it takes to know about windows under openbox in a virtual server, beside wmctrl: bench_window_list.sh PROGRAM
# PROGRAM is built from bench_window_list.cpp.
set -u
if [ $# -lt 1 ]; then
  echo "usage: bench_window_list.sh PROGRAM" >&2
  exit 64
fi
PROGRAM=$(realpath "$1")
. "$(dirname "$0")/../tests/e2e/desktop.sh"
trap stop_desktop EXIT
trap 'exit 130' INT TERM

start_server && start_window_manager openbox || exit 1
"$PROGRAM" 10 100 200 1000
