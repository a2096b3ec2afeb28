#!/usr/bin/env python3
"""A demonstration on the chip agrees with the panel.

  pic_agree.py NAME --examples DIR --host HOST --module MODULE --sdcc SDCC --gpsim GPSIM

The program examples/NAME.kflow runs twice from the same inputs: in the console, stopped at a
moment of its virtual clock (`run FILE MS`), and as the hex that `kestrone-host code --hex` builds,
in gpsim for the cycles of the same moment. Then the chip's registers must hold what the panel
shows, pin by pin, through the robot's wiring: the LED port, both PWM duties, the direction pins
and the sounder.

Two clocks differ on purpose. The chip runs at the 20 MHz its code file assumes, one instruction
in four clock periods: 5000 cycles a millisecond. A tone holds the chip's program for its length,
while the console's clock does not move for it: every tone the panel was asked for before the
moment moves the chip's moment on by its length. The chip's delays also run a little slow (its
timer interrupt takes its share: the line follower's 10 s end 70 ms late), so every moment below
lies well inside a long delay, or well after the program's end, where neither side changes for a
while.
"""

import argparse
import os
import subprocess
import sys
import tempfile
from dataclasses import dataclass, field

from pic_bench import Checker
from pic_program import Console, Sim, quote

CYCLES_PER_MS = 5000  # 20 MHz crystal, four clocks an instruction
VDD = 5.0

# The wiring comment of the code file, as (chip, panel) pairs.
LED_PORT = "portd"  # RD0..RD7: LED 0..7, high lights it
MOTORS = [  # duty register, its CCP control (duty bits 1..0 in bits 5..4), direction pin of PORTC
    ("left", 0, "ccpr1l", "ccp1con", 0),   # CCP1/RC2, RC0 high = backwards
    ("right", 1, "ccpr2l", "ccp2con", 5),  # CCP2/RC1, RC5 high = backwards
]
SOUNDER_BIT = 5  # RB5
BOXES = {"chkSwitchLeft": "portb0", "chkSwitchRight": "portb1", "chkLineLeft": "portb2",
         "chkLineRight": "portb3"}
# updownADC(I) feeds the reading I: LDR on AN0, microphone AN1, IR left, forward, right on AN2..AN4.
ANALOGUE_PINS = ["porta0", "porta1", "porta2", "porta3", "porta5"]
LDR, IR_LEFT, IR_FRONT, IR_RIGHT = 0, 2, 3, 4

# A tone's frequency is measured over the middle of the tone from RB5 sampled every SAMPLE
# cycles; the chip's timer counts in whole steps, so a tone is near the asked one, not exact.
SAMPLE = 200
TONE_TOLERANCE = 0.008
QUIET_SAMPLES, QUIET_STEP = 30, 500  # 3 ms with RB5 still at each moment compared


@dataclass
class Case:
    label: str
    inputs: dict = field(default_factory=dict)  # check box -> 1, or updownADC index -> reading
    moments: list = field(default_factory=list)  # panel milliseconds where both sides hold still
    tones: list = field(default_factory=list)    # panel milliseconds at which a tone is asked


# Moments chosen per demonstration from its program; the comments give the panel's timeline.
CASES = {
    # Side k from 1450k ms: LEDs 1 << k, forwards 200 for 1000 ms; then a tone of 200 ms (no time
    # on the panel), spin left 150 for 450 ms. The run ends at 5800 ms, LED 7 from the left switch.
    "square": [
        Case("left switch held", {"chkSwitchLeft": 1}, [500, 1225, 3400, 5575, 7000], [1000, 5350]),
        Case("no switch", {}, [2675, 7000]),
    ],
    # A look every 50 ms for 200 looks (10 s), then a stop; both sensors on the line stop it at once.
    "line_follower": [
        Case("no line", {}, [1025, 10800]),
        Case("line under the left sensor", {"chkLineLeft": 1}, [1025]),
        Case("line under the right sensor", {"chkLineRight": 1}, [2025]),
        Case("finish bar", {"chkLineLeft": 1, "chkLineRight": 1}, [500]),
    ],
    # A look every 100 ms, forever; a light above 200 ends it with a tone of 500 ms at once.
    "light_seeker": [
        Case("bright light", {LDR: 230}, [1000], [0]),
        Case("wall ahead, open right", {LDR: 100, IR_LEFT: 80, IR_FRONT: 150, IR_RIGHT: 40}, [250, 1050]),
        Case("wall ahead, open left", {LDR: 40, IR_LEFT: 30, IR_FRONT: 121, IR_RIGHT: 30}, [1050]),
        Case("near the right wall", {LDR: 64, IR_LEFT: 40, IR_FRONT: 60, IR_RIGHT: 90}, [1050]),
        Case("near the left wall", {LDR: 0, IR_LEFT: 90, IR_FRONT: 60, IR_RIGHT: 40}, [1050]),
        Case("in the open", {LDR: 200, IR_LEFT: 50, IR_FRONT: 120, IR_RIGHT: 70}, [1050]),
    ],
    # A bump: back 400 ms, turn 300 ms, then on; looks every 20 ms. The third bump ends the run
    # at 2160 ms with a tone of 100 ms.
    "bumpers": [
        Case("left switch held", {"chkSwitchLeft": 1}, [200, 550, 920, 1990, 2600], [2160]),
        Case("right switch held", {"chkSwitchRight": 1}, [550, 2600]),
        Case("nothing in the way", {}, [1010]),
    ],
}


