# shellcheck shell=bash
# Automations, times and what moves between machines, with a running instance. To be sourced by run.sh. Begins with
# TRIAL, active, on the first desktop.

automation_cases() {
  capability "Run scripts and shortcuts on entering and leaving"
  tallowin --set restoreFocus false >/dev/null # the focus is left alone
  start_instance --verbose
  script_case
  launch_and_hide_case
  keystroke_case
  record_case
  quit_instance
}

# set_automation NUMBER JSON: takes the place of the one before.
set_automation() {
  printf '%s' "$2" >"$DESKTOP_DIRECTORY/automation.json"
  pass_if "desktop $1 gets an automation" "exit 0" "$(ask automation "$1" set "$DESKTOP_DIRECTORY/automation.json")"
}

go_to() {
  do_command "switch/$1"
  eventually output_is $(($1 - 1)) current_desktop
}

lines_of() {
  cat "$1" 2>/dev/null
}

script_case() {
  ask edit 2 --name 'Deep Work' >/dev/null
  set_automation 2 '{"scriptOnEnter": "echo \"in $TALLOWIN_SPACE_NAME $TALLOWIN_SPACE_NUMBER\" >>\"$HOME/script\"; echo $$ >\"$HOME/script-id\"; exec sleep 600",
    "scriptOnLeave": "echo \"out of $TALLOWIN_SPACE_NAME\" >>\"$HOME/script\""}'
  go_to 2
  pass_if_eventually "a script runs on entering" "in Deep Work 2" lines_of "$HOME/script"
  go_to 1
  pass_if_eventually "and on leaving, while the first goes on" "in Deep Work 2
out of Deep Work" lines_of "$HOME/script"
  eventually test -s "$HOME/script-id"
  kill "$(cat "$HOME/script-id")"
  eventually is_no_longer_running "$(cat "$HOME/script-id")"
  pass_if_eventually "no child is left behind" "" zombies_of "$INSTANCE_GROUP"
  local folder=$DESKTOP_DIRECTORY/tallowin/.config/tallowin/shortcuts
  mkdir -p "$folder"
  # shellcheck disable=SC2016 # for the script to expand
  printf '#!/bin/sh\necho focused >>"$HOME/shortcut"\n' >"$folder/Focus On"
  chmod +x "$folder/Focus On"
  set_automation 2 '{"shortcutOnEnter": "Focus On"}'
  go_to 2
  pass_if_eventually "a shortcut runs" focused lines_of "$HOME/shortcut"
  go_to 1
}

is_no_longer_running() {
  case $(ps -o stat= -p "$1") in '' | Z*) ;; *) return 1 ;; esac
}

zombies_of() {
  ps -o stat=,comm= --ppid "$1" | grep '^Z'
}

launch_and_hide_case() {
  capability "Open applications on entering"
  set_automation 3 "{\"launchApps\": [\"$HOME/.local/share/applications/notes.desktop\"], \"launchOnce\": true}"
  go_to 3
  eventually window_is_listed NOTES
  NOTES=$(window_called NOTES)
  pass_if "an application opens on the desktop" 2 "$(desktop_of "$NOTES")"
  go_to 1
  if [ "$LABEL" == i3 ]; then
    capability "Hide other applications on entering"
    record lacking "Hiding is minimising, which i3 does not do."
  else
    hide_case
  fi
}

hide_case() {
  capability "Hide other applications on entering"
  eventually output_is "1 TRIAL" listed_in_front
  set_automation 3 '{"hideOtherApps": true}'
  go_to 3
  pass_if_eventually "applications without a window there are hidden" hidden hidden_or_shown "$(window_called TRIAL)"
  pass_if "the one with a window is not" shown "$(hidden_or_shown "$NOTES")"
  go_to 1
  focus "$(window_called TRIAL)"
}

listed_in_front() {
  ask windows | awk '/^1/ { print $1, $NF }'
}

keystroke_case() {
  capability "Press keys on entering"
  local keys=$DESKTOP_DIRECTORY/keys
  go_to 2
  start_group bash -c "exec xev -name KEYS -event keyboard >'$keys'"
  local group=$STARTED_GROUP
  eventually window_is_listed KEYS
  focus "$(window_called KEYS)"
  go_to 1
  set_automation 2 '{"keystrokeOnEnter": "ctrl+shift+k"}'
  go_to 2
  eventually is_active "$(window_called KEYS)" || focus "$(window_called KEYS)"
  pass_if_eventually "a key combination arrives" "state 0x5, (keysym 0x4b, K)" pressed_key "$keys"
  end_group "$group"
  go_to 1
}

# The last key with modifiers that xev saw pressed, with the state it came with.
pressed_key() {
  awk '/^KeyPress/ { press = 1 } press && /keysym/ { seen = $0; press = 0 } /keysym/ { press = 0 } END { print seen }' "$1" |
    grep -oE 'state 0x[0-9a-f]+|\(keysym [^)]*\)' | sed 's/keycode [0-9]* //' | paste -sd , | sed 's/,/, /'
}

record_case() {
  local file=$DESKTOP_DIRECTORY/export.json
  capability "Record times, keep profiles, export and import"
  pass_if "times are recorded" true "$(ask time --days 1 --json | sed '$d' | jq 'length > 0 and all(.seconds > 0)')"
  do_command diagnostics
  pass_if_said "Toast: Diagnostics copied"
  pass_if "the report is on the clipboard" "$(ask diagnostics | sed '$d')" "$(xclip -o -selection clipboard)"
  pass_if "and there in several forms" 1 "$(xclip -o -selection clipboard -t TARGETS | grep -c '^UTF8_STRING$')"
  pass_if "the report names the window manager" 1 "$(ask diagnostics | grep -c '^Window manager: ')"
  ask profile save Office >/dev/null
  pass_if "everything is exported" "Exported to export.json
exit 0" "$(ask export "$file")"
  ask edit 2 --name Other >/dev/null
  pass_if "a profile is switched to" "exit 0" "$(ask tallowin://profile/office)"
  pass_if "which brings its names back" "Deep Work" "$(name_of_second)"
  ask edit 2 --name Third >/dev/null
  ask import "$file" >/dev/null
  pass_if_eventually "and so does an import" "Deep Work" name_of_second
}

name_of_second() {
  ask list --json | sed '$d' | jq -r '.spaces[1].name'
}
