#!/usr/bin/env bash
# Builds the release benchmarks, runs the ratios and writes their table into bench/README.md
# (between the markers there). Extra arguments go to the benchmark, e.g. --benchmark_min_time=0.5.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset release -DKESTRONE_BENCH=ON >/dev/null
cmake --build --preset release -j "$(nproc)" --target bench_ratios >/dev/null
table=$(mktemp)
trap 'rm -f "$table"' EXIT
build/release/bin/bench_ratios --ratios_markdown="$table" "$@"
python3 - "$table" <<'PY'
import sys, datetime, platform
table = open(sys.argv[1]).read()
readme = "bench/README.md"
text = open(readme).read()
start, end = "<!-- ratios:start -->", "<!-- ratios:end -->"
head, rest = text.split(start, 1)
_, tail = rest.split(end, 1)
stamp = f"Measured {datetime.date.today()} on {platform.machine()}, {platform.processor() or 'cpu'}.\n\n"
open(readme, "w").write(head + start + "\n" + stamp + table + end + tail)
PY
echo "bench/README.md updated"
