# shellcheck shell=bash
# Checks, each of which is one line, and the running instance. To be sourced after desktop.sh, with PROGRAM and LABEL set
# before anything is called.
# shellcheck disable=SC2034 # whoever sources this reads what is set

PASSED=0
FAILED=0
SKIPPED=0
RESULTS=     # a file to which each result goes too, if any
CAPABILITY=  # what the checks from now on are about, in a user's words

capability() {
  CAPABILITY=$1
}

# record RESULT DETAIL: a line "label, capability, result, detail" with tabs between, of checks about a capability. The
# result is passed or failed; or lacking, partial or skipped, and the detail says why.
record() {
  [ -z "$RESULTS" ] || [ -z "$CAPABILITY" ] || printf '%s\t%s\t%s\t%s\n' "$LABEL" "$CAPABILITY" "$1" "$2" >>"$RESULTS"
}

# It could not be looked at.
skip() {
  SKIPPED=$((SKIPPED + 1))
  echo "skipped $LABEL: $1"
  record skipped "$1"
}

# pass_if NAME EXPECTED SEEN
pass_if() {
  if [ "$2" == "$3" ]; then
    PASSED=$((PASSED + 1))
    [ ! -t 1 ] || echo "ok   $LABEL: $1" # a log is short enough to be read whole with what failed alone
    record passed "$1"
  else
    FAILED=$((FAILED + 1))
    record failed "$1"
    printf 'FAIL %s: %s\n  expected: %s\n  seen:     %s\n' "$LABEL" "$1" "${2//$'\n'/$'\n            '}" \
      "${3//$'\n'/$'\n            '}"
  fi
}

# pass_if_eventually NAME EXPECTED COMMAND...: the command's output becomes what is expected. A second look might see
# what comes after it.
pass_if_eventually() {
  eventually output_is "${@:2}"
  pass_if "$1" "$2" "$LAST_OUTPUT"
}

# output_is EXPECTED COMMAND...
output_is() {
  LAST_OUTPUT=$("${@:2}")
  [ "$LAST_OUTPUT" == "$1" ]
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

quit_instance() {
  pass_if "it quits when it is told" "exit 0" "$(ask quit)"
  eventually group_is_gone "$INSTANCE_GROUP"
  pass_if "and has gone" gone "$(group_lives "$INSTANCE_GROUP" || echo gone)"
  end_group "$INSTANCE_GROUP"
}

group_is_gone() {
  ! group_lives "$1"
}
