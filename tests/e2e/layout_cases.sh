# shellcheck shell=bash
# A layout of many windows, shuffled by others and restored. To be sourced by run.sh after window_cases.sh.

# "title desktop left top width height" of each window of the layout.
placements() {
  wmctrl -lG | awk '$NF ~ /^W[0-9]+$/ { print $NF, $2, $3, $4, $5, $6 }' | sort
}

# The same, without frames.
desktops_of_layout() {
  placements | cut -d ' ' -f 1-2
}

layout_window_count() {
  placements | wc -l
}

# Puts window $1 somewhere and on one of $2 desktops, in a size of its own. i3 moves windows on the desktop in front only.
scatter_window() {
  wmctrl -i -r "$1" -t 0
  wmctrl -i -r "$1" -e "0,$((RANDOM % 700)),$((RANDOM % 400)),$((200 + RANDOM % 300)),$((150 + RANDOM % 200))"
  wmctrl -i -r "$1" -t $((RANDOM % $2))
}

# scatter DESKTOPS SEED: all windows of the layout, the same way for the same seed. The window manager has taken it all
# when the last window has gone to the last desktop.
scatter() {
  local window
  RANDOM=$2
  for window in $(wmctrl -l | awk '$NF ~ /^W[0-9]+$/ { print $1 }'); do
    scatter_window "$window" "$1"
  done
  put_window "$window" 0
  put_window "$window" $(($1 - 1))
}

# i3 gives a window its place when its desktop is shown.
show_every_desktop() {
  local desktop
  for desktop in $(wmctrl -d | awk '{ print $1 }'); do
    put_in_front "$desktop"
  done
  put_in_front 0
}

open_layout_windows() {
  local number
  for number in $(seq -w "$1"); do
    start_group xterm -class Notes -T "W$number" -e sleep 600
  done
  eventually output_is "$(($1))" layout_window_count
}

# layout_case WINDOWS DESKTOPS: the windows stay.
layout_case() {
  capability "Put all windows back where they were"
  if [ "$LABEL" != i3 ]; then
    wmctrl -n "$2"
    eventually output_is "$2" desktop_count
  fi
  open_layout_windows "$1"
  scatter "$2" 1
  local saved saved_desktops shuffled minimized=
  saved=$(placements)
  saved_desktops=$(desktops_of_layout)
  pass_if "the layout is saved" "exit 0" "$(ask tallowin://save-layout)"
  pass_if_said "Toast: Saved the position of $(wmctrl -lx | grep -vc '\.Tallowin ') windows"
  scatter "$2" 2
  if [ "$LABEL" != i3 ]; then
    minimized=$(window_called W03)
    put_window "$minimized" 0
    xdotool windowminimize "$minimized"
    eventually is_hidden "$minimized"
    wmctrl -i -r "$(window_called W05)" -b add,maximized_vert,maximized_horz
    put_window "$(window_called W05)" 0
  fi
  shuffled=$(desktops_of_layout)
  do_command restore-layout
  pass_if_eventually "restore-layout puts $1 windows on $2 desktops back" "$saved_desktops" desktops_of_layout
  [ "$LABEL" != i3 ] || show_every_desktop
  pass_if_eventually "where they were" "$saved" placements
  pass_if_said "Toast: Put $(comm -13 <(echo "$saved_desktops") <(echo "$shuffled") | wc -l) windows back on their Spaces"
  [ -z "$minimized" ] || pass_if "a minimised one stays so" hidden "$(hidden_or_shown "$minimized")"
  pass_if "the desktop stays" 0 "$(current_desktop)"
}
