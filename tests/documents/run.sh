#!/bin/bash
# Does what the pages say: run.sh BUILD-FOLDER [PAGE...]
#
# Each page is read from top to bottom, in one shell, on a desktop of its own: openbox with four desktops, a message bus,
# and the running program. This is how pages are written, so that people and this test can read them:
# - In a ```console block, "$ " begins a command, and "> " goes on with it. Below stands what it prints, where "..." or
#   "…" is for anything. Where nothing stands below, it prints nothing and succeeds.
# - A ```sh block is part of a script, which succeeds.
# - A block with a name behind its language, as in ```json work.json, is a file for the commands after it.
# - A row of a table that begins with a command gives one that succeeds.
# - In other blocks the command after "exec" is one of a bar, and prints something.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/../e2e/desktop.sh"
. "$here/../e2e/checks.sh"
. "$here/../e2e/http_cases.sh"
trap 'end_group "$BUS_GROUP"; stop_desktop' EXIT
trap 'exit 130' INT TERM

# What is not run, and why. The files and options that it names must be there all the same.
declare -A EXCEPTIONS=(
  ['./test*']="it builds everything, and runs this test"
  ['./run']="it runs until it is told to end; with arguments it is run"
  ['ninja *']="it builds into the folder of releases; ./test does that, and tests/packaging what is made of it"
  ['sudo *']="it changes the machine; tests/packaging/clean_system.sh installs the package on another one"
  ['systemctl --user *']="it needs a user's systemd, and changes it"
  ['tallowin --scenario *']="it runs until it is told to end"
)
declare -A USED=()

is_exception() {
  local pattern word
  for pattern in "${!EXCEPTIONS[@]}"; do
    # shellcheck disable=SC2053 # it is a pattern
    [[ $1 == $pattern ]] || continue
    USED[$pattern]=1
    for word in $1; do
      case $word in
        *build/*) ;;
        ./* | */*.*) pass_if "$1: $word is there" yes "$([ -e "$ROOT/$word" ] && echo yes)" ;;
        --*) pass_if "$1: $word is there" yes "$(grep -qF -e "$word" <<<"$OPTIONS" && echo yes)" ;;
      esac
    done
    return
  done
  return 1
}

# A folder like the tree, with the program as it is called and as it is built, and "./run" without the building.
prepare_folder() {
  local bin=$DESKTOP_DIRECTORY/bin work=$DESKTOP_DIRECTORY/work
  mkdir -p "$bin" "$work/tests" "$work/build/release"
  HTTP_PORT=$(unused_port)
  printf '#!/bin/sh\n[ $# -gt 0 ] || set -- --port %s\nexec "%s" "$@"\n' "$HTTP_PORT" "$BUILD/tallowin" >"$bin/tallowin"
  printf '#!/bin/sh\nexec tallowin "$@"\n' >"$work/run"
  chmod +x "$bin/tallowin" "$work/run"
  ln -s "$bin/tallowin" "$work/build/release"
  cp -r "$ROOT/examples" "$work"
  cp -r "$ROOT/tests/scenarios" "$work/tests"
  PATH=$bin:$OLD_PATH
  cd "$work" || exit
}

# said_by COMMAND EXPECTED: whether it says that. Sets SAID and STATUS, with the command run in this shell.
said_by() {
  local pattern
  eval "$1" >"$DESKTOP_DIRECTORY/said" 2>&1
  STATUS=$?
  SAID=$(cat "$DESKTOP_DIRECTORY/said")
  pattern=$(sed 's/[][*?\\()|!+@]/\\&/g; s/\.\.\./*/g; s/…/*/g' <<<"$2")
  # shellcheck disable=SC2053 # it is a pattern
  [[ $SAID == $pattern ]]
}

# check COMMAND EXPECTED: what only reads is read until it is as expected, since desktops take their time.
check() {
  local try=
  ! is_exception "$1" || return 0
  case $1 in
    *'&')
      eval "$1" >>"$DESKTOP_DIRECTORY/log" 2>&1
      eventually eval 'tallowin list >/dev/null 2>&1'
      [[ ! $1 =~ '>'([^ ]+) ]] || eventually test -s "${BASH_REMATCH[1]}"
      return
      ;;
    cat* | tallowin\ list* | tallowin\ current* | tallowin\ time* | tallowin\ *windows\ --all | tallowin\ saved-spaces* | curl*/spaces*) try=eventually ;;
  esac
  ! $try said_by "$1" "$2" || SAID=$2
  pass_if "${1%%$'\n'*}" "$2" "$SAID"
  [ -n "$2" ] || pass_if "${1%%$'\n'*} succeeds" 0 "$STATUS"
}

check_status() {
  ! is_exception "$1" || return 0
  said_by "$1" ...
  pass_if "${1%%$'\n'*} succeeds" "0 $SAID" "$STATUS $SAID"
}

