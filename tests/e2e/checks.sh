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

# record RESULT DETAIL: a line "label, capability, result, detail" with tabs between, of checks about a capability.
record() {
  [ -z "$RESULTS" ] || [ -z "$CAPABILITY" ] || printf '%s\t%s\t%s\t%s\n' "$LABEL" "$CAPABILITY" "$1" "$2" >>"$RESULTS"
}

# Why the capability is not there, or not whole, or could not be looked at.
lacks() {
  record lacking "$1"
}

is_partial() {
  record partial "$1"
}

skip() {
  SKIPPED=$((SKIPPED + 1))
  echo "skipped $LABEL: $1"
  record skipped "$1"
}

# pass_if NAME EXPECTED SEEN
pass_if() {
  if [ "$2" == "$3" ]; then
    PASSED=$((PASSED + 1))
    echo "ok   $LABEL: $1"
    record passed "$1"
  else
    FAILED=$((FAILED + 1))
    record failed "$1"
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