def panel_state(console, program, inputs, ms):
    """A fresh object with the inputs set, the program stopped at ms: (state, tones asked)."""
    console.ask("new")
    console.ask("KestroneVersion = 1281")
    for name, value in inputs.items():
        if isinstance(name, int):
            console.ask("put updownADC(%d).Value = %d" % (name, value))
        elif value:
            console.ask("click " + name)
    answer, notices = console.ask_with_notices("run %s %d" % (quote(program), ms))
    tones = [tuple(int(x) for x in n.split()[1:]) for n in notices if n.startswith("tone ")]
    leds = 0
    for i in range(8):
        if console.ask("get imageLedOn(%d).Visible" % i) == "True":
            leds |= 1 << i
    speeds = [int(console.ask("field iMotorSpeed(%d)" % m).rstrip("%")) for m in (0, 1)]
    return dict(ran=int(answer.rstrip("&")), leds=leds, speeds=speeds), tones


def build_hex(args, program, folder):
    """The program's C and hex as `kestrone-host code` makes them, without the wait for a button
    (a project file made by the console holds that setting): the path of the .cod."""
    project = os.path.join(folder, "project.json")
    console = Console(args.host, args.module)
    try:
        console.ask("bWaitForButton = 0")
        console.ask("writeprops")
        console.ask("store save " + quote(project))
    finally:
        console.close()
    name = os.path.splitext(os.path.basename(program))[0]
    env = dict(os.environ, KESTRONE_PIC_PREFIX=os.path.dirname(os.path.dirname(args.sdcc)))
    r = subprocess.run([args.host, "code", program, "--hex", "--module", args.module, "--project", project,
                        "-o", os.path.join(folder, name + ".c")], env=env, capture_output=True, text=True)
    cod = os.path.join(folder, name + ".cod")
    if r.returncode != 0 or not os.path.exists(cod):
        raise RuntimeError("kestrone-host code --hex failed (%d): %s%s" % (r.returncode, r.stdout, r.stderr))
    return cod


class ChipRun:
    """One gpsim run of a case: registers at the moments, RB5 over windows, in cycle order."""

    def __init__(self):
        self.requests = {}  # cycle -> set of registers

    def want(self, cycle, registers):
        self.requests.setdefault(cycle, set()).update(registers)

    def run(self, args, cod, inputs):
        sim = Sim(cod)
        for name, value in inputs.items():
            if isinstance(name, int):
                # The reading r of 8 bits is the top of the converter's 10: the middle of its codes.
                sim.drive(ANALOGUE_PINS[name], (4 * value + 2 + 0.5) * VDD / 1024)
        for box, pin in BOXES.items():
            sim.drive(pin, VDD if inputs.get(box) else 0.0)
        last = None
        for cycle in sorted(self.requests):
            if last is not None and cycle < last + 10:
                raise ValueError("samples closer than 10 cycles: %d, %d" % (last, cycle))
            sim.show_at(cycle, sorted(self.requests[cycle]))
            last = cycle
        return sim.run(args.gpsim)


def toggles(values, cycles):
    levels = [values[(c, "portb")] >> SOUNDER_BIT & 1 for c in cycles]
    return [c for c, a, b in zip(cycles[1:], levels, levels[1:]) if a != b]


