# shellcheck shell=bash
# Automations, times and what moves between machines, with a running instance. To be sourced by run.sh. Begins with
# TRIAL, active, on the first desktop.

automation_cases() {
  capability "Run scripts and shortcuts on entering and leaving"
  install_notes
  pass_if "the focus is left alone" "exit 0" "$(tallowin --set restoreFocus false | tail -n 1)"
  start_instance --verbose
  script_case
  shortcut_case
  launch_and_hide_case
  keystroke_case
  record_case
  transfer_case
  ask quit >/dev/null
  eventually group_is_gone "$INSTANCE_GROUP"
}

# set_automation NUMBER JSON
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
  kill "$(cat "$HOME/script-id")"
  pass_if_eventually "no child is left behind" "" zombies_of "$INSTANCE_GROUP"
  ask automation 2 clear >/dev/null
}

zombies_of() {
  ps -o stat=,comm= --ppid "$1" | grep '^Z'
}

shortcut_case() {
  local folder=$DESKTOP_DIRECTORY/tallowin/.config/tallowin/shortcuts
  mkdir -p "$folder"
  # shellcheck disable=SC2016 # for the script to expand
  printf '#!/bin/sh\necho focused >>"$HOME/shortcut"\n' >"$folder/Focus On"
  chmod +x "$folder/Focus On"
  set_automation 2 '{"shortcutOnEnter": "Focus On"}'
  go_to 2
  pass_if_eventually "a shortcut runs" focused lines_of "$HOME/shortcut"
  go_to 1
  ask automation 2 clear >/dev/null
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
    lacks "Hiding is minimising, which i3 does not do."
  else
    hide_case
  fi
  ask automation 3 clear >/dev/null
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
  ask automation 2 clear >/dev/null
}

# The last key with modifiers that xev saw pressed, with the state it came with.
pressed_key() {
  awk '/^KeyPress/ { press = 1 } press && /keysym/ { seen = $0; press = 0 } /keysym/ { press = 0 } END { print seen }' "$1" |
    grep -oE 'state 0x[0-9a-f]+|\(keysym [^)]*\)' | sed 's/keycode [0-9]* //' | paste -sd , | sed 's/,/, /'
}

record_case() {
  capability "Record times, keep profiles, export and import"
  pass_if "times are recorded" true "$(ask time --days 1 --json | sed '$d' | jq 'length > 0 and all(.seconds > 0)')"
  ask time --csv "$DESKTOP_DIRECTORY/times.csv" >/dev/null
  pass_if "and written out" "date,space,minutes" "$(head -n 1 "$DESKTOP_DIRECTORY/times.csv")"
  do_command diagnostics
  pass_if_said "Toast: Diagnostics copied"
  pass_if "the report is on the clipboard" "$(ask diagnostics | sed '$d')" "$(xclip -o -selection clipboard)"
  pass_if "and there in several forms" 1 "$(xclip -o -selection clipboard -t TARGETS | grep -c '^UTF8_STRING$')"
  pass_if "the report names the window manager" 1 "$(ask diagnostics | grep -c '^Window manager: ')"
  pass_if "a profile is saved" "exit 0" "$(ask profile save Office)"
  ask edit 2 --name Other >/dev/null
  pass_if "and switched to" "exit 0" "$(ask tallowin://profile/office)"
  pass_if "which brings its names back" "Deep Work" "$(name_of_second)"
}

name_of_second() {
  ask list --json | sed '$d' | jq -r '.spaces[1].name'
}

# What one instance exports makes another one, with a home folder of its own, say the same.
transfer_case() {
  local file=$DESKTOP_DIRECTORY/export.json other=("$PROGRAM" --home "$DESKTOP_DIRECTORY/other") group
  tallowin --set hudDuration 2.5 >/dev/null
  ask edit 3 --symbol star --color '#9B6BF4' --note 'not yet' >/dev/null
  pass_if "everything is exported" "Exported to export.json
exit 0" "$(ask export "$file")"
  start_group "${other[@]}" --platform x11
  group=$STARTED_GROUP
  eventually "${other[@]}" list >/dev/null 2>&1
  pass_if "a file of another kind is refused" 65 "$("${other[@]}" import "$DESKTOP_DIRECTORY/automation.json" >/dev/null 2>&1; echo $?)"
  "${other[@]}" import "$file" >/dev/null
  pass_if_eventually "the other one lists the same Spaces" \
    "$(listed_by "$PROGRAM" --home "$DESKTOP_DIRECTORY/tallowin")" listed_by "${other[@]}"
  pass_if "and has the same settings" "$(exported_settings "$PROGRAM" --home "$DESKTOP_DIRECTORY/tallowin")" \
    "$(exported_settings "${other[@]}")"
  "${other[@]}" quit
  eventually group_is_gone "$group"
}

# After a look at the windows, as applications are listed as they were last seen.
listed_by() {
  "$@" windows >/dev/null
  "$@" list --json | jq 'del(.updatedAt)'
}

# The values of all settings that move between machines, without the marks of those that were set.
exported_settings() {
  "$@" --settings-list | tr -d '*' | awk '{ print $1, $2 }' | grep -vE '^(activeProfile|recentSpaceNames) '
}
