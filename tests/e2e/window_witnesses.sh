# shellcheck shell=bash
# Windows for the cases, what independent programs see of them, and what the instance says. To be sourced by run.sh.

NOTES=
SAID_BEFORE=0

# An application of its own, whose windows are called as they are asked for.
install_notes() {
  mkdir -p "$HOME/.local/share/applications"
  printf '%s\n' '[Desktop Entry]' Type=Application Name=Notes 'Exec=xterm -class Notes -T NOTES' StartupWMClass=Notes \
    'Actions=new-window;' '[Desktop Action new-window]' Name=New 'Exec=xterm -class Notes -T NEWNOTES' \
    >"$HOME/.local/share/applications/notes.desktop"
}

# open_notes TITLE [XTERM-ARGUMENTS...]: sets NOTES to the new window.
open_notes() {
  local title=$1
  shift
  start_group xterm -class Notes -T "$title" "$@"
  eventually window_is_listed "$title"
  NOTES=$(window_called "$title")
}

window_called() {
  wmctrl -l 2>/dev/null | awk -v title="$1" '$4 == title { print $1 }' | tail -n 1
}

window_is_listed() {
  [ -n "$(window_called "$1")" ]
}

# Under i3 a window that ends on a hidden desktop stays in the list of clients until the next one comes.
close_window() {
  local title=$1
  [ "$LABEL" != i3 ] || put_window "$(window_called "$title")" "$(current_desktop)"
  wmctrl -F -c "$title"
  eventually is_no_longer_listed "$title"
}

# wmctrl fails when a window goes while it looks.
is_no_longer_listed() {
  local windows
  windows=$(wmctrl -l 2>/dev/null) && ! grep -q " $1\$" <<<"$windows"
}

# Puts window $1 on desktop index $2 without the program.
put_window() {
  wmctrl -i -r "$1" -t "$2"
  eventually output_is "$2" desktop_of "$1"
}

# Makes window $1 the active one; its desktop is shown.
focus() {
  xdotool windowactivate "$1"
  eventually is_active "$1"
}

is_active() {
  [ "$(xdotool getactivewindow 2>/dev/null)" == $(($1)) ]
}

active_or_not() {
  is_active "$1" && echo active
}

is_hidden() {
  xprop -id "$1" -notype _NET_WM_STATE 2>/dev/null | grep -q _NET_WM_STATE_HIDDEN
}

hidden_or_shown() {
  is_hidden "$1" && echo hidden || echo shown
}

# What is said from now on counts.
listen() {
  SAID_BEFORE=$(wc -l <"$DESKTOP_DIRECTORY/log")
}

# do_command URL-PATH: the command is taken, and what is said from then on counts.
do_command() {
  local said
  listen
  said=$(ask "tallowin://$1")
  [ "$said" == "exit 0" ] || pass_if "tallowin://$1 is taken" "exit 0" "$said"
}

has_said() {
  tail -n "+$((SAID_BEFORE + 1))" "$DESKTOP_DIRECTORY/log" | grep -qF "$1" && echo said
}

pass_if_said() {
  pass_if_eventually "it says: $1" said has_said "$1"
}

# Every ordinary window with its desktop number, as the program lists them and as wmctrl does.
listed_windows() {
  ask windows --all --json | sed '$d' | jq -r '.[] | "\(.number) \(.title)"' | sort
}

witnessed_windows() {
  wmctrl -l | awk '$2 >= 0 { print $2 + 1, $4 }' | sort
}

# Position and size of the frame around a window, which is called $1 or has the id $1, in the same ways.
listed_frame() {
  ask windows --all --json | sed '$d' |
    jq -r --arg title "$1" '.[] | select(.title == $title) | .frame | flatten | map(round) | join(" ")'
}

witnessed_frame() {
  local frame
  frame=$(frame_of "$1")
  xwininfo -id "$frame" | awk -v own="$([ "$frame" == "$1" ] && echo 1)" '/Absolute upper-left/ { corner = corner $NF " " } /Width:/ { width = $NF }
    /Height:/ { height = $NF } /Border width:/ && !own { border = 2 * $NF } END { print corner width + border, height + border }'
}

# The outermost window around window $1; the window itself where nothing is told of frames.
frame_of() {
  local window=$1 root parent
  while [ "$LABEL" != i3 ]; do
    read -r root parent < <(xwininfo -children -id "$window" |
      awk '/Root window id:/ { root = $4 } /Parent window id:/ { parent = $4 } END { print root, parent }')
    [ "$parent" != "$root" ] || break
    window=$parent
  done
  echo "$window"
}
