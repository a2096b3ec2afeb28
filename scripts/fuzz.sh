#!/usr/bin/env bash
# Runs every fuzz target at depth: RUNS inputs each (default 1000000), with its seeds and its
# dictionary, new inputs kept in build/fuzz/corpus-fuzz_NAME, as many targets at once as there
# are cores. Not part of the test run (scripts/test.sh runs each seed corpus once). Prints a
# table: inputs run, seconds, inputs a second and coverage reached per target, and the wall time.
#   scripts/fuzz.sh [RUNS] [TARGET...]
# FUZZ_SECONDS=N stops each target after N seconds if it has not reached RUNS by then;
# FUZZ_JOBS=N runs N targets at once. The target `chip` (named alone: scripts/fuzz.sh 0 chip) runs
# CHIP_PROGRAMS random programs (default 5000) on the console, a model and the chip instead
# (scripts/fuzz-chip.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
runs=${1:-1000000}
shift || true
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc)" >/dev/null

# The longest input each target takes, and where entropic scheduling goes: its bookkeeping took
# half the time of the targets whose inputs drive a robot, so those take plain scheduling.
declare -A options=(
  [console_commands]="-max_len=1024 -entropic=0"
  [code_blocks]="-max_len=2048 -entropic=0"
  [program]="-max_len=4096 -entropic=0"
  [property_page]="-max_len=1024 -entropic=0"
  [panel_events]="-max_len=1024 -entropic=0"
  [sim_macro_call]="-max_len=1024 -entropic=0"
  [console_line]="-max_len=4096"
  [project_file]="-max_len=4096"
  [profile_reader]="-max_len=4096"
)
# Slowest first, so that the last to finish are short.
order=(console_commands code_blocks program property_page panel_events sim_macro_call console_line
       project_file profile_reader)
targets=("$@")
if [ "${targets[*]:-}" = chip ]; then
  exec scripts/fuzz-chip.sh "${CHIP_PROGRAMS:-5000}"
fi
if [ ${#targets[@]} -eq 0 ]; then
  for name in "${order[@]}"; do
    [ -x "build/fuzz/bin/fuzz_$name" ] && targets+=("$name")
  done
fi

# One target; its line of the table goes to build/fuzz/fuzz_NAME.row.
fuzz_one() {
  local name=$1 corpus="build/fuzz/corpus-fuzz_$1" log="build/fuzz/fuzz_$1.deep.log"
  local dict=() start secs done_runs cov
  mkdir -p "$corpus"
  [ -f "fuzz/dict/$name.dict" ] && dict=(-dict="fuzz/dict/$name.dict")
  start=$(date +%s)
  # shellcheck disable=SC2086
  if ! "build/fuzz/bin/fuzz_$name" -runs="$runs" ${options[$name]:--max_len=4096} -timeout=20 \
      -rss_limit_mb=2048 -max_total_time="${FUZZ_SECONDS:-0}" -print_final_stats=1 "${dict[@]}" \
      -artifact_prefix=build/fuzz/artifacts/"$name"- "$corpus" "fuzz/corpus/$name" \
      >/dev/null 2>"$log"; then
    echo "| fuzz_$name | FAILED: see $log and build/fuzz/artifacts/ | | | |" >"build/fuzz/fuzz_$name.row"
    return 1
  fi
  secs=$(( $(date +%s) - start ))
  done_runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  cov=$(grep -o 'cov: [0-9]*' "$log" | tail -1 | cut -d' ' -f2)
  echo "| fuzz_$name | $done_runs | $secs | $(( done_runs / (secs > 0 ? secs : 1) )) | $cov |" \
    >"build/fuzz/fuzz_$name.row"
}

mkdir -p build/fuzz/artifacts
rm -f build/fuzz/fuzz_*.row
jobs_max=${FUZZ_JOBS:-$(nproc)}
begin=$(date +%s)
for name in "${targets[@]}"; do
  while [ "$(jobs -rp | wc -l)" -ge "$jobs_max" ]; do wait -n || true; done
  fuzz_one "$name" &
done
wait || true
echo "| Target | Inputs | Seconds | Inputs/s | Coverage |"
echo "|---|---|---|---|---|"
failed=0
for name in "${targets[@]}"; do
  cat "build/fuzz/fuzz_$name.row"
  grep -q FAILED "build/fuzz/fuzz_$name.row" && failed=1
done
echo "Wall time: $(( $(date +%s) - begin )) s for ${#targets[@]} targets, $jobs_max at once."
if [ $failed -ne 0 ]; then
  for log in build/fuzz/fuzz_*.deep.log; do
    grep -q "ERROR\|SUMMARY" "$log" && { echo "== $log"; tail -40 "$log"; }
  done
  exit 1
fi
