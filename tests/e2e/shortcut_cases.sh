# shellcheck shell=bash
# Keys pressed on the keyboard, with a running instance. To be sourced by run.sh. Begins with TRIAL, active, on the first
# desktop.

shortcut_cases() {
  capability "Press keys to switch, to move windows and to do anything else"
  tallowin --set shortcuts '{"ctrl+alt+k": "rename 2 \"By key\"", "ctrl+alt+j": "switch nowhere", "ctrl+alt+z+": "next"}' \
    >/dev/null
  start_instance --verbose
  xdotool key ctrl+alt+2
  pass_if_eventually "a digit switches" 1 current_desktop
  [ "$LABEL" == icewm ] || own_digit_case
  focus "$(window_called TRIAL)"
  wmctrl -s 0
  eventually output_is 0 current_desktop
  xdotool key ctrl+alt+k
  pass_if_eventually "words of one's own are done" "By key" name_of_second
  listen
  xdotool key ctrl+alt+j
  pass_if_said "Toast: No Space is called nowhere"
  held_key_case
  keyboard_layout_case
  state_case
  quit_instance
}

# icewm has these keys itself.
own_digit_case() {
  xdotool key ctrl+alt+2
  pass_if_eventually "and back, when it is there" 0 current_desktop
  focus "$(window_called TRIAL)"
  xdotool key ctrl+alt+shift+2
  pass_if_eventually "with Shift it moves the front window" 1 desktop_of "$(window_called TRIAL)"
}

# The server repeats a key that is held; one press is one step.
held_key_case() {
  tallowin --set shortcuts '{"ctrl+alt+j": "next"}' >/dev/null
  put_in_front 0
  pass_if_eventually "settings take effect at once" 1 shortcuts_for next
  xset r rate 10 200 # milliseconds until the key repeats, repetitions a second
  xdotool keydown ctrl keydown alt keydown j
  eventually output_is 1 current_desktop
  local look
  for look in {1..20}; do # a while, in which the server repeats the key
    ask list >/dev/null
  done
  xdotool keyup j keyup alt keyup ctrl
  pass_if "a key that is held counts once" 1 "$(current_desktop)"
  xset r rate
}

# shortcuts_for ACTION: how many do it.
shortcuts_for() {
  ask shortcuts --json | sed '$d' | jq "map(select(.action == \"$1\")) | length"
}

# The letter M is at its place, also in layouts without it.
keyboard_layout_case() {
  local m=58 a=38 # keycodes of evdev
  wmctrl -i -r "$(window_called TRIAL)" -t 1
  put_in_front 1
  focus "$(window_called TRIAL)"
  setxkbmap ru
  listen
  xdotool keydown 37 keydown 64 keydown 50 key $m keyup 50 keyup 64 keyup 37 # Ctrl, Alt, Shift
  eventually press_until $a has_said "Toast: Marked as A"
  xdotool keydown 37 keydown 64 key 10 keyup 64 keyup 37
  pass_if_eventually "digits switch in a layout without Latin letters" 0 current_desktop
  xdotool keydown 37 keydown 64 key $m keyup 64 keyup 37
  eventually press_until $a output_is 1 current_desktop
  pass_if "and the letter M jumps to what it has marked" 1 "$(current_desktop)"
  setxkbmap us
}

# press_until KEY CONDITION...: presses the key and looks. It is heard only once the program waits for it.
press_until() {
  xdotool key "$1"
  "${@:2}" >/dev/null
}

state_case() {
  local expected=works
  [ "$LABEL" != icewm ] || expected="done by your window manager"
  pass_if "each says how it stands" "ctrl+alt+1 $expected" "$(ask shortcuts --json | sed '$d' |
    jq -r '.[] | select(.action == "tallowin://switch/1") | .keys + " " + .state')"
  case $LABEL in
    openbox | xfwm4 | metacity)
      pass_if "a step of the window manager's own is left to it" "done by your window manager" \
        "$(ask shortcuts --json | sed '$d' | jq -r '.[] | select(.action == "tallowin://next") | .state')"
      put_in_front 0
      xdotool key ctrl+alt+Right
      pass_if_eventually "which does it" 1 current_desktop
      ;;
    i3)
      pass_if "a step works where the window manager has none" works \
        "$(ask shortcuts --json | sed '$d' | jq -r '.[] | select(.keys == "ctrl+alt+right") | .state')"
      ;;
  esac
}
