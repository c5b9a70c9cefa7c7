#!/bin/bash
# What is installed, as a Linux desktop sees it: run.sh BUILD-FOLDER
#
# Each case is one line, "ok" or "FAIL" with what was expected and what was seen.
set -u
. "$(dirname "$0")/../e2e/desktop.sh"
. "$(dirname "$0")/../e2e/checks.sh"

# The installed files, judged by the tools that desktops bring for them.

# clean NAME COMMAND...: it succeeds and says nothing.
clean() {
  local name=$1 said status
  shift
  said=$("$@" 2>&1)
  status=$?
  pass_if "$name" "status 0" "status $status${said:+: $said}"
}

# What man(1) has to say about a page, and roff's own warnings.
format_page() {
  LC_ALL=C.UTF-8 MANROFFSEQ='' man --warnings -E UTF-8 -l -Tutf8 -Z "$1" >/dev/null
}

# A page's text, without what it does to show it bold or italic.
page() {
  LC_ALL=C.UTF-8 MANWIDTH=200 man -l "$STAGE/usr/share/man/man$1/tallowin.$1.gz" 2>/dev/null | col -bx
}

file_cases() {
  LABEL=files
  local share=$STAGE/usr/share section shell file
  clean "the desktop entry is valid" desktop-file-validate "$share/applications/$ID.desktop"
  clean "so is the autostart entry" desktop-file-validate "$STAGE/etc/xdg/autostart/$ID.desktop"
  # The name was given before the habit of small letters.
  pass_if "the metainfo is valid" "P: $ID:3: cid-contains-uppercase-letter $ID
✔ Validation was successful: pedantic: 1" \
    "$(LC_ALL=C.UTF-8 appstreamcli validate --no-net --pedantic "$share/metainfo/$ID.metainfo.xml" | grep .)"
  for section in 1 5; do
    clean "tallowin($section) formats without a warning" format_page "$share/man/man$section/tallowin.$section.gz"
  done
  pass_if "tallowin(1) tells of words, URLs and options" "list [--json] [--names] [--urls] [--format TEXT]
tallowin://switch/SPACE
--get KEY" "$(page 1 | grep -oE '^ +(list \[.*|tallowin://switch/.*|--get .*)' | sed 's/^ *//')"
  pass_if "tallowin(5) tells what a setting does" \
    "hudPosition (a text; top) Where the pop-up stands. One of top, center, bottom." \
    "$(page 5 | grep -A1 '^ *hudPosition' | xargs)"
  for shell in bash zsh fish; do
    file=$(find "$share" -path "*/$shell*/*tallowin*" -type f)
    clean "$shell understands its completions" "$shell" -n "$file"
  done
  clean "shellcheck likes those for bash" shellcheck "$share/bash-completion/completions/tallowin"
  unit_cases
}

unit_cases() {
  local units=$PREFIX/lib/systemd/user generated=$INSTALLED/generated
  # It is verified where its program is.
  clean "the unit is valid" env "XDG_RUNTIME_DIR=$INSTALLED" systemd-analyze --user verify --man=no \
    "$units/tallowin.service"
  pass_if "the unit starts with the desktop" "$(realpath "$units/tallowin.service")" \
    "$(realpath "$units/graphical-session.target.wants/tallowin.service")"
  mkdir -p "$generated"
  XDG_CONFIG_DIRS=$STAGE/etc/xdg XDG_CONFIG_HOME=$INSTALLED/none XDG_CURRENT_DESKTOP=X PATH=$PREFIX/bin:$PATH \
    /usr/lib/systemd/user-generators/systemd-xdg-autostart-generator "$generated" "$generated" "$generated" 2>/dev/null
  pass_if "systemd does not start the autostart entry as well" "" "$(find "$generated" -type f)"
}

# What shells complete while an instance runs whose second Space is called "Mail & more".

# Each row: what is typed, and the candidates that there must be among others, as they are.
COMPLETIONS=(
  "tallowin cur|current"
  "tallowin edit Ma|Mail & more"
  "tallowin pin xterm Ma|Mail & more"
  "tallowin --home x edit 2 --na|--name"
  "tallowin profile u|use"
  "tallowin template apply Dev|Developer"
  "tallowin --set hudPos|hudPosition"
  "tallowin --set hudPosition b|bottom"
  "tallowin --set hudEnabled f|false"
  "tallowin --platform sim|simulated"
  "tallowin export /etc/host|/etc/hostname"
  "tallowin tallowin://move-window/Ma|tallowin://move-window/Mail%20%26%20more"
  "tallowin tallowin://rest|tallowin://restore-layout"
)

