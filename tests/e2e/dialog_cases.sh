# shellcheck shell=bash
# Questions in windows, answered by keyboard and pointer, with a running instance. To be sourced by run.sh. Begins with
# TRIAL, active, on the first desktop.
# shellcheck disable=SC1111 # these are the quotation marks of the titles

dialog_cases() {
  capability "Name desktops, note things down and answer questions in windows"
  start_instance --verbose
  focus "$(window_called TRIAL)"
  rename_dialog_case
  note_dialog_case
  if [ "$LABEL" != i3 ]; then # there desktops come and go by themselves
    removal_case
    new_desktop_case
  fi
  quit_instance
  [ "$LABEL" != openbox ] || screen_reader_cases
}

active_title() {
  xdotool getactivewindow getwindowname 2>/dev/null
}

# dialogs INSTANCE: the windows of this name.
dialogs() {
  wmctrl -lx | awk -v class="$1.Tallowin" '$3 == class { print $1 }'
}

# dialog_in_front TITLE WORDS...: what these words show has the focus.
dialog_in_front() {
  local title=$1
  shift
  ask "$@" >/dev/null
  pass_if_eventually "\"$*\" shows a dialog, which has the focus" "$title" active_title
}

rename_dialog_case() {
  local before
  before=$(ask current | head -n 1)
  dialog_in_front "Rename “$before”" tallowin://rename/current
  pass_if "which is none of the user's windows" 0 "$(ask windows --all | grep -c Rename)"
  xdotool type Post
  xdotool key Return
  pass_if_eventually "Enter keeps the name that was typed" "Post
exit 0" ask current
  pass_if_eventually "and gives the focus back" TRIAL active_title
  dialog_in_front "Rename “Post”" tallowin://rename/current
  xdotool type Other
  xdotool key Escape
  pass_if_eventually "Escape closes it" "" dialogs tallowin-rename
  pass_if "and leaves the name" "Post
exit 0" "$(ask current)"
}

note_dialog_case() {
  dialog_in_front "Note for “Post”" ask-note current
  xdotool type -- "--call back"
  xdotool key ctrl+Return
  pass_if_eventually "Ctrl+Enter saves the note" "--call back
exit 0" ask current --format '{note}'
}

removal_case() {
  local before
  before=$(desktop_count)
  dialog_in_front Tallowin remove-desktop 4 --ask
  xdotool key Tab Return
  pass_if_eventually "Cancel closes the question" "" dialogs tallowin-alert
  dialog_in_front Tallowin remove-desktop 4 --ask
  pass_if "and removes nothing" "$before" "$(desktop_count)"
  xdotool key Return
  pass_if_eventually "Remove removes the desktop" $((before - 1)) desktop_count
}

# It is asked about in a window that leaves the focus where it is, until it is clicked.
new_desktop_case() {
  local window
  focus "$(window_called TRIAL)"
  wmctrl -n 4
  eventually output_is 1 eval 'dialogs tallowin-rename | wc -l'
  pass_if "a new desktop is asked about without taking the focus" TRIAL "$(active_title)"
  window=$(dialogs tallowin-rename)
  xdotool mousemove --window "$window" 60 60 click 1
  pass_if_eventually "a click gives it the focus" "Name this new Space?" active_title
  xdotool type Fresh
  xdotool key Return
  pass_if_eventually "and it takes the name" Fresh named_by_pagers 4
}

# accessible NAME [BUTTON]: see there.
accessible() {
  /usr/bin/python3 "$(dirname "${BASH_SOURCE[0]}")/accessible.py" "$@" 2>/dev/null
}

# Screen readers read windows and press buttons by a bus of their own.
screen_reader_cases() {
  local before question=("Remove “Fresh”?" "Its windows go to the desktop beside it. What you have said about it is kept under Restore an Earlier State.")
  before=$(desktop_count)
  start_bus
  gdbus call --session -d org.a11y.Bus -o /org/a11y/bus -m org.freedesktop.DBus.Properties.Set org.a11y.Status \
    IsEnabled '<true>' >/dev/null
  start_instance --verbose
  ask remove-desktop 4 --ask >/dev/null
  pass_if_eventually "a screen reader reads the question and its buttons" "dialog: ${question[0]} (${question[1]})
label: ${question[0]}
label: ${question[1]}
push button: Remove
push button: Cancel" accessible "${question[0]}"
  accessible "${question[0]}" Remove
  pass_if_eventually "and presses one" $((before - 1)) desktop_count
  quit_instance
  end_group "$BUS_GROUP"
  unset DBUS_SESSION_BUS_ADDRESS
}
