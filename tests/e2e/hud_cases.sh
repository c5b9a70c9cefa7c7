# shellcheck shell=bash
# The process that shows the windows, and the pop-up. To be sourced by run.sh. Begins with TRIAL, active, on the first
# desktop.

hud_cases() {
  capability "Show a pop-up on every switch"
  start_instance
  eventually ui_process >/dev/null
  ask "tallowin://rename/2?name=Mail%20%26%20more" >/dev/null
  local trial number
  trial=$(window_called TRIAL)
  put_in_front 0
  focus "$trial"
  ask switch 2 >/dev/null
  pass_if_eventually "it says where the user has got to" "Mail & more" shown_hud
  pass_if "in no list of windows, and so never in the way of keys" "" "$(wmctrl -lx | grep -i tallowin)"
  pass_if_eventually "it goes by itself" "" shown_hud
  for number in 1 2 3 1 2 3 1 2 3 1 2 3 1 2 3 1 2 3 1 2; do
    ask "tallowin://switch/$number" >/dev/null
  done
  pass_if_eventually "after twenty switches it says the last" "Mail & more" shown_hud
  click_through_case "$trial"
  ask switch 9 >/dev/null
  pass_if_eventually "messages stand in the same place" "There is no Desktop 9" shown_hud
  tallowin --set hudEnabled false >/dev/null
  eventually output_is "" shown_hud
  ask switch 2 >/dev/null
  ask switch nowhere >/dev/null
  pass_if_eventually "a setting turns it off, but no messages" "No Space is called nowhere" shown_hud
  tallowin --unset hudEnabled >/dev/null
  full_screen_case "$trial"
  dock_guard_case "$trial"
  capability ""
  ui_process_cases
  quit_instance
  pass_if_eventually "the process that shows the windows goes with it" "" ui_process
}

# The name of the pop-up while it is on the screen.
shown_hud() {
  local window
  window=$(xwininfo -root -tree | awk '/"tallowin-hud" "Tallowin"/ { print $1 }')
  [ -n "$window" ] || return 0
  xwininfo -id "$window" | grep -q 'Map State: IsViewable' || return 0
  xprop -id "$window" -notype -f _NET_WM_NAME 8u _NET_WM_NAME | sed 's/^[^"]*"//; s/"$//'
}

ui_process() {
  pgrep -f -- "tallowin-ui --home $DESKTOP_DIRECTORY/tallowin"
}

# A click where the pop-up is goes to the window below.
click_through_case() {
  tallowin --set hudPosition center >/dev/null
  tallowin --set hudDuration 20 >/dev/null
  start_group xterm -T BELOW -geometry 200x60+0+0
  eventually window_is_listed BELOW
  put_window "$(window_called BELOW)" 0
  put_in_front 1
  ask switch 1 >/dev/null
  eventually output_is "Desktop 1" shown_hud
  focus "$1"
  pass_if_eventually "a click on it goes to the window below" yes click_reaches "$(window_called BELOW)"
  close_window BELOW
  tallowin --unset hudPosition >/dev/null
  tallowin --unset hudDuration >/dev/null
}

click_reaches() {
  xdotool mousemove 640 400 click 1
  is_active "$1" && echo yes
}

full_screen_case() {
  put_in_front 0
  wmctrl -i -r "$1" -b add,fullscreen
  eventually is_full_screen "$1"
  put_in_front 1
  eventually output_is "" shown_hud
  tallowin --set hudDuration 20 >/dev/null
  ask switch 1 >/dev/null
  ask switch 9 >/dev/null # messages are shown after what came before
  pass_if_eventually "over a full-screen window there are messages only" "There is no Desktop 9" shown_hud
  wmctrl -i -r "$1" -b remove,fullscreen
  tallowin --unset hudDuration >/dev/null
  eventually output_is "" shown_hud
}

is_full_screen() {
  xprop -id "$1" -notype _NET_WM_STATE | grep -q FULLSCREEN
}

# wmctrl asks as a panel does.
dock_guard_case() {
  capability "Stay where you are when a panel activates a window elsewhere"
  ask switch 1 >/dev/null
  put_window "$1" 0
  put_in_front 1
  tallowin --set dockClickProtection true >/dev/null
  local spy=$DESKTOP_DIRECTORY/desktops
  start_group bash -c "stdbuf -oL xprop -spy -root -notype _NET_CURRENT_DESKTOP >'$spy'"
  eventually grep -qs '= 1' "$spy"
  wmctrl -i -a "$1"
  pass_if_eventually "the user is taken back" "1 0 1" eval 'sed "s/.*= //" "$spy" | xargs'
  end_group "$STARTED_GROUP"
  tallowin --unset dockClickProtection >/dev/null
}

# It dies, and it hangs: another one is there soon, and nothing else suffers.
ui_process_cases() {
  local before
  before=$(ui_process)
  pass_if "there is one at a time" "tallowin-ui: another process shows the windows" \
    "$("$(dirname "$PROGRAM")/tallowin-ui" --home "$DESKTOP_DIRECTORY/tallowin" 2>&1 | head -n 1)" # libdbus leaks
  kill -KILL "$before"
  pass_if_eventually "one that dies is started again" yes another_ui_than "$before"
  before=$(ui_process)
  eventually shows_again
  pass_if "and shows what there is to show" "No Space is called nowhere" "$(shown_hud)"
  kill -STOP "$before"
  ask switch nowhere >/dev/null
  pass_if_eventually "one that hangs is ended, and started again" yes another_ui_than "$before"
}

another_ui_than() {
  local now
  now=$(ui_process)
  [ -n "$now" ] && [ "$now" != "$1" ] && echo yes
}

shows_again() {
  ask switch nowhere >/dev/null
  [ "$(shown_hud)" == "No Space is called nowhere" ]
}
