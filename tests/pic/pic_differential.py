#!/usr/bin/env python3
"""Random programs agree in three places: the console's interpreter, a small model of 16-bit C
(c16_model.py), and the chip, as the hex of `kestrone-host code --hex` run in gpsim; the
warnings of `code` agree with their model (warning_model.py).

  pic_differential.py --host HOST --module MODULE --gpsim GPSIM [--count N] [--seed S]

Every variable, the LEDs and where the program stopped are compared; the compiler must say
nothing. A disagreement is shrunk to a small program that still disagrees, and printed. The seed
is new on every run unless given (--seed, or KFLOW_SEED): the first line names it for a replay.
"""

import argparse
import os
import random
import re
import subprocess
import sys
import tempfile
import time

import c16_model
import warning_model
from kflow_random import Generator, lit, smaller, text, valid
from pic_program import quote, save_project

CHIP_CYCLES = 8_000_000  # the chip's cap; the model keeps programs to a quarter of it
MODEL_BUDGET = CHIP_CYCLES // 4
PORTD = 0x08
SHOWN_FAILURES = 1  # each shrink takes minutes: the first shows the way


def declared(body):
    """(name, is_byte) of every variable, `done` first."""
    return [("done", True)] + [(s[1], s[2]) for s in body if s[0] == "decl"]


def interpret(args, folder, bodies):
    """Each program run by the console on a fresh object: (answer of run, values, LED bits)."""
    script, plans = [], []
    for k, body in enumerate(bodies):
        path = os.path.join(folder, "p%d.kflow" % k)
        with open(path, "w") as f:
            f.write(text(body))
        names = [n for n, _ in declared(body)]
        script += ["new", "run " + quote(path)] + ["var " + n for n in names]
        script += ["get imageLedOn(%d).Visible" % i for i in range(8)]
        plans.append(names)
    r = subprocess.run([args.host, "console", "--module", args.module], input="\n".join(script + ["quit"]) + "\n",
                       capture_output=True, text=True, encoding="latin-1")
    answers = [l for l in r.stdout.splitlines() if l.startswith(("ok", "fail", "error"))][1:]
    out = []
    for names in plans:
        got, answers = answers[:len(names) + 10], answers[len(names) + 10:]
        if len(got) < len(names) + 10:
            raise RuntimeError("the console ended early (%d): %s" % (r.returncode, r.stderr[-2000:]))
        values = {n: int(a[3:].rstrip("%")) if a.startswith("ok ") else a for n, a in zip(names, got[2:])}
        leds = sum(1 << i for i, a in enumerate(got[-8:]) if a == "ok True")
        out.append((got[1], values, leds))
    return out


def on_chip(args, folder, k, body, project):
    """The program's hex run in gpsim until `done` is set or the cap: (values, LED port) or the
    compiler's words."""
    path = os.path.join(folder, "c%s.kflow" % k)
    with open(path, "w") as f:
        f.write(text(body))
    env = dict(os.environ, KESTRONE_PIC_PREFIX=args.pic_prefix)
    r = subprocess.run([args.host, "code", path, "--module", args.module, "--project", project, "--hex"],
                       env=env, capture_output=True, text=True, cwd=folder)
    # The program's own warnings are checked against their model; the compiler must say nothing.
    own = re.compile(re.escape(path) + r":\d+:\d+: warning: ")
    lines = (r.stdout + r.stderr).splitlines()
    warned = sorted(warning_model.said(l) for l in lines if own.match(l))
    said = [l for l in lines if not l.startswith("kestrone-host: wrote ") and not own.match(l)]
    cod = path[:-6] + ".cod"
    if r.returncode != 0 or said or not os.path.exists(cod):
        return "code said (%d): %s" % (r.returncode, " / ".join(said)[:600])
    want = warning_model.expected(body)
    if warned != want:
        return "code warned %s where the model warns %s" % ([w for w in warned if w not in want],
                                                             [w for w in want if w not in warned])
    symbols = subprocess.run([args.gpvc, "-s", cod], capture_output=True, text=True).stdout
    where = {m.group(1): int(m.group(2), 16) for m in re.finditer(r"^_kfv_(\w+) = ([0-9a-f]+),", symbols, re.M)}
    names = declared(body)
    reads = [(n, a) for n, is_byte in names for a in ([where[n]] if is_byte else [where[n], where[n] + 1])]
    script = ["load s " + cod, "break w _kfv_done == 1", "break c %d" % CHIP_CYCLES, "run"]
    script += ["reg(%d)" % a for _, a in reads] + ["reg(%d)" % PORTD, "quit"]
    with open(path[:-6] + ".stc", "w") as f:
        f.write("\n".join(script) + "\n")
    sim = subprocess.run([args.gpsim, "-i", "-c", path[:-6] + ".stc"], capture_output=True, text=True, timeout=120)
    shown = [int(v, 16) for v in re.findall(r"\] = \$([0-9a-f]+)", sim.stdout)]
    if len(shown) != len(reads) + 1:
        return "gpsim showed %d of %d registers: %s" % (len(shown), len(reads) + 1, sim.stdout[-1500:])
    values, at = {}, 0
    for n, is_byte in names:
        values[n] = shown[at] if is_byte else c16_model.word(shown[at] | shown[at + 1] << 8)
        at += 1 if is_byte else 2
    return values, shown[-1]


