#!/usr/bin/env bash
# Sets up, builds and installs Rovanta and kestrone-host, then runs a short headless demonstration.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh

# A build tree of its own, so that the test suite's trees keep their settings.
cmake -S . -B build/main -G Ninja -DCMAKE_BUILD_TYPE=Release -DKESTRONE_TESTS=OFF -DKESTRONE_BENCH=OFF >/dev/null
cmake --build build/main
prefix="$PWD/build/install"
cmake --install build/main --prefix "$prefix" >/dev/null
echo "Installed into $prefix"
host="$prefix/bin/kestrone-host"

echo
echo "=== kestrone-host info: the macros and pins as the host sees them"
"$host" info

echo
echo "=== kestrone-host console: a short session (commands and answers)"
# Show each command with its answer lines.
"$host" console < scripts/demo.console | awk '
  BEGIN { while ((getline l < "scripts/demo.console") > 0) if (l !~ /^[ \t]*(#|$)/) cmds[n++] = l; i = -1 }
  { if (i < 0) { print "(start-up) " $0; if ($0 ~ /^(ok|error|fail)/) i = 0; next }
    if (!shown[i]) { print "> " cmds[i]; shown[i] = 1 }
    print "  " $0
    if ($0 ~ /^(ok|error|fail)/) i++ }'

echo
demo=examples/demo-square.console
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  echo "=== kestrone-host window: the panel, playing $demo (close the window to finish)"
  "$host" window --play "$demo"
else
  png="$PWD/build/demo-square.png"
  echo "=== no display: $demo replayed headless by the console"
  { cat "$demo"; printf 'snapshot "%s"\n' "$png"; } | "$host" console | tail -n 1
  echo "The panel as the demonstration left it: $png"
fi
