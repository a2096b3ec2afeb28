#!/usr/bin/env bash
# Random programs at depth: N of them (default 5000) run by the console, by a model of 16-bit C and
# on the chip in gpsim, on a fresh seed (KFLOW_SEED=S replays a run). A disagreement is shrunk and
# printed. Needs the release build configured and the PIC toolchain (scripts/setup-pic.sh).
#   scripts/fuzz-chip.sh [N]
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --build --preset release --target kestrone-host KT5_Rovanta component_code_file >/dev/null
exec nice -n 10 python3 tests/pic/pic_differential.py --count "${1:-5000}" \
  --host build/release/bin/kestrone-host --module build/release/lib/kestrone/components/KT5_Rovanta.so \
  --gpsim "$(command -v gpsim)" --pic-prefix "${KESTRONE_PIC_PREFIX:-/opt/kestrone-pic}"
