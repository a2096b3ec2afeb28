#!/bin/sh
# A class of 1000 line followers checked against one lesson: each program runs 20 simulated
# seconds on the line track, each a little different (its speed and how hard it veers). Prints the
# summary line of `kestrone-host check`, its wall time and the CPU time it took.
#
#   bench/check_class.sh [HOST] [JOBS]     HOST: build/release/bin/kestrone-host, JOBS: 2
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
host=${1:-$top/build/release/bin/kestrone-host}
jobs=${2:-2}
class=$(mktemp -d)
trap 'rm -rf "$class"' EXIT

python3 - "$top/examples/line_track.world" "$class" <<'PY'
import json, sys
arena = open(sys.argv[1]).read()
folder = sys.argv[2]
lesson = {"lesson": 1, "title": "A class of line followers", "arena": arena,
          "checks": ["run program 20000", "expect world in finish == True"]}
open(folder + "/class.klesson", "w").write(json.dumps(lesson))
for i in range(1000):
    speed, veer = 100 + i % 120, 40 + i % 50
    open(f"{folder}/p{i:04}.kflow", "w").write(f"""int left = 0
int right = 0
forever
    left = ReadLine('L')
    right = ReadLine('R')
    if left && right
        DriveStop()
    else if left
        SetMotors(0, {veer}, 0, {speed})
    else if right
        SetMotors(0, {speed}, 0, {veer})
    else
        DriveForwards({speed})
    end
    delay 50
end
""")
PY

cd "$class"
# Wall time, and the CPU time the workers took: on a machine shared with other work the wall time
# is the CPU time spread over the cores this run was given.
python3 - "$host" "$jobs" <<'PY'
import glob, os, resource, subprocess, sys, time
host, jobs = sys.argv[1], sys.argv[2]
programs = sorted(glob.glob("p*.kflow"))
load = os.getloadavg()[0]
start = time.monotonic()
out = subprocess.run([host, "check", "class.klesson", *programs, "--jobs", jobs],
                     capture_output=True, text=True).stdout
wall = time.monotonic() - start
used = resource.getrusage(resource.RUSAGE_CHILDREN)
print(out.splitlines()[-1])
print(f"{len(programs)} programs of 20 simulated seconds on {jobs} worker{'' if jobs == '1' else 's'}: {wall:.2f} s wall, "
      f"{used.ru_utime + used.ru_stime:.2f} s CPU (load average before: {load:.1f})")
PY
