#!/usr/bin/env bash
# run.sh BUILD-DIRECTORY SECONDS: every fuzzer for so long, beginning with the corpus in the tree. What a fuzzer finds is
# kept in the build directory and named.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$1 seconds=$2
for fuzzer in "$build"/tests/fuzz/fuzz_*; do
  [ -x "$fuzzer" ] && [ -f "$fuzzer" ] || continue
  name=$(basename "$fuzzer")
  mkdir -p "$build/corpus/$name" "$build/findings"
  sources=("$here/corpus/$name")
  [ "$name" != fuzz_scenario ] || sources=("$here/../../examples/scenarios")
  echo "$name for $seconds s"
  "$fuzzer" -max_total_time="$seconds" -print_final_stats=1 -artifact_prefix="$build/findings/$name-" \
    "$build/corpus/$name" "${sources[@]}" 2>&1 | grep -E '^stat::number_of_executed|ERROR|SUMMARY|Test unit written|cov:.*DONE' || true
  ! compgen -G "$build/findings/$name-*" >/dev/null || { echo "$name found something"; exit 1; }
done
