#!/bin/bash
# How the times of what grows with the user's Spaces, windows and records grow: at 10, 100, 1,000 and 10,000 of them,
# and the exponent, which is 1 for growth in proportion. Prints table rows (rows.sh).
#   bench_growth.sh BUILD-DIRECTORY [RUNS]
set -uo pipefail
. "$(dirname "$0")/rows.sh"
RUNS=${2:-20}

# "SIZE RUN MILLISECONDS" of each measurement of function $2 in Google Benchmark program $1.
measurements() {
  "$BUILD/bench/$1" --benchmark_filter="^$2/" --benchmark_repetitions="$RUNS" --benchmark_min_time=0.02 \
    --benchmark_format=json 2>/dev/null |
    jq -r '.benchmarks[] | select(.run_type == "iteration") |
      "\(.name | split("/")[1]) \(.repetition_index) \(.real_time / 1e6)"'
}

# After the times themselves, for each run: the slope of the straight line through the logarithms of size and time, and
# that between the two largest sizes, where fixed costs hide least.
with_exponents() {
  awk '{
    if (!($1 in subject)) subject[$1] = ++sizes
    print subject[$1], $3
    x = log($1); y = log($3)
    last[$2] = (y - last_y[$2]) / (x - last_x[$2]); last_x[$2] = x; last_y[$2] = y
    n[$2]++; sum_x[$2] += x; sum_y[$2] += y; sum_xx[$2] += x * x; sum_xy[$2] += x * y
  }
  END {
    for (run in n) {
      print sizes + 1, (n[run] * sum_xy[run] - sum_x[run] * sum_y[run]) / (n[run] * sum_xx[run] - sum_x[run] ^ 2)
      print sizes + 2, last[run]
    }
  }'
}

# growth FIGURE PROGRAM FUNCTION: one row.
growth() {
  echo "  growth: $1" >&2
  measurements "$2" "$3" | with_exponents | sort -k 1,1n -k 2,2g |
    awk -v figure="$1, at 10 / 100 / 1,000 / 10,000 (ms)" -v sizes="10 / 100 / 1000 / 10000" -f "$BENCH/rows.awk" ||
    { echo "bench_growth.sh: $2 does not measure $3" >&2; exit 1; }
}

growth "snapshot of Spaces" bench_snapshot readDisplays
growth "contents of the Spaces, windows" bench_contents readContents
growth "store of records loaded" bench_store load
growth "store of records saved" bench_store saveInAll
growth "state exported, Spaces" bench_store exportState
growth "times loaded, summed and exported, days" bench_time_record loadSumAndExport
