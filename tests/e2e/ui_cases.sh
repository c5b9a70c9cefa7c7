# shellcheck shell=bash
# The item in the panel and its menu, with a running instance: in tint2, which embeds windows, and in a panel that takes
# items by D-Bus. To be sourced by run.sh. Begins on the first desktop.

ui_cases() {
  capability ""
  start_bus
  start_tint2
  tallowin --set hudEnabled false >/dev/null
  start_instance --verbose
  ask rename 2 'R&D' >/dev/null
  pass_if_eventually "tint2 gets the item" 1 embedded_items
  embedded_case
  start_panel
  pass_if_eventually "a panel on the bus gets it" 1 items_taken
  pass_if_eventually "and tint2 has it no more" 0 embedded_items
  bus_item_case
  bus_menu_case
  end_group "$PANEL_GROUP"
  pass_if_eventually "tint2 has it again when the panel is gone" 1 embedded_items
  start_panel
  pass_if_eventually "and the panel when it is back" "1 0" both_kinds
  quit_instance
  pass_if_eventually "it goes with the program" 0 items_on_bus
  end_group "$PANEL_GROUP"
  end_group "$TINT2_GROUP"
  end_group "$BUS_GROUP"
}

# A panel with nothing but room for items.
start_tint2() {
  printf '%s\n' 'panel_items = S' 'panel_size = 100% 32' 'panel_position = bottom center horizontal' \
    >"$DESKTOP_DIRECTORY/tint2rc"
  start_group tint2 -c "$DESKTOP_DIRECTORY/tint2rc"
  TINT2_GROUP=$STARTED_GROUP
}

start_panel() {
  TAKEN=$(mktemp "$DESKTOP_DIRECTORY/taken.XXXXXX")
  start_group bash -c "exec /usr/bin/python3 '$PANEL' >'$TAKEN'"
  PANEL_GROUP=$STARTED_GROUP
}

items_taken() {
  grep -c '^org\.kde\.StatusNotifierItem-[0-9]*-1$' "$TAKEN"
}

items_on_bus() {
  busctl --user list | grep -c StatusNotifierItem
}

# How many items are embedded. One that waits for a panel is a child of the root, which xwininfo lists by 5 blanks.
embedded_items() {
  xwininfo -root -tree | grep -c '^      .*"tallowin-ui" "Tallowin"'
}

menu_is_open() {
  xwininfo -root -tree | grep -c '"tallowin-menu" "Tallowin"'
}

both_kinds() {
  echo "$(items_taken) $(embedded_items)"
}

# Clicks with button $1 where the item is.
click_item() {
  local x y
  read -r x y < <(xwininfo -root -tree | sed -n 's/^      .*"tallowin-ui" "Tallowin").*+\([0-9]*\)+\([0-9]*\)$/\1 \2/p')
  xdotool mousemove $((x + 8)) $((y + 8)) click "$1"
}

embedded_case() {
  put_in_front 0
  click_item 3
  pass_if_eventually "a right click opens the menu" 1 menu_is_open
  xdotool key Down Down Return
  pass_if_eventually "whose entries are chosen by keyboard" 1 current_desktop
  pass_if_eventually "which closes it" 0 menu_is_open
  click_item 2
  pass_if_eventually "a middle click goes back" 0 current_desktop
  click_item 5
  pass_if_eventually "the wheel steps" 1 current_desktop
}

# item METHOD ARGUMENTS..., bus_menu METHOD ARGUMENTS...
item() {
  gdbus call --session -d "$(tail -n 1 "$TAKEN")" -o /StatusNotifierItem -m "org.kde.StatusNotifierItem.$1" -- "${@:2}"
}

bus_menu() {
  gdbus call --session -d "$(tail -n 1 "$TAKEN")" -o /MenuBar -m "com.canonical.dbusmenu.$1" -- "${@:2}"
}

item_property() {
  busctl --user get-property "$(tail -n 1 "$TAKEN")" /StatusNotifierItem org.kde.StatusNotifierItem "$1"
}

bus_item_case() {
  item Scroll 120 vertical >/dev/null
  pass_if_eventually "its wheel steps up by eighths of a degree" 0 current_desktop
  item SecondaryActivate 0 0 >/dev/null
  pass_if_eventually "its middle button goes back" 1 current_desktop
  pass_if_eventually "its label is the Space's name" 's "R&D"' item_property XAyatanaLabel
  pass_if "it has pictures for every panel" "16 22 24 32 44 48" \
    "$(busctl --user --json=short get-property "$(tail -n 1 "$TAKEN")" /StatusNotifierItem \
      org.kde.StatusNotifierItem IconPixmap | jq -r '[.data[][1]] | join(" ")')"
}

# The id of the entry with label $1.
entry_id() {
  bus_menu GetLayout 0 1 "['label', 'toggle-state']" | grep -oE "\([0-9]+, \{'label': <'$1'>" | tr -dc '0-9\n ' |
    cut -d ' ' -f 1
}

bus_menu_case() {
  local heard=$DESKTOP_DIRECTORY/menu-signals group
  bus_menu AboutToShow 0 >/dev/null
  start_group bash -c "exec gdbus monitor --session -d '$(tail -n 1 "$TAKEN")' -o /MenuBar >'$heard'"
  group=$STARTED_GROUP
  eventually grep -qs 'is owned by' "$heard"
  pass_if "a menu that has not changed is not told again" "(false,)" "$(bus_menu AboutToShow 0)"
  ask rename 3 Calls_x >/dev/null
  pass_if "one that has is" "(true,)" "$(bus_menu AboutToShow 0)"
  pass_if_eventually "once" 1 grep -c LayoutUpdated "$heard"
  end_group "$group"
  bus_menu Event "$(entry_id '3  Calls__x')" clicked '<0>' 0 >/dev/null
  pass_if_eventually "an entry that is clicked is done" 2 current_desktop
}
