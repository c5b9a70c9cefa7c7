# shellcheck shell=bash
# What the running instance does with windows and desktops. To be sourced by run.sh. Every case begins with TRIAL,
# active, on the first desktop.

list_cases() {
  capability "List windows, with where they are"
  open_notes NOTES -geometry 50x12+300+200
  put_window "$NOTES" 1
  pass_if "windows --all agrees with wmctrl right after a move" "$(witnessed_windows)" "$(listed_windows)"
  pass_if "windows lists the desktop in front" "1 TRIAL" "$(ask windows | awk '/^1/ { print $1, $NF }' | grep -v ANCHOR)"
  pass_if "frames are those of xwininfo" "$(witnessed_frame "$NOTES")" "$(listed_frame NOTES)"
  wmctrl -i -r "$NOTES" -T 'A  B'
  pass_if_eventually "a title changes" 1 called_like_that
  if [ "$LABEL" != i3 ]; then
    xdotool set_desktop_for_window "$NOTES" -1
    eventually output_is 4294967295 desktop_of "$NOTES"
    pass_if "one on all desktops is on none" "$(witnessed_windows)" "$(listed_windows)"
  fi
  wmctrl -i -r "$NOTES" -T NOTES
  close_window NOTES
  pass_if "a closed window goes" "$(witnessed_windows)" "$(listed_windows)"
}

called_like_that() {
  ask windows --all --json | sed '$d' | jq '[.[] | select(.title == "A  B")] | length'
}

move_cases() {
  capability "Move windows to other desktops"
  local trial
  trial=$(window_called TRIAL)
  focus "$trial"
  do_command move-window/2
  pass_if_eventually "move-window/2 moves the front window" 1 desktop_of "$trial"
  pass_if_said "Toast: Moved XTerm to Desktop 2"
  pass_if "the desktop stays" 0 "$(current_desktop)"
  put_window "$trial" 0
  focus "$trial"
  tallowin --set followMovedWindow true >/dev/null
  do_command move-window/3
  pass_if_eventually "a followed window moves" 2 desktop_of "$trial"
  pass_if_eventually "its desktop is shown" 2 current_desktop
  pass_if_eventually "it is active there" active active_or_not "$trial"
  tallowin --unset followMovedWindow >/dev/null
}

pin_case() {
  capability "Pin applications to desktops"
  pass_if "an application is pinned by its name" "exit 0" "$(ask pin notes 3)"
  open_notes PINNED
  pass_if_eventually "its new window goes to its desktop" 2 desktop_of "$NOTES"
  put_window "$NOTES" 1
  open_notes SECOND
  pass_if_eventually "so does the next one" 2 desktop_of "$NOTES"
  pass_if "the first is not moved again" 1 "$(desktop_of "$(window_called PINNED)")"
  pass_if "the desktop stays" 0 "$(current_desktop)"
  pass_if "it is unpinned" "exit 0" "$(ask unpin Notes)"
  close_window PINNED
  close_window SECOND
}

mark_cases() {
  capability "Mark a window with a letter, and jump to it"
  local marked
  open_notes MARKED
  marked=$NOTES
  put_window "$marked" 2
  open_notes OTHER
  put_window "$NOTES" 2
  focus "$marked"
  ask mark n >/dev/null
  focus "$NOTES"
  put_in_front 0
  ask jump N >/dev/null
  pass_if_eventually "a jump shows the window, not the one in front" active active_or_not "$marked"
  pass_if_eventually "on its desktop" 2 current_desktop
  close_window OTHER
  put_in_front 0
  focus "$(window_called TRIAL)"
  listen
  ask mark >/dev/null
  xdotool key t
  pass_if_said "Toast: Marked as T"
  put_in_front 2
  ask jump >/dev/null
  xdotool key t
  pass_if_eventually "the letter jumps" active active_or_not "$(window_called TRIAL)"
  pass_if_eventually "to where it is" 0 current_desktop
  close_window MARKED
}

# Where the window manager minimises, the second press hides it.
scratchpad_case() {
  capability "Fetch an application, and hide it again"
  tallowin --set scratchpadApp notes >/dev/null
  open_notes PAD
  put_window "$NOTES" 2
  focus "$(window_called TRIAL)"
  do_command scratchpad
  pass_if_eventually "the scratchpad comes" 0 desktop_of "$NOTES"
  pass_if_eventually "and is active" active active_or_not "$NOTES"
  if [ "$LABEL" != i3 ]; then
    do_command scratchpad
    pass_if_eventually "it goes" hidden hidden_or_shown "$NOTES"
    eventually is_active "$(window_called TRIAL)"
    do_command scratchpad
    pass_if_eventually "it comes back" active active_or_not "$NOTES"
    pass_if_eventually "as it was" shown hidden_or_shown "$NOTES"
  else
    record partial "It is fetched, but not hidden again, as i3 minimises no windows."
  fi
  tallowin --unset scratchpadApp >/dev/null
  close_window PAD
}