# What a bar runs, for as long as it takes to print something.
check_bar() {
  rm -f bar
  start_group bash -c "$1 >bar"
  pass_if_eventually "a bar gets lines of: $1" yes eval 'test -s bar && echo yes'
  end_group "$STARTED_GROUP"
}

# Reads one block, whose fence says "$1".
read_block() {
  local line text='' command='' expected=''
  while IFS= read -r line <&3 && [ "$line" != '```' ]; do
    text+=${text:+$'\n'}$line
    case $1:$line in
      console:'$ '*)
        [ -z "$command" ] || check "$command" "$expected"
        command=${line#'$ '} expected=
        ;;
      console:'> '*) command+=$'\n'${line#'> '} ;;
      console:*) expected+=${expected:+$'\n'}$line ;;
      *) [[ ! $line =~ ^exec\ =\ (.*) && ! $line =~ \"exec\":\ \"(.*)\" ]] || check_bar "${BASH_REMATCH[1]}" ;;
    esac
  done
  case $1 in
    console) check "$command" "$expected" ;;
    sh) check_status "$text" ;;
    *' '*) printf '%s\n' "$text" >"${1#* }" ;;
  esac
}

# The placeholders of a table of usage stand for these.
example_of() {
  sed 's/\bFILE\b/examples\/scenarios\/one-display.json/; s/\bOUT\b/out/; s/\bN\b/2/; s/\[classic\]/classic/' <<<"$1"
}

read_page() {
  local line
  while IFS= read -r line <&3; do
    case $line in
      '```'*) read_block "${line#'```'}" ;;
      '| `tallowin '*'&` '*) check 'tallowin &' '' ;;
      '| `tallowin '* | '| `tw '* | '| `./'*) line=${line#'| `'} && check_status "$(example_of "${line%%\`*}")" ;;
    esac
  done
}

do_page() {
  local link
  LABEL=$1
  while read -r link; do
    pass_if "the link to $link leads somewhere" yes "$([ -e "$ROOT/$(dirname "$1")/$link" ] && echo yes)"
  done < <(grep -oE '\]\([^)#:]+' "$ROOT/$1" | cut -c 3-)
  # shellcheck disable=SC2016 # these are the pages' own quotes
  grep -qE '^(```(console|sh|ini)|\| `(tallowin|tw|\./))' "$ROOT/$1" || return
  if ! start_server || ! start_window_manager openbox || ! start_bus; then
    pass_if "the desktop starts" yes no
    return
  fi
  wmctrl -r TRIAL -T notes
  prepare_folder
  grep -qF 'tallowin &' "$ROOT/$1" || check 'tallowin &' ''
  # The bus knows the program a moment after it answers its first callers.
  ! grep -qF busctl "$ROOT/$1" || eventually eval 'busctl --user status com.quorvex.Tallowin >/dev/null 2>&1'
  read_page 3< <(sed "s/57301/$HTTP_PORT/g" "$ROOT/$1")
  tallowin quit >/dev/null 2>&1
  cd "$ROOT" || exit
  end_group "$BUS_GROUP"
  stop_desktop
}

ROOT=$(realpath "$here/../..")
BUILD=$(realpath "$1")
shift
PAGES=("$@")
[ $# -gt 0 ] || mapfile -t PAGES < <(cd "$ROOT" && printf '%s\n' *.md docs/*.md)
OLD_PATH=$PATH
OPTIONS=$(cat "$ROOT/test"; "$BUILD/tallowin" --help; cmake --help; systemctl --help)
for page in "${PAGES[@]}"; do
  do_page "$page"
done
if [ $# -eq 0 ]; then
  LABEL=docs/commands.md
  while read -r name; do
    pass_if "it tells of $name" yes "$(grep -qE "[ /\`]$name\b" "$ROOT/docs/commands.md" && echo yes)"
  done < <("$BUILD/tallowin" --help | grep -oE '^  (tallowin [a-z-]+|--[a-z-]+)' | sed 's/tallowin //'
    sed 's/\\-/-/g' "$BUILD/packaging/manual/tallowin.1" | grep -oE 'tallowin://[a-z0-9-]+' | sed 's#.*/##' | sort -u)
  LABEL=documents
  pass_if "docs/settings.md is what the build makes of the table: cp build/release/packaging/manual/settings.md docs" "" \
    "$(diff "$ROOT/docs/settings.md" "$BUILD/packaging/manual/settings.md" 2>&1)"
  pass_if "every exception is needed" "$(printf '%s\n' "${!EXCEPTIONS[@]}" | sort)" "$(printf '%s\n' "${!USED[@]}" | sort)"
fi
echo "$PASSED passed, $FAILED failed"
[ $FAILED -eq 0 ]
