#!/usr/bin/env bash
# Sets up and runs the whole test suite: a release build, the same under AddressSanitizer and
# UndefinedBehaviorSanitizer, and a short run of each fuzzer when clang is present. The code
# file's C is compiled for the PIC and run in gpsim in both builds (label pic), and the real
# window is opened under Xvfb in both (label xvfb): neither is ever skipped here.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
scripts/setup-pic.sh   # the PIC compiler the code file's tests build with: minutes once, then seconds

jobs=$(nproc)
echo "=== release build and tests"
cmake --preset release -DKESTRONE_TESTS=ON -DKESTRONE_BENCH=ON -DKESTRONE_HOST=ON -DKESTRONE_REQUIRE_PIC=ON \
  -DKESTRONE_REQUIRE_XVFB=ON >/dev/null
cmake --build --preset release -j "$jobs"
ctest --preset release -j "$jobs"

echo "=== asan build and tests"
cmake --preset asan -DKESTRONE_TESTS=ON -DKESTRONE_HOST=ON -DKESTRONE_REQUIRE_PIC=ON \
  -DKESTRONE_REQUIRE_XVFB=ON >/dev/null
cmake --build --preset asan -j "$jobs"
ctest --preset asan -j "$jobs"

if command -v clang++ >/dev/null; then
  echo "=== fuzzers (each seed corpus once; scripts/fuzz.sh runs them at depth)"
  cmake --preset fuzz >/dev/null
  cmake --build --preset fuzz -j "$jobs"
  for f in build/fuzz/bin/fuzz_*; do
    name=$(basename "$f")
    "$f" -runs=0 "fuzz/corpus/${name#fuzz_}" >/dev/null 2>"build/fuzz/$name.log" \
      || { tail -30 "build/fuzz/$name.log"; exit 1; }
    echo "$name: $(ls "fuzz/corpus/${name#fuzz_}" | wc -l) seeds, no crash"
  done
fi