# "left top width height desktop state" of a window.
condition_of() {
  echo "$(witnessed_frame "$1") $(desktop_of "$1") $(hidden_or_shown "$1")"
}

# Without the focus memory, which for 0.2 seconds after the desktop was entered may bring back what is minimised meanwhile.
minimize_case() {
  capability "Minimise all windows, and bring them back"
  local trial before by_hand
  tallowin --set restoreFocus false >/dev/null
  trial=$(window_called TRIAL)
  open_notes BYHAND
  by_hand=$NOTES
  open_notes ELSEWHERE
  put_window "$NOTES" 1
  before=$(condition_of "$trial")
  xdotool windowminimize "$by_hand"
  pass_if_eventually "a window is minimised by hand" hidden hidden_or_shown "$by_hand"
  do_command minimize-all
  pass_if_eventually "minimize-all minimises what is in front" hidden hidden_or_shown "$trial"
  pass_if_said "Toast: Minimized 1 windows."
  pass_if "but nothing elsewhere" shown "$(hidden_or_shown "$NOTES")"
  put_in_front 1
  do_command undo-minimize
  pass_if_eventually "undo-minimize brings it back as it was" "$before" condition_of "$trial"
  pass_if "but nothing else" hidden "$(hidden_or_shown "$by_hand")"
  pass_if "without a change of desktop" 1 "$(current_desktop)"
  tallowin --unset restoreFocus >/dev/null
  close_window BYHAND
  close_window ELSEWHERE
}

refused_minimize_case() {
  capability "Minimise all windows, and bring them back"
  record lacking "i3 minimises no windows. Tallowin says that it minimised none."
  do_command minimize-all
  pass_if_said "Toast: Minimized 0 windows."
  pass_if "what cannot be minimised stays" shown "$(hidden_or_shown "$(window_called TRIAL)")"
}

desktop_change_case() {
  capability "Add and remove desktops"
  local before
  open_notes THIRD
  put_window "$NOTES" 2
  xdotool mousemove 333 222
  before=$(xdotool getmouselocation | cut -d ' ' -f 1-2)
  do_command add-desktop
  pass_if_eventually "add-desktop adds one" 5 desktop_count
  do_command remove-desktop/2
  pass_if_eventually "remove-desktop/2 removes one" 4 desktop_count
  pass_if_eventually "what was right of it is one farther left" 1 desktop_of "$NOTES"
  pass_if "the desktop stays" 0 "$(current_desktop)"
  pass_if "the pointer is where it was" "$before" "$(xdotool getmouselocation | cut -d ' ' -f 1-2)"
  close_window THIRD
}

# The names of the desktops from left to right, as pagers see them, then the one in front as the program sees it.
named_desktops() {
  echo "$(wmctrl -d | sed 's/.*  //' | paste -sd ' '), $(ask current | head -n 1)"
}

# What is said of desktops stays with them, whoever adds, removes and restarts what. Runs after desktop_change_case.
desktop_identity_case() {
  capability "Keep names with their desktops when others are added and removed"
  local letter number=0
  for letter in A B C D; do
    number=$((number + 1))
    ask edit "$number" --name "$letter" --note "note of $letter" >/dev/null
    open_notes "ON-$letter"
    put_window "$NOTES" $((number - 1))
  done
  put_in_front 2
  pass_if_eventually "four desktops are named" "A B C D, C" named_desktops
  start_watching
  do_command remove-desktop/2
  pass_if_eventually "removing B leaves the others" "A C D, C" named_desktops
  pass_if_eventually "their windows are theirs" "1 ON-A 2 ON-B 2 ON-C 3 ON-D" windows_by_desktop
  pass_if "and their notes" "note of A,note of C,note of D" "$(known_notes)"
  put_in_front 0
  pass_if "restore brings B back" "exit 0" "$(ask restore 1)"
  pass_if_eventually "to its place" "A B C D, A" named_desktops
  pass_if_eventually "and moves the windows of the others" "1 ON-A 3 ON-B 3 ON-C 4 ON-D" windows_by_desktop
  do_command remove-desktop/2
  eventually output_is "A C D, A" named_desktops
  pass_if "nothing else was ever in front" 1 "$(cut -f 2 "$DESKTOP_DIRECTORY/watched" | grep -c active)"
  kill "$WATCHER" 2>/dev/null
  put_in_front 1
  do_command remove-desktop/2
  pass_if_eventually "removing the one in front shows its neighbour" "A D, D" named_desktops
  wmctrl -n 1
  pass_if_eventually "others take one away" "A, A" named_desktops
  wmctrl -n 3
  pass_if_eventually "it comes back as it was, with a new one" "A D Desktop 3, A" plain_named_desktops
  do_command add-desktop
  eventually output_is 4 desktop_count
  ask edit 4 --name E >/dev/null
  eventually grep -qs '"highest": 7' "$DESKTOP_DIRECTORY/tallowin/.local/share/Tallowin/desktops.json"
  eventually grep -qs '"name": "E"' "$DESKTOP_DIRECTORY/tallowin/.local/share/Tallowin/spaces.json"
  kill -KILL -- "-$INSTANCE_GROUP"
  eventually group_is_gone "$INSTANCE_GROUP"
  wmctrl -n 2
  eventually output_is 2 desktop_count
  start_instance --verbose
  pass_if_eventually "the program comes back when one is missing" "A D, A" named_desktops
  wmctrl -n 4
  pass_if_eventually "which then comes back" "A D Desktop 3 E, A" plain_named_desktops
  if [ "$LABEL" == openbox ]; then
    restart_openbox
    pass_if_eventually "so does all when the window manager starts again" "A D Desktop 3 E, A" plain_named_desktops
  fi
  for letter in A B C D; do
    close_window "ON-$letter"
  done
}

