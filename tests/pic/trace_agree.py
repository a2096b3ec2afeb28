#!/usr/bin/env python3
"""The panel's log and the chip's trace agree, pin by pin.

  trace_agree.py --host HOST --module MODULE --pic-prefix PREFIX --gpsim GPSIM [--seed N]

A random program that drives, spins and lights LEDs (no tone: a tone holds the chip but takes no
time on the console's clock) is run in the console under `log start panel.vcd` and traced on the
chip by `kestrone-host code --hex --trace chip.vcd`. Both dumps declare the same pins in the same
module, and in the middle of every stretch where the panel holds still (the chip's delays run a
little slow, so not at its edges) PORTD, RC0, RC5 and both duties read the same.
"""

import argparse
import os
import random
import subprocess
import sys
import tempfile

COMPARED = ["PORTD", "RC0", "RC5", "duty_left", "duty_right"]


def program(rng):
    """Statements between delays of 100 ms or more; the milliseconds the delays take."""
    def pair():  # a signed speed as its high and low bytes
        v = rng.randrange(-255, 256)
        return "%d, %d" % ((v >> 8) & 255, v & 255)
    calls = [lambda: "SetMotors(%s, %s)" % (pair(), pair()),
             lambda: "SpinLeft(%d)" % rng.randrange(256), lambda: "SpinRight(%d)" % rng.randrange(256),
             lambda: "DriveBackwards(%d)" % rng.randrange(256), lambda: "DriveStop()",
             lambda: "WriteLeds(%d)" % rng.randrange(256), lambda: "LedOn(%d)" % rng.randrange(8),
             lambda: "LedOff(%d)" % rng.randrange(8)]
    lines, total = [], 0
    for _ in range(rng.randrange(4, 9)):
        lines += [rng.choice(calls)() for _ in range(rng.randrange(1, 3))]
        ms = rng.randrange(100, 400)
        lines.append("delay %d" % ms)
        total += ms
    return "\n".join(lines) + "\n", total


def read_vcd(path):
    """({name: [(time_us, value)]}, the module, the names in order); every value from time 0."""
    words = open(path).read().split()
    ids, changes, names, scope, now, i = {}, {}, [], None, 0, 0
    while i < len(words):
        w = words[i]
        if w == "$scope":
            scope, i = words[i + 2], i + 3
        elif w == "$var":
            ids[words[i + 3]] = words[i + 4]
            names.append(words[i + 4])
            changes[words[i + 4]] = []
            i += 5
        elif w.startswith("#"):
            now, i = int(w[1:]), i + 1
        elif w.startswith("b") and words[i + 1] in ids:
            changes[ids[words[i + 1]]].append((now, int(w[1:], 2))); i += 2
        elif w[0] in "01" and w[1:] in ids:
            changes[ids[w[1:]]].append((now, int(w[0]))); i += 1
        else:
            i += 1
    if any(not c or c[0][0] != 0 for c in changes.values()):
        raise RuntimeError("%s does not give every value at time 0" % path)
    return changes, scope, names


def value_at(changes, t):
    return [v for (when, v) in changes if when <= t][-1]


def main():
    ap = argparse.ArgumentParser()
    for option in ("host", "module", "pic-prefix", "gpsim"):
        ap.add_argument("--" + option, required=True)
    ap.add_argument("--seed", type=int, default=random.randrange(1 << 30))
    args = ap.parse_args()
    rng = random.Random(args.seed)
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        text, total = program(rng)
        kflow, panel, chip = (os.path.join(folder, n) for n in ("p.kflow", "panel.vcd", "chip.vcd"))
        open(kflow, "w").write(text)
        script = "log start %s\nrun %s\nlog stop\nquit\n" % (panel, kflow)
        said = subprocess.run([args.host, "console", "--module", args.module], input=script, text=True,
                              capture_output=True).stdout
        env = dict(os.environ, KESTRONE_PIC_PREFIX=args.pic_prefix, KESTRONE_GPSIM=args.gpsim)
        code = subprocess.run([args.host, "code", kflow, "--module", args.module, "-o", kflow[:-6] + ".c",
                               "--hex", "--trace", chip, "--ms", str(total + 100)], env=env, text=True,
                              capture_output=True)
        if code.returncode != 0 or not os.path.exists(chip[:-4] + ".gtkw"):
            sys.exit("seed %d: code --trace failed: %s%s%s" % (args.seed, said, code.stdout, code.stderr))
        (p, p_scope, p_names), (c, c_scope, c_names) = read_vcd(panel), read_vcd(chip)
        # A simulator that fails is told, with the command's own exit status.
        failed = subprocess.run(code.args, env=dict(env, KESTRONE_GPSIM="/bin/false"), capture_output=True)
        if failed.returncode != 4:
            faults.append("code --trace answered %d for a gpsim that failed" % failed.returncode)
        if (p_scope, p_names[:len(c_names)]) != (c_scope, c_names):
            faults.append("the dumps declare %s %s and %s %s" % (p_scope, p_names, c_scope, c_names))
        moments = sorted({t for name in COMPARED for (t, _) in p[name]} | {total * 1000})
        for start, end in zip(moments, moments[1:]):
            middle = (start + end) // 2
            for name in COMPARED:
                if value_at(p[name], middle) != value_at(c[name], middle):
                    faults.append("%s at %d us: panel %d, chip %d" % (name, middle, value_at(p[name], middle),
                                                                      value_at(c[name], middle)))
    for f in faults:
        print("seed %d: %s" % (args.seed, f))
    if faults:
        print(text)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
