#!/usr/bin/env bash
# Runs every fuzz target at depth: RUNS inputs each (default 1000000), with its seeds and its
# dictionary, new inputs kept in build/fuzz/corpus-NAME. Not part of the test run (scripts/test.sh
# runs each seed corpus once). Prints one line per target: inputs run, seconds, coverage reached.
#   scripts/fuzz.sh [RUNS] [TARGET...]
# FUZZ_SECONDS=N stops each target after N seconds if it has not reached RUNS by then.
# The target `chip` runs CHIP_PROGRAMS random programs (default 5000) on the console, a model and
# the chip instead (scripts/fuzz-chip.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
runs=${1:-1000000}
shift || true
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc)" >/dev/null
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for f in build/fuzz/bin/fuzz_*; do targets+=("$(basename "$f" | sed 's/^fuzz_//')"); done
fi
mkdir -p build/fuzz/artifacts
for name in "${targets[@]}"; do
  if [ "$name" = chip ]; then scripts/fuzz-chip.sh "${CHIP_PROGRAMS:-5000}"; continue; fi
  corpus="build/fuzz/corpus-fuzz_$name"
  mkdir -p "$corpus"
  dict=()
  [ -f "fuzz/dict/$name.dict" ] && dict=(-dict="fuzz/dict/$name.dict")
  log="build/fuzz/fuzz_$name.deep.log"
  start=$(date +%s)
  if ! "build/fuzz/bin/fuzz_$name" -runs="$runs" -max_len=4096 -timeout=10 -rss_limit_mb=2048 \
      -max_total_time="${FUZZ_SECONDS:-0}" -print_final_stats=1 "${dict[@]}" -artifact_prefix=build/fuzz/artifacts/"$name"- \
      "$corpus" "fuzz/corpus/$name" >/dev/null 2>"$log"; then
    echo "fuzz_$name: FAILED (see $log and build/fuzz/artifacts/)"
    tail -40 "$log"
    exit 1
  fi
  secs=$(( $(date +%s) - start ))
  done_runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  cov=$(grep -o 'cov: [0-9]*' "$log" | tail -1)
  echo "fuzz_$name: $done_runs inputs in ${secs}s, $cov, no crash"
done
