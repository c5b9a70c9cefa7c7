#!/usr/bin/env bash
# make.sh PROGRAM: takes the pictures of README.md from a real run, into the folder of this script. Run by hand when the
# windows have changed: docs/pictures/make.sh build/release/tallowin
set -euo pipefail
[ $# -eq 1 ] || { echo "usage: make.sh PROGRAM" >&2; exit 64; }
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$here/../..
PROGRAM=$(realpath "$1")
. "$root/scripts/packages.sh"
ensure_packages "take pictures" "${packages_test[@]}" "${packages_pictures[@]}"
set +e
. "$root/tests/e2e/desktop.sh"
. "$root/tests/e2e/checks.sh"
. "$root/tests/e2e/window_witnesses.sh"
trap stop_desktop EXIT

tallowin() {
  "$PROGRAM" --home "$DESKTOP_DIRECTORY/tallowin" "$@"
}

# space NUMBER NAME SYMBOL COLOR
space() {
  tallowin edit "$1" --name "$2" --symbol "$3" --color "$4"
}

# The place of the window with class $1 and its frame as convert takes it, with $2 pixels around it.
place_of() {
  local id frame
  id=$(xwininfo -root -tree | awk -v class="(\"$1\"" 'index($0, class) { print $1; exit }')
  frame=$(xprop -id "$id" -notype _NET_FRAME_EXTENTS | grep -o '[0-9].*' | tr -d ,)
  xwininfo -id "$id" | awk -v around="$2" -v frame="${frame:-0 0 0 0}" 'BEGIN { split(frame, f, " ") }
    /Absolute upper-left X/ { x = $4 - f[1] - around } /Absolute upper-left Y/ { y = $4 - f[3] - around }
    /^  Width/ { w = $2 + f[1] + f[2] + 2 * around } /^  Height/ { h = $2 + f[3] + f[4] + 2 * around }
    END { printf "%dx%d+%d+%d\n", w, h, x, y }'
}

is_shown() {
  xwininfo -root -tree | awk -v class="(\"$1\"" 'index($0, class) { print $1; exit }' | xargs -r xwininfo -id |
    grep -q IsViewable
}

# picture NAME PLACE: what the screen shows there, in few colours.
picture() {
  sleep 0.5 # windows are shown, and then painted
  import -window root png:- | convert png:- -crop "$2" +repage -dither None -colors 128 "PNG8:$here/$1.png"
}

# dialog NAME CLASS WORDS...: what these words open.
dialog() {
  tallowin "${@:3}"
  eventually is_shown "$2"
  sleep 0.5
  picture "$1" "$(place_of "$2" 8)"
  xdotool key Escape
}

start_panel() {
  printf '%s\n' 'rounded = 0' 'background_color = #2b2f36 100' 'panel_items = TSC' 'panel_size = 100% 48' \
    'panel_position = bottom center horizontal' 'panel_background_id = 1' 'systray_icon_size = 32' \
    'task_font = Sans 16' 'task_font_color = #e6e6e6 100' 'task_maximum_size = 320 48' 'time1_format = %H:%M' \
    'time1_font = Sans 18' 'clock_font_color = #e6e6e6 100' >"$DESKTOP_DIRECTORY/tint2rc"
  start_group tint2 -c "$DESKTOP_DIRECTORY/tint2rc"
}

click_item() {
  local x y
  read -r x y < <(xwininfo -root -tree |
    sed -n 's/^      .*"tallowin-ui" "Tallowin").*+\([0-9]*\)+\([0-9]*\)$/\1 \2/p')
  xdotool mousemove $((x + 8)) $((y + 8)) click "$1"
}

item_is_embedded() {
  xwininfo -root -tree | grep -q '^      .*"tallowin-ui" "Tallowin"'
}

export QT_SCALE_FACTOR=2
start_server && start_window_manager openbox || exit
xsetroot -solid '#5b7a99'
start_panel
start_instance --verbose
space 1 Code chevron.left.forwardslash.chevron.right '#007AFF'
space 2 Mail envelope '#34C759'
space 3 Music music.note '#AF52DE'
space 4 Reading book '#FF9500'
wmctrl -r TRIAL -t 3 # nobody needs to see its prompt
xdotool mousemove 0 0
eventually item_is_embedded
tallowin --set hudDuration 60
tallowin switch mail
eventually is_shown tallowin-hud
picture pop-up "$(place_of tallowin-hud 24)"
tallowin --set hudDuration 0
tallowin switch code
eventually eval '! is_shown tallowin-hud'
tallowin --set hudEnabled false
dialog rename tallowin-rename tallowin://rename/mail
dialog question tallowin-alert remove-desktop reading --ask
start_group xclock -geometry 200x200+760+240
eventually window_is_listed xclock
click_item 3
eventually is_shown tallowin-menu
picture menu 560x640+720+160
xdotool key Escape
tallowin quit
