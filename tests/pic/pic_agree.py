#!/usr/bin/env python3
"""A demonstration on the chip agrees with the panel.

  pic_agree.py NAME --examples DIR --host HOST --module MODULE --sdcc SDCC --gpsim GPSIM

examples/NAME.kflow runs from the same inputs in the console, stopped at a moment of its clock
(`run FILE MS`), and as the hex of `kestrone-host code --hex` in gpsim for the cycles of that
moment. The chip's registers must hold what the panel shows, through the robot's wiring: the LED
port, both PWM duties, the direction pins and the sounder.

A tone holds the chip's program for its length while the console's clock does not move for it:
every tone before a moment moves the chip's moment on by its length. The chip's delays also run a
little slow (its timer interrupt takes its share: the line follower's 10 s end 70 ms late), so
every moment lies well inside a long delay, or well after the program's end.
"""

import argparse
import os
import sys
import tempfile
from dataclasses import dataclass, field

from pic_program import CYCLES_PER_MS, VDD, Checker, Sim, console, quote, toggles, write_c

# The wiring of the code file: LED n on RDn; per motor its duty register, the CCP control that
# holds the duty's bits 1..0 in bits 5..4, and its direction pin on PORTC (high: backwards).
MOTORS = [("left", 0, "ccpr1l", "ccp1con", 0), ("right", 1, "ccpr2l", "ccp2con", 5)]
REGISTERS = ["portd", "portc", "ccpr1l", "ccp1con", "ccpr2l", "ccp2con"]
SOUNDER_BIT = 5  # RB5
BOXES = {"chkSwitchLeft": "portb0", "chkSwitchRight": "portb1", "chkLineLeft": "portb2",
         "chkLineRight": "portb3"}
# updownADC(I) feeds the reading I: LDR on AN0, microphone AN1, IR left, forward, right on AN2..AN4.
ANALOGUE_PINS = ["porta0", "porta1", "porta2", "porta3", "porta5"]
LDR, IR_LEFT, IR_FRONT, IR_RIGHT = 0, 2, 3, 4
# A tone's pitch is measured over its middle from RB5 sampled every SAMPLE cycles; the chip's
# timer counts in whole steps, so it is near the asked one, not exact.
SAMPLE, TONE_TOLERANCE = 200, 0.008
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


def panel_state(args, program, inputs, ms):
    """A fresh object with the inputs set, the program stopped at ms: (LEDs, speeds, tones asked)."""
    sets = ["KestroneVersion = 1281"]
    sets += ["put updownADC(%d).Value = %d" % (k, v) if isinstance(k, int) else "click " + k
             for k, v in inputs.items() if isinstance(k, int) or v]
    reads = ["get imageLedOn(%d).Visible" % i for i in range(8)] + ["field iMotorSpeed(%d)" % m for m in (0, 1)]
    lines = console(args, "\n".join(sets + ["run %s %d" % (quote(program), ms)] + reads))
    tones = [tuple(int(x) for x in l.split()[1:]) for l in lines if l.startswith("tone ")]
    answers = [l[3:] for l in lines if l.startswith("ok ")][-len(reads):]
    leds = sum(1 << i for i in range(8) if answers[i] == "True")
    return leds, [int(a.rstrip("%")) for a in answers[8:]], tones


def compare_moment(check, where, chip, leds, speeds):
    check.equal(chip["portd"], leds, "%s: PORTD (LEDs), chip 0x%02X, panel 0x%02X" % (where, chip["portd"], leds))
    for side, index, duty, control, pin in MOTORS:
        speed = speeds[index]
        got, want = chip[duty] << 2 | chip[control] >> 4 & 3, min(abs(speed), 255) << 2
        check.equal(got, want, "%s: %s motor duty %s:%s<5:4> of 1024 (speed %d)"
                    % (where, side, duty.upper(), control.upper(), speed))
        check.equal(chip["portc"] >> pin & 1, int(speed < 0), "%s: %s motor direction RC%d (speed %d)"
                    % (where, side, pin, speed))


