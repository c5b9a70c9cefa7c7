# shellcheck shell=bash
# Checks, each of which is one line, and the running instance. To be sourced after desktop.sh, with PROGRAM and LABEL set
# before anything is called.
# shellcheck disable=SC2034 # whoever sources this reads what is set

PASSED=0
FAILED=0
SKIPPED=0

# pass_if NAME EXPECTED SEEN
pass_if() {
  if [ "$2" == "$3" ]; then
    PASSED=$((PASSED + 1))
    echo "ok   $LABEL: $1"
  else
    FAILED=$((FAILED + 1))
    printf 'FAIL %s: %s\n  expected: %s\n  seen:     %s\n' "$LABEL" "$1" "${2//$'\n'/$'\n            '}" \
      "${3//$'\n'/$'\n            '}"
  fi
}

# pass_if_eventually NAME EXPECTED COMMAND...: the command's output becomes what is expected.
pass_if_eventually() {
  local name=$1 expected=$2
  shift 2
  eventually output_is "$expected" "$@"
  pass_if "$name" "$expected" "$("$@")"
}

output_is() {
  local expected=$1
  shift
  [ "$("$@")" == "$expected" ]
}

# The program in front of the running instance. Its exit status goes to the last line.
ask() {
  timeout 20 "$PROGRAM" --home "$DESKTOP_DIRECTORY/tallowin" "$@" 2>&1
  echo "exit $?"
}

instance_runs() {
  ask list >/dev/null
  [ "$(ask list | tail -n 1)" == "exit 0" ]
}

# start_instance [ARGUMENTS...]
start_instance() {
  start_group "$PROGRAM" --home "$DESKTOP_DIRECTORY/tallowin" --platform x11 "$@"
  INSTANCE_GROUP=$STARTED_GROUP
  eventually instance_runs
}

group_is_gone() {
  ! group_lives "$1"
}
