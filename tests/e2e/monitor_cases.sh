# shellcheck shell=bash
# Two monitors side by side on one server, of which one goes, with a running instance. To be sourced by run.sh.

monitor_cases() {
  capability ""
  xrandr --setmonitor LEFT 640/169x800/211+0+0 screen
  xrandr --setmonitor RIGHT 640/169x800/211+640+0 none
  tallowin --set hudDuration 60 >/dev/null
  put_in_front 0
  start_instance
  eventually shows_again
  xdotool mousemove 300 300
  ask switch 2 >/dev/null
  pass_if_eventually "the pop-up is on the monitor of the pointer" left side_of tallowin-hud
  xdotool mousemove 900 300
  ask switch 3 >/dev/null
  pass_if_eventually "also on another one" right side_of tallowin-hud
  ask tallowin://rename/current >/dev/null
  pass_if_eventually "and so are questions" right side_of tallowin-rename
  xrandr --delmonitor RIGHT
  pass_if_eventually "when that one goes, the pop-up comes to the other" left side_of tallowin-hud
  pass_if_eventually "and the question too" left side_of tallowin-rename
  quit_instance
}

# The monitor on which the whole window with instance $1 is.
side_of() {
  xwininfo -root -tree | sed -n "s/.*(\"$1\" \"Tallowin\") *\([0-9]*\)x.*+\([0-9]*\)+[0-9]*$/\1 \2/p" |
    awk '{ print ($1 + $2 <= 640 ? "left" : $2 >= 640 ? "right" : "both") }'
}