def run_case(args, check, program, cod, case):
    requests, plans = {}, []  # cycle -> registers shown there; what to compare
    for ms in case.moments:
        leds, speeds, tones = panel_state(args, program, case.inputs, ms)
        cycle = (ms + sum(t[1] for t in tones)) * CYCLES_PER_MS
        quiet = [cycle + QUIET_STEP * (k - QUIET_SAMPLES // 2) for k in range(QUIET_SAMPLES)]
        requests.setdefault(cycle, set()).update(REGISTERS)
        plans.append(("moment", ms, cycle, (leds, speeds), quiet))
    for ms in case.tones:
        _, _, tones = panel_state(args, program, case.inputs, ms)
        if not check.true(bool(tones), "%s, %s: the panel asked for no tone by %d ms" % (args.name, case.label, ms)):
            continue
        hz, length = tones[-1]
        start = (ms + sum(t[1] for t in tones[:-1])) * CYCLES_PER_MS
        span = min(length * CYCLES_PER_MS * 2 // 5, 20 * CYCLES_PER_MS)
        first = start + (length * CYCLES_PER_MS - span) // 2
        plans.append(("tone", ms, start, hz, list(range(first, first + span, SAMPLE))))
    for plan in plans:
        for c in plan[4]:
            requests.setdefault(c, set()).add("portb")
    sim = Sim(cod)
    for name, value in case.inputs.items():
        if isinstance(name, int):
            # The reading r of 8 bits is the top of the converter's 10: the middle of its codes.
            sim.drive(ANALOGUE_PINS[name], (4 * value + 2 + 0.5) * VDD / 1024)
    for box, pin in BOXES.items():
        sim.drive(pin, VDD if case.inputs.get(box) else 0.0)
    for cycle in sorted(requests):
        sim.show_at(cycle, sorted(requests[cycle]))
    values = sim.run(args.gpsim)
    for kind, ms, cycle, panel, window in plans:
        where = "%s, %s, at %d ms (chip cycle %d)" % (args.name, case.label, ms, cycle)
        edges = toggles([(c, values[(c, "portb")] >> SOUNDER_BIT & 1) for c in window])
        if kind == "moment":
            compare_moment(check, where, {r: values[(cycle, r)] for r in REGISTERS}, *panel)
            check.equal(edges, [], "%s: RB5 (sounder) toggles with no tone on the panel" % where)
        elif check.true(len(edges) >= 3, "%s: RB5 (sounder) toggled %d times, panel's tone %d Hz"
                        % (where, len(edges), panel)):
            measured = CYCLES_PER_MS * 1000 * (len(edges) - 1) / (2 * (edges[-1] - edges[0]))
            check.true(abs(measured - panel) <= panel * TONE_TOLERANCE,
                       "%s: RB5 (sounder) at %.1f Hz, panel's tone %d Hz" % (where, measured, panel))


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("name", help="a demonstration in the examples folder, without .kflow")
    for option in ("examples", "host", "module", "sdcc", "gpsim"):
        ap.add_argument("--" + option, required=True)
    ap.add_argument("--keep", help="folder to keep the program, hex and gpsim script in")
    args = ap.parse_args()
    program = os.path.join(args.examples, args.name + ".kflow")
    check = Checker()
    if check.true(args.name in CASES, "no comparison of the chip with the panel is set for %s" % program):
        with tempfile.TemporaryDirectory() as tmp:
            folder = args.keep or tmp
            # Without the wait for a button, which would hold the chip at its start.
            cod = write_c(args, folder, args.name, program, dict(bWaitForButton=0), hex_too=True)[:-2] + ".cod"
            for case in CASES[args.name]:
                run_case(args, check, program, cod, case)
    return check.finish(args.name)


if __name__ == "__main__":
    sys.exit(main())
