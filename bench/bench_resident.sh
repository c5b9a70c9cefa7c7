#!/bin/bash
# The resident program in a virtual server, beside i3 in another and two bars: the time until it is ready, its memory
# and how often it wakes up when nothing happens. Prints table rows (rows.sh).
#   bench_resident.sh BUILD-DIRECTORY [RUNS [SECONDS]]
# Starts each RUNS times, and watches all of them idle for SECONDS, five times.
set -uo pipefail
. "$(dirname "$0")/rows.sh"
RUNS=${2:-20}
SPAN=${3:-20}
OTHER_SERVER=
OTHER_DIRECTORY=
PIDS=()
clean_up() {
  local group
  for group in "${PIDS[@]}"; do
    end_group "$group"
  done
  end_group "$OTHER_SERVER"
  [ -z "$OTHER_DIRECTORY" ] || rm -rf "$OTHER_DIRECTORY"
  stop_desktop
}
trap clean_up EXIT
trap 'exit 130' INT TERM

OURS="$BUILD/tallowin"
PEERS=(i3 polybar tint2)

# A server of its own for i3. Sets I3, what starts it there, and I3_ANSWERS, what succeeds when it is ready.
prepare_i3() {
  start_server || exit 1
  configure_window_manager i3
  I3="env DISPLAY=$DISPLAY ${WM_COMMAND[*]}"
  I3_ANSWERS="env DISPLAY=$DISPLAY i3-msg -t get_version"
  OTHER_SERVER=$SERVER_GROUP
  OTHER_DIRECTORY=$DESKTOP_DIRECTORY
}

# A bar that shows the desktops, and nothing else.
prepare_bars() {
  cat >"$HOME/polybar.ini" <<'CONFIGURATION'
[bar/desktops]
modules-left = desktops
[module/desktops]
type = internal/xworkspaces
CONFIGURATION
  cat >"$HOME/tint2rc" <<'CONFIGURATION'
panel_items = T
panel_size = 100% 24
taskbar_mode = multi_desktop
CONFIGURATION
  POLYBAR="polybar -q -c $HOME/polybar.ini desktops"
  TINT2="tint2 -c $HOME/tint2rc"
}

time_until_ready() {
  beside ready_latency "start until it answers \`current\` (ms)" "$OURS --platform x11 ? $OURS current" \
    "i3, until i3-msg is answered" "$I3 ? $I3_ANSWERS" \
    "polybar, until its bar is shown" "$POLYBAR ? xdotool search --onlyvisible --class ^polybar$" \
    "tint2, until its bar is shown" "$TINT2 ? xdotool search --onlyvisible --class ^tint2$"
}

# Starts ours and its peers and sets PIDS, with nothing for a peer that is not installed. False when one does not stay.
start_all() {
  local command group
  for command in "$OURS --platform x11" "$I3" "$POLYBAR" "$TINT2"; do
    STARTED_GROUP=
    # shellcheck disable=SC2086 # words of a command
    [ -z "$(where_installed "$command")" ] || start_group $command
    PIDS+=("$STARTED_GROUP")
  done
  eventually "$OURS" current >/dev/null 2>&1 || return 1
  sleep 2 # what they still do after their start is not idling
  for group in "${PIDS[@]}"; do
    [ -z "$group" ] || kill -0 "$group" || return 1
  done
}

# print_samples FUNCTION: what it says of each process, as samples.
print_samples() {
  local subject
  for subject in "${!PIDS[@]}"; do
    [ -z "${PIDS[subject]}" ] || echo "$((subject + 1)) $("$1" "${PIDS[subject]}")"
  done
}

# Prints how often each woke up per second, as samples, time and again.
idle() {
  local before
  for _ in 1 2 3 4 5; do
    before=$(print_samples wake_ups)
    sleep "$SPAN"
    join <(echo "$before") <(print_samples wake_ups) | awk -v span="$SPAN" '{ print $1, ($3 - $2) / span }'
  done
}

# Memory before and after so many switches.
growth_by_commands() {
  local before
  before=$(own_memory "${PIDS[0]}")
  for _ in $(seq "$1"); do
    "$OURS" tallowin://switch/2
    "$OURS" tallowin://switch/1
  done
  printf '%s\n' "1 $(own_memory "${PIDS[0]}")" "2 $before" |
    rows "own memory after $(($1 * 2)) switches (KiB)" "before them"
}

prepare_i3
start_server && start_window_manager openbox || exit 1
prepare_bars
time_until_ready
start_all || exit 1
echo "  idle, 5 times $SPAN seconds" >&2
idle | rows "wake-ups per second, idle" "${PEERS[@]}" || exit 1
print_samples memory | rows "memory (PSS, KiB)" "${PEERS[@]}" || exit 1
growth_by_commands $((RUNS * 250)) || exit 1
"$OURS" quit