STOPPED = re.compile(r"^fail \S+:(\d+):\d+: (division by 0|remainder of a division by 0)")


def differences(body, console, chip):
    """What the three sides disagree on, as lines; none when they agree."""
    want = c16_model.run(body, MODEL_BUDGET)
    said, values, leds = console
    out = []
    m = STOPPED.match(said)
    if (int(m.group(1)) if m else 0 if said.startswith("ok") else said) != (want["stop"] or 0):
        out.append("run: console %s, model %s" % (said, "stops at line %s" % want["stop"] if want["stop"] else "ends"))
    if isinstance(chip, str):
        return out + ["chip: " + chip]
    for n, _ in declared(body):
        sides = (want["values"].get(n, 0), values[n], chip[0][n])
        if len(set(sides)) > 1:
            out.append("%s: model %s, console %s, chip %s" % ((n,) + sides))
    if len({want["leds"], leds, chip[1]}) > 1:
        out.append("LEDs: model 0x%02X, console 0x%02X, chip PORTD 0x%02X" % (want["leds"], leds, chip[1]))
    return out


def check(args, folder, project, body):
    return differences(body, interpret(args, folder, [body])[0], on_chip(args, folder, "s", body, project))


def shrink(args, folder, project, body):
    """The smallest program found, within --shrink-seconds, that still disagrees."""
    end = time.time() + args.shrink_seconds
    found = True
    while found and time.time() < end:
        found = False
        for candidate in smaller(body):
            if time.time() > end:
                break
            if not valid(candidate):
                continue
            try:
                c16_model.run(candidate, MODEL_BUDGET)
            except c16_model.TooLong:
                continue
            if check(args, folder, project, candidate):
                body, found = candidate, True
                break
    return body


# Programs on which the chip once disagreed, run first on every seed.
FOUND = [
    # The port folded x ^ x to a 0 that the comparison read as unsigned.
    [("decl", "i0", False, ("un", "-", lit(1))),
     ("call", "WriteLeds", ("bin", ">=", ("var", "i0"), ("par", ("bin", "^", ("var", "i0"), ("var", "i0")))))],
    # A byte set from a sum that holds a call's result: the port wrote messages without end.
    [("decl", "b5", True, lit(0)),
     ("set", "b5", ("bin", "+", ("bin", "/", lit(0), lit(0)),
                    ("par", ("bin", "+", ("bin", "/", lit(0), lit(0)), ("var", "b5")))))],
    # A product with a logical result: the port made (1 + b) * (int)(b && b) 4 for b = 1.
    [("decl", "b0", True, lit(1)),
     ("set", "b0", ("bin", "*", ("par", ("bin", "+", lit(1), ("var", "b0"))),
                    ("par", ("bin", "&&", ("var", "b0"), ("var", "b0")))))],
    # An int set from the sum of two bytes, then narrowed: the port wrote messages without end.
    [("decl", "b0", True, lit(1)), ("decl", "i1", False, ("bin", "+", ("var", "b0"), ("var", "b0"))),
     ("call", "LedOff", ("var", "i1"))],
]


def generate(rng, count):
    bodies = []
    while len(bodies) < count:
        body = Generator(rng).program()
        try:
            c16_model.run(body, MODEL_BUDGET)
            bodies.append(body)
        except c16_model.TooLong:
            pass
    return bodies


def main():
    ap = argparse.ArgumentParser()
    for option in ("host", "module", "gpsim"):
        ap.add_argument("--" + option, required=True)
    ap.add_argument("--gpvc", default="gpvc", help="gputils' .cod reader, for the variables' addresses")
    ap.add_argument("--pic-prefix", default=os.environ.get("KESTRONE_PIC_PREFIX", "/opt/kestrone-pic"))
    ap.add_argument("--count", type=int, default=int(os.environ.get("KFLOW_PROGRAMS", "200")))
    ap.add_argument("--seed", type=int, default=os.environ.get("KFLOW_SEED") or None)
    ap.add_argument("--shrink-seconds", type=float, default=150)
    ap.add_argument("--keep", help="folder to keep the programs, C, hex and gpsim scripts in")
    args = ap.parse_args()
    seed = int(args.seed) if args.seed is not None else random.SystemRandom().randrange(1 << 32)
    print("seed %d (replay: KFLOW_SEED=%d)" % (seed, seed), flush=True)
    start = time.time()
    bodies = FOUND + generate(random.Random(seed), args.count)
    failed = 0
    with tempfile.TemporaryDirectory() as tmp:
        folder = args.keep or tmp
        os.makedirs(folder, exist_ok=True)
        project = save_project(args, folder, {"bWaitForButton": 0})
        consoles = interpret(args, folder, bodies)
        for k, body in enumerate(bodies):
            found = differences(body, consoles[k], on_chip(args, folder, k, body, project))
            if not found:
                continue
            failed += 1
            print("FAIL: program %d of seed %d disagrees:\n  %s" % (k, seed, "\n  ".join(found)), flush=True)
            if failed <= SHOWN_FAILURES:
                small = shrink(args, folder, project, body)
                print("  shrunk to:\n    %s\n  where:\n    %s" % (text(small).rstrip().replace("\n", "\n    "),
                      "\n    ".join(check(args, folder, project, small))), flush=True)
    print("%d programs in %.0f s, seed %d" % (len(bodies), time.time() - start, seed))
    print("%d passed, %d failed" % (len(bodies) - failed, failed))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