def compare_moment(check, where, chip, panel):
    check.equal(chip["portd"], panel["leds"], "%s: PORTD (LEDs), chip 0x%02X, panel 0x%02X"
                % (where, chip["portd"], panel["leds"]))
    for side, index, duty, control, pin in MOTORS:
        speed = panel["speeds"][index]
        got = chip[duty] << 2 | chip[control] >> 4 & 3
        check.equal(got, min(abs(speed), 255) << 2, "%s: %s motor duty %s:%s<5:4>, chip %d/1024, panel %d/1024 "
                    "(speed %d)" % (where, side, duty.upper(), control.upper(), got, min(abs(speed), 255) << 2, speed))
        back = chip["portc"] >> pin & 1
        check.equal(back, int(speed < 0), "%s: %s motor direction RC%d, chip %d, panel %d (speed %d)"
                    % (where, side, pin, back, int(speed < 0), speed))


def run_case(args, check, console, program, cod, case):
    chip_run = ChipRun()
    plans = []
    for ms in case.moments:
        panel, tones = panel_state(console, program, case.inputs, ms)
        cycle = (ms + sum(t[1] for t in tones)) * CYCLES_PER_MS
        quiet = [cycle + QUIET_STEP * (k - QUIET_SAMPLES // 2) for k in range(QUIET_SAMPLES)]
        chip_run.want(cycle, [LED_PORT, "portc"] + [r for m in MOTORS for r in m[2:4]])
        for c in quiet:
            chip_run.want(c, ["portb"])
        plans.append(("moment", ms, cycle, panel, quiet))
    for ms in case.tones:
        panel, tones = panel_state(console, program, case.inputs, ms)
        if not tones:
            check.true(False, "%s, %s: the panel asked for no tone by %d ms" % (args.name, case.label, ms))
            continue
        hz, length = tones[-1]
        start = (ms + sum(t[1] for t in tones[:-1])) * CYCLES_PER_MS
        span = min(length * CYCLES_PER_MS * 2 // 5, 20 * CYCLES_PER_MS)
        first = start + (length * CYCLES_PER_MS - span) // 2
        window = list(range(first, first + span, SAMPLE))
        for c in window:
            chip_run.want(c, ["portb"])
        plans.append(("tone", ms, start, (hz, length), window))
    values = chip_run.run(args, cod, case.inputs)
    for kind, ms, cycle, panel, window in plans:
        where = "%s, %s, at %d ms (chip cycle %d)" % (args.name, case.label, ms, cycle)
        edges = toggles(values, window)
        if kind == "moment":
            chip = {r: values[(cycle, r)] for r in [LED_PORT, "portc"] + [r for m in MOTORS for r in m[2:4]]}
            compare_moment(check, where, chip, panel)
            check.equal(edges, [], "%s: RB5 (sounder) toggles with no tone on the panel" % where)
            print("%s: panel LEDs 0x%02X, speeds %s" % (where, panel["leds"], panel["speeds"]))
            continue
        hz, length = panel
        if len(edges) < 3:
            check.true(False, "%s: RB5 (sounder) toggled %d times in %d cycles, panel's tone %d Hz"
                       % (where, len(edges), window[-1] - window[0], hz))
            continue
        half = (edges[-1] - edges[0]) / (len(edges) - 1)
        measured = CYCLES_PER_MS * 1000 / (2 * half)
        check.true(abs(measured - hz) <= hz * TONE_TOLERANCE,
                   "%s: RB5 (sounder) at %.1f Hz, panel's tone %d Hz" % (where, measured, hz))
        print("%s: tone %.1f Hz on RB5, panel %d Hz for %d ms" % (where, measured, hz, length))


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("name", help="a demonstration in the examples folder, without .kflow")
    for option in ("examples", "host", "module", "sdcc", "gpsim"):
        ap.add_argument("--" + option, required=True)
    ap.add_argument("--keep", help="folder to keep the program, hex and gpsim script in")
    args = ap.parse_args()
    program = os.path.join(args.examples, args.name + ".kflow")
    check = Checker()
    if args.name not in CASES:
        check.true(False, "no comparison of the chip with the panel is set for %s: add its cases" % program)
        return check.finish(args.name)
    with tempfile.TemporaryDirectory() as tmp:
        folder = args.keep or tmp
        os.makedirs(folder, exist_ok=True)
        cod = build_hex(args, program, folder)
        console = Console(args.host, args.module)
        try:
            for case in CASES[args.name]:
                run_case(args, check, console, program, cod, case)
        finally:
            console.close()
    return check.finish(args.name)


if __name__ == "__main__":
    sys.exit(main())