# Answers with what the shell offers for the command line "$1", one to a line.
offered_by_bash() {
  # shellcheck disable=SC2016 # for the shell that is started to expand
  bash --norc -c '
    . /usr/share/bash-completion/bash_completion
    . "$2/usr/share/bash-completion/completions/tallowin"
    COMP_LINE=$1 COMP_POINT=${#1} COMP_TYPE=9
    # Readline takes a colon for the end of a word.
    read -ra COMP_WORDS <<<"${1//:/ : }"
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _tallowin 2>/dev/null
    for candidate in "${COMPREPLY[@]}"; do
      eval "printf \"%s\n\" $candidate"
    done' - "$1" "$STAGE"
}

offered_by_fish() {
  # shellcheck disable=SC2016 # for fish to expand
  fish --no-config -c 'source $argv[2]/usr/share/fish/vendor_completions.d/tallowin.fish
    complete -C $argv[1] | cut -f 1' "$1" "$STAGE"
}

# Zsh completes only at a terminal, so it is given one, and types; what it lists there is what it offers.
offered_by_zsh() {
  zsh -f "$(dirname "$0")/zsh_offers.zsh" "$STAGE/usr/share/zsh/vendor-completions" "$1"
}

completion_cases() {
  local row shell line expected
  for shell in bash fish zsh; do
    LABEL=$shell
    for row in "${COMPLETIONS[@]}"; do
      line=${row%%|*}
      expected=${row#*|}
      # Bash is to offer what follows a colon; zsh, names of files without their folder.
      [ "$shell" != bash ] || expected=${expected#tallowin:}
      [ "$shell" != zsh ] || expected=${expected#/etc/}
      pass_if "\"$line\" can become \"$expected\"" "$expected" \
        "$("offered_by_$shell" "$line" | grep -xF -- "$expected")"
    done
  done
}

# The installed program on a real desktop, found by its desktop entry and its name on the bus.

installed() {
  timeout 20 tallowin "$@" 2>&1
  echo "exit $?"
}

# Whether somebody owns the program's name on the bus.
is_on_bus() {
  dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner \
    "string:$ID"
}

# The process that owns the program's name on the bus.
process_on_bus() {
  dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus / \
    org.freedesktop.DBus.GetConnectionUnixProcessID "string:$ID" | grep -oE '[0-9]+$'
}

loaded_modules() {
  awk '/tallowin-.*\.so/ { print $NF }' "/proc/$(pgrep -g "$INSTANCE_GROUP" -x tallowin-main | head -n 1)/maps" |
    xargs -rn 1 basename | sort -u | paste -sd ' '
}

desktop_cases() {
  LABEL=installed
  export PATH=$PREFIX/bin:$PATH
  pass_if "it runs in a stage" "tallowin $(sed -n 's/^CMAKE_PROJECT_VERSION:.*=//p' "$BUILD/CMakeCache.txt")" \
    "$("$STAGE/usr/bin/tallowin" --version)"
  if ! start_server || ! start_window_manager openbox; then
    pass_if "openbox starts" yes "no; its log ends: $(tail -n 3 "$DESKTOP_DIRECTORY/log")"
    return
  fi
  export XDG_DATA_DIRS=$PREFIX/share:/usr/share
  update-desktop-database "$PREFIX/share/applications"
  start_bus
  start_group tallowin
  INSTANCE_GROUP=$STARTED_GROUP
  eventually eval 'tallowin list >/dev/null 2>&1'
  wmctrl -s 0
  clean "xdg-open takes the URL" env XDG_CURRENT_DESKTOP=X-Generic xdg-open tallowin://switch/2
  pass_if_eventually "xdg-open tallowin://switch/2 shows desktop 2" 1 current_desktop
  pass_if "a Space is named" "exit 0" "$(installed 'tallowin://rename/2?name=Mail%20%26%20more')"
  completion_cases
  LABEL=installed
  installed tallowin://switch/99 >/dev/null
  pass_if_eventually "its message goes through the module beside it" tallowin-dbus.so loaded_modules
  installed --capture >/dev/null
  pass_if "so do pictures" 1 "$(find "$HOME" -name '*.jp*g' | wc -l)"
  pass_if_eventually "it has its name on the bus" '   boolean true' is_on_bus
  installed quit >/dev/null
  eventually group_is_gone "$INSTANCE_GROUP"
  pass_if "a command has it started" "exit 0" "$(installed tallowin://switch/1)"
  eventually process_on_bus >/dev/null
  pass_if "by the bus" 1 "$(tr '\0' '\n' <"/proc/$(process_on_bus)/environ" | grep -c ^DBUS_STARTER_BUS_TYPE=)"
  pass_if_eventually "and performed" 0 current_desktop
  installed quit >/dev/null
  end_group "$BUS_GROUP"
  stop_desktop
}

ID=com.quorvex.Tallowin

if [ $# -ne 1 ]; then
  echo "usage: run.sh BUILD-FOLDER" >&2
  exit 64
fi
BUILD=$(realpath "$1")
INSTALLED=$(mktemp -d "${TMPDIR:-/tmp}/tallowin-installed.XXXXXX")
trap 'stop_desktop; rm -rf "$INSTALLED"' EXIT
trap 'exit 130' INT TERM

# A whole system's tree, and a prefix of its own.
STAGE=$INSTALLED/stage
PREFIX=$INSTALLED/prefix
DESTDIR=$STAGE cmake --install "$BUILD" --prefix /usr >"$INSTALLED/log" || cat "$INSTALLED/log"
cmake --install "$BUILD" --prefix "$PREFIX" >"$INSTALLED/log" || cat "$INSTALLED/log"

file_cases
desktop_cases

echo "$PASSED passed, $FAILED failed"
[ $FAILED -eq 0 ]
