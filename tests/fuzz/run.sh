#!/usr/bin/env bash
# run.sh BUILD-DIRECTORY SECONDS: every fuzzer for so long, two at a time, beginning with the corpus in the tree. Prints
# a line for each; what one finds is made as small as possible and kept in the folder "findings" of the build directory.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$(realpath "$1") seconds=$2
findings=$build/findings
mkdir -p "$findings"

# statistic NAME LOG: a figure that libFuzzer gives at its end.
statistic() { sed -n "s/^stat::$1: *//p" "$2"; }

# run_fuzzer PROGRAM: fails when it finds something.
run_fuzzer() {
  local name log status=0 outcome="nothing found" sources found small
  name=$(basename "$1")
  log=$findings/$name.log
  sources=("$build/corpus/$name" "$here/corpus/$name")
  [ "$name" != fuzz_scenario ] || sources+=("$here/../../examples/scenarios")
  mkdir -p "${sources[0]}"
  rm -f "$findings/$name-"*
  "$1" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="$findings/$name-" "${sources[@]}" >"$log" 2>&1 || { status=$?; outcome=FOUND; }
  printf '%-20s %9s executions, %s edges of the code, %s\n' "$name" "$(statistic number_of_executed_units "$log")" \
    "$(sed -n 's/.*cov: \([0-9]*\).*/\1/p' "$log" | tail -n 1)" "$outcome"
  [ "$status" != 0 ] || return 0
  grep -E '^broken: |ERROR: |runtime error: |SUMMARY: ' "$log" | sed 's/^/  /' || true
  found=$(find "$findings" -name "$name-crash-*" | head -n 1)
  if [ -n "$found" ]; then
    small=$findings/$name-smallest
    "$1" -minimize_crash=1 -max_total_time=20 -exact_artifact_path="$small" "$found" >/dev/null 2>&1 || true
    [ -s "$small" ] || cp "$found" "$small"
    echo "  $small"
  fi
  return 1
}

rm -f "$findings/failed"
for fuzzer in "$build"/tests/fuzz/fuzz_*; do
  if [ ! -x "$fuzzer" ] || [ -d "$fuzzer" ]; then continue; fi
  [ "$(jobs -r | wc -l)" -lt "${FUZZERS_AT_ONCE:-$(nproc)}" ] || wait -n || true
  { run_fuzzer "$fuzzer" || touch "$findings/failed"; } &
done
wait
[ ! -e "$findings/failed" ]