# Some window managers have names of their own for desktops without one.
plain_named_desktops() {
  named_desktops | sed -E 's/ (([Dd]esktop|[Ww]orkspace)[ -]?)?3( E)?,/ Desktop 3\3,/'
}

windows_by_desktop() {
  ask windows --all | awk '/ON-/ { print $1, $NF }' | sort -k 2 | paste -sd ' '
}

known_notes() {
  ask list --json | sed '$d' | jq -r '[.spaces[].note] | join(",")'
}

refused_desktop_change_case() {
  capability "Add and remove desktops"
  record lacking "Workspaces of i3 are there while something is on them or they are shown; nothing else adds or removes them."
  local before
  before=$(witnessed_desktops)
  pass_if "add-desktop says why not" "tallowin: This window manager does not let desktops be added.
exit 1" "$(ask tallowin://add-desktop)"
  pass_if_said "Toast: This window manager does not let desktops be added."
  pass_if "nothing is added" "$before" "$(witnessed_desktops)"
}

# saved_space_case APPLICATIONS: so many there will be on the second desktop.
saved_space_case() {
  capability "Save a desktop with its applications, and open it again"
  local trial
  trial=$(window_called TRIAL)
  put_in_front 1
  open_notes ONE
  put_window "$NOTES" 1
  open_notes TWO
  put_window "$NOTES" 1
  do_command save-space
  pass_if_eventually "save-space closes the windows" "" window_called ONE
  eventually is_no_longer_listed TWO
  pass_if "but none elsewhere" "$trial" "$(window_called TRIAL)"
  pass_if "it says what it saved" "Desktop 2  $1 app$([ "$1" = 1 ] || echo s)  0 tabs" "$(ask saved-spaces | grep -o '  Desktop.*' | cut -c 3-)"
  ask reopen 'desktop 2' >/dev/null
  eventually window_is_listed NOTES
  pass_if "its application starts when it is reopened by its name" NOTES \
    "$(window_is_listed NOTES && echo NOTES)"
  ask reopen 'desktop 2' >/dev/null
  pass_if_eventually "while it runs it is asked for a new window" 1 count_of NEWNOTES
  pass_if "and not started anew" 1 "$(count_of NOTES)"
  close_window NEWNOTES
  close_window NOTES
}

count_of() {
  wmctrl -l | awk -v title="$1" '$4 == title' | wc -l
}

# Workspaces of i3 are there as long as there is something on them.
hold_workspaces() {
  local number
  for number in 4 3 2 1; do
    if ! window_is_listed "ANCHOR$number"; then
      i3-msg -q "workspace $number; exec xterm -T ANCHOR$number"
      eventually window_is_listed "ANCHOR$number"
    fi
  done
  put_in_front 0
}

# Runs a case with TRIAL on the first desktop, which is shown.
at_home() {
  local trial
  trial=$(window_called TRIAL)
  put_window "$trial" 0
  put_in_front 0
  focus "$trial"
  "$@"
}

window_cases() {
  local case cases
  capability "List windows, with where they are"
  start_instance --verbose
  pass_if "windows --all agrees with wmctrl at once" "$(witnessed_windows)" "$(listed_windows)"
  # Pins early, so that they are of windows that have the ids of some that have gone.
  cases=(list_cases pin_case move_cases mark_cases scratchpad_case)
  if [ "$LABEL" == i3 ]; then
    cases+=('saved_space_case 2' hold_workspaces refused_minimize_case refused_desktop_change_case drag_case
      'layout_case 12 4')
  else
    cases+=('saved_space_case 1' minimize_case desktop_change_case desktop_identity_case
      'layout_case 40 6')
  fi
  for case in "${cases[@]}"; do
    # shellcheck disable=SC2086 # a case is words
    at_home $case
  done
  quit_instance
}
