#!/usr/bin/env python3
"""The robot's C on the real chip: compiled by SDCC's pic14 port, run in gpsim.

  pic_check.py AREA --host HOST --module MODULE --sdcc SDCC --gpsim GPSIM

AREA is one of: settings (every setting at its extremes compiles without a message), motors (PWM
duties and direction pins, bias and trim), analogue (every reading at 8 and at 10 bits), tone (the
sounder's pitch and length), start (the wait for a button, and WaitSwitch). The LEDs, switches
and line sensors are compared with the panel for every demonstration by pic_agree.py.
"""

import argparse
import os
import sys
import tempfile

from pic_program import CYCLES_PER_MS, LOCALS_BANK, VDD, Checker, Driver, Sim, locals_bytes, toggles

# Settings tried for the compile check. Every Integer setting at once at each of -32768, 0, 1
# and 32767, under both reading widths; the switches at each of their values; text settings that
# a C comment or string could not hold. Every public macro is called.
INTEGERS = ["iThreshL", "iThreshF", "iThreshR", "iThreshMic", "iThreshLdr", "iDummyInt1", "iDummyInt2",
            "iMotorBias", "bDummyBool1", "bDummyBool2"]
BAD_TEXTS = ["*/", '"', "\\", "a\nb", "/* %a \\\n#endif", "'", "%n%n"]
EVERY_MACRO = ["WaitForStart()", "SetMotorTrim(5)", "TestLevel(0)", "DriveForwards(1)", "DriveBackwards(1)",
               "DriveStop()", "SpinLeft(1)", "SpinRight(1)", "SetMotors(0, 1, 0, 1)", "WriteLeds(1)", "LedOn(1)",
               "LedOff(1)", "ReadSwitch(0)", "WaitSwitch(0)", "PlayTone(1, 0, 1)", "ReadMic()", "ReadLdr()",
               "TestSideSensor(0)", "ReadSideSensor(0)", "ReadLine(0)"]
# The code file's functions may take this much of the bank that holds all locals of a program;
# the rest is the user's program's.
LOCALS_BUDGET = 72


def settings_table():
    # A bias of -32768 has no 16-bit magnitude: its code text is refused, so -32767 it is.
    table = [dict({k: value for k in INTEGERS}, bReturnInt=wide, iMotorBias=max(value, -32767))
             for value in (-32768, 0, 1, 32767) for wide in (0, 1)]
    table += [dict(bUseI2C=i2c, bWaitForButton=wait, bReturnInt=-1) for i2c in (0, 1, 128) for wait in (0, 1)]
    return table + [dict(sDummyString1=t, sDummyString2=BAD_TEXTS[-1 - k]) for k, t in enumerate(BAD_TEXTS)]


def area_settings(args, folder, check):
    d = Driver()
    for call in EVERY_MACRO:
        d.do(call)
    for k, settings in enumerate(settings_table()):
        name = "set%02d" % k
        cod = d.build(args, folder, name, settings, check)
        if cod:
            local = locals_bytes(cod[:-4] + ".asm")
            check.true(local <= LOCALS_BUDGET, "%s: the code file's locals take %d bytes of %d, more than %d"
                       % (name, local, LOCALS_BANK, LOCALS_BUDGET))


def duty(speed, bias_percent):
    """Duty of a motor: the speed's size, at most 255, less the bias in 256ths."""
    scale = (100 - min(bias_percent, 100)) * 256 // 100
    return min(abs(speed), 255) * scale >> 8


DIR_LEFT, DIR_RIGHT = 0x01, 0x20  # RC0, RC5


def area_motors(args, folder, check):
    # Speeds as the macros take them; SetMotors with high and low bytes of signed 16-bit speeds.
    steps = [("DriveForwards(200)", 200, 200), ("DriveBackwards(150)", -150, -150), ("SpinLeft(100)", -100, 100),
             ("SpinRight(60)", 60, -60), ("SetMotors(0xFF, 0x38, 0x00, 0x7B)", -200, 123),
             ("SetMotors(0xFE, 0xD4, 0x01, 0x02)", -300, 258), ("SetMotors(0xFF, 0x00, 0x80, 0x00)", -256, -32768),
             ("SetMotors(0xFF, 0xFF, 0x7F, 0xFF)", -1, 32767), ("DriveStop()", 0, 0),
             ("DriveForwards(255)", 255, 255)]
    d = Driver()
    for k, (call, _, _) in enumerate(steps):
        d.do(call)
        d.byte("pwm_l%d" % k, "CCPR1L")
        d.byte("pwm_r%d" % k, "CCPR2L")
        d.byte("dir%d" % k, "PORTC & 0x21")
    # Trim toward the right from here on, which also re-drives the last speeds; past 100 percent
    # it holds the left motor still.
    for name, trim in (("trim", 30), ("trim_far", 0x80)):
        d.do("SetMotorTrim(%d)" % trim)
        d.byte(name + "_l", "CCPR1L")
        d.byte(name + "_r", "CCPR2L")
    d.byte("tris", "TRISC & 0x27")
    d.byte("ccp", "CCP1CON & 0x0F")
    d.byte("ccp2", "CCP2CON & 0x0F")
    for bias in (0, -20, 45):
        name = "motors_bias%d" % bias
        got = d.run(args, folder, name, dict(bWaitForButton=0, iMotorBias=bias), check)
        if got is None:
            continue
        left_bias, right_bias = max(-bias, 0), max(bias, 0)
        for k, (call, left, right) in enumerate(steps):
            want_dir = (DIR_LEFT if left < 0 else 0) | (DIR_RIGHT if right < 0 else 0)
            check.equal((got["pwm_l%d" % k], got["pwm_r%d" % k], got["dir%d" % k]),
                        (duty(left, left_bias), duty(right, right_bias), want_dir),
                        "%s: left and right duties, direction pins after %s" % (name, call))
        # A trim replaces the bias: 30 percent off the right motor only.
        check.equal((got["trim_l"], got["trim_r"]), (duty(255, 0), duty(255, 30)), "%s: SetMotorTrim(30)" % name)
        check.equal((got["trim_far_l"], got["trim_far_r"]), (0, 255), "%s: after SetMotorTrim(-128)" % name)
        check.equal((got["tris"], got["ccp"], got["ccp2"]), (0, 0x0C, 0x0C),
                    "%s: RC0, RC1, RC2, RC5 outputs, both CCP modules in PWM mode" % name)
    check_pwm_pins(args, folder, check)


def check_pwm_pins(args, folder, check):
    """The duties reach the pins: RC2 and RC1 sampled at known places of the PWM period.

    A cycle break on the very cycle where Timer 2 restarts its period stops Timer 2 in gpsim,
    so the samples keep away from that cycle: a first run reads Timer 2 at a mark, and the
    second samples at phases of the period counted from that reading (the runs are alike)."""
    d = Driver()
    d.do("SetMotors(0x00, 0x40, 0xFF, 0x10)")  # left 64 forwards, right 240 backwards
    cod = d.build(args, folder, "pwm", dict(bWaitForButton=0), check)
    if cod is None:
        return
    mark = 20000
    sim = Sim(cod)
    sim.show_at(mark, ["tmr2"])
    timer = sim.run(args.gpsim)[(mark, "tmr2")]
    sim = Sim(cod)
    sim.show_at(mark, ["tmr2"])
    phases = list(range(8, 256, 16))
    cycles = [mark + 256 * (k + 1) + (phase - timer) % 256 for k, phase in enumerate(phases)]
    for c in cycles:
        sim.show_at(c, ["portc"])
    values = sim.run(args.gpsim)
    check.equal(values[(mark, "tmr2")], timer, "pwm: a second run is alike")
    ports = [values[(c, "portc")] for c in cycles]
    check.equal([p >> 2 & 1 for p in ports], [int(ph < 64) for ph in phases], "pwm: RC2 over a period, duty 64")
    check.equal([p >> 1 & 1 for p in ports], [int(ph < 240) for ph in phases], "pwm: RC1 over a period, duty 240")
    check.true(all(p & DIR_RIGHT and not p & DIR_LEFT for p in ports), "pwm: direction pins steady, right backwards")


# Codes of the converter (10 bits) that the voltages on the analogue pins stand for, chosen below
# 500 so that a converter scaling by 1023 or 1024 reads the same. IR front 102 reads 25 at 8 bits.
ANALOGUE = {"porta0": 333, "porta1": 217, "porta2": 161, "porta3": 102, "porta5": 458}
LDR, MIC, IR_L, IR_F, IR_R = "porta0", "porta1", "porta2", "porta3", "porta5"
# Thresholds tried against those readings, on each side of them and at the Integer's ends.
THRESHOLDS = {
    0: dict(iThreshLdr=83, iThreshMic=53, iThreshL=-32768, iThreshF=26, iThreshR=114),
    1: dict(iThreshLdr=-32768, iThreshMic=217, iThreshL=162, iThreshF=102, iThreshR=32767),
}


def area_analogue(args, folder, check):
    # Every 16-bit reading whole: a wrong high byte from the port's optimizer shows here.
    calls = [("ldr", "ReadLdr()", LDR), ("mic", "ReadMic()", MIC), ("side_l", "ReadSideSensor(0)", IR_L),
             ("side_f", "ReadSideSensor(1)", IR_F), ("side_r", "ReadSideSensor(2)", IR_R),
             ("side_fc", "ReadSideSensor('f')", IR_F), ("side_lc", "ReadSideSensor('L')", IR_L),
             ("side_x", "ReadSideSensor(7)", IR_R)]
    tests = [("lvl_ldr", "TestLevel(0)", LDR, "iThreshLdr", 1), ("lvl_mic", "TestLevel(1)", MIC, "iThreshMic", 1),
             ("tst_l", "TestSideSensor(0)", IR_L, "iThreshL", -1), ("tst_f", "TestSideSensor('F')", IR_F, "iThreshF", -1),
             ("tst_r", "TestSideSensor(2)", IR_R, "iThreshR", -1)]
    d = Driver()
    for name, call, _ in calls:
        d.word(name, call)
    for name, call, _, _, _ in tests:
        d.byte(name, call)

    def sources(sim):
        for pin, code in ANALOGUE.items():
            sim.drive(pin, (code + 0.5) * VDD / 1024)

    for wide in (0, 1):
        settings = dict(THRESHOLDS[wide], bWaitForButton=0, bReturnInt=wide)
        label = "analogue%d" % (10 if wide else 8)
        got = d.run(args, folder, label, settings, check, setup=sources)
        if got is None:
            continue
        reading = {pin: code if wide else code >> 2 for pin, code in ANALOGUE.items()}
        for name, call, pin in calls:
            check.equal(got[name], reading[pin], "%s: %s" % (label, call))
        for name, call, pin, setting, sign in tests:
            threshold = settings[setting]
            want = int(reading[pin] > threshold) if sign > 0 else int(threshold > reading[pin])
            check.equal(got[name], want, "%s: %s with %s %d" % (label, call, setting, threshold))


def area_tone(args, folder, check):
    # 1000 Hz for 12 ms, a rest of 5 ms, 400 Hz for 10 ms: frequency in tens of hertz.
    d = Driver()
    d.do("PlayTone(100, 0, 12)")
    d.byte("after1", "PORTB & 0x20")
    d.do("PlayTone(0, 0, 5)")
    d.do("PlayTone(40, 0, 10)")
    d.byte("after2", "PORTB & 0x20")
    cod = d.build(args, folder, "tone", dict(bWaitForButton=0), check)
    if cod is None:
        return
    sim = Sim(cod)
    step, end = 400, 160000
    for c in range(step, end, step):
        sim.show_at(c, ["portb"])
    sim.show_at(end, d.shown())
    values = sim.run(args.gpsim)
    got = d.results(values, end)
    check.equal((got["done"], got["after1"], got["after2"]), (1, 0, 0),
                "tone: the driver's end reached, the sounder pin low after each tone")
    edges = toggles([(c, values[(c, "portb")] >> 5 & 1) for c in range(step, end, step)])
    groups = []  # bursts of toggling, apart by 4 ms or more
    for c in edges:
        if groups and c - groups[-1][-1] < 4 * CYCLES_PER_MS:
            groups[-1].append(c)
        else:
            groups.append([c])
    check.equal(len(groups), 2, "tone: two bursts of toggling on RB5 (toggles at %s)" % edges[:60])
    if len(groups) != 2:
        return
    for group, hz, ms in zip(groups, (1000, 400), (12, 10)):
        half = (group[-1] - group[0]) / max(len(group) - 1, 1)
        measured = CYCLES_PER_MS * 1000 / (2 * half)
        check.true(abs(measured - hz) < hz * 0.05, "tone: %.0f Hz measured, %d Hz asked" % (measured, hz))
        length = (group[-1] - group[0] + half) / CYCLES_PER_MS
        check.true(abs(length - ms) < 1.0, "tone: %.1f ms at %d Hz, %d ms asked" % (length, hz, ms))
    rest = (groups[1][0] - groups[0][-1]) / CYCLES_PER_MS
    check.true(4.5 < rest < 6.5, "tone: %.1f ms of silence between the tones, 5 ms asked" % rest)


def area_start(args, folder, check):
    # The right switch is pressed at 20000 cycles and released at 150000; each edge is followed by
    # 20 ms of debounce. Then the left switch goes down and up for WaitSwitch.
    d = Driver()
    d.byte("started", "1")
    d.do("WriteLeds(0x2D)")
    d.byte("before", "WaitSwitch(0)")
    d.do("while (WaitSwitch(0)) { }")
    d.byte("waited", "1")
    cod = d.build(args, folder, "start", dict(bWaitForButton=1), check)
    if cod is None:
        return
    sim = Sim(cod)
    sim.pulse("portb1", [(20000, 1), (150000, 0)])
    sim.pulse("portb0", [(320000, 1), (420000, 0)])
    sim.drive("portb2", 0.0)
    sim.drive("portb3", 0.0)
    marks = [140000, 240000, 275000, 400000, 500000, 560000]
    for c in marks:
        sim.show_at(c, ["_chk_started", "_chk_waited", "portd"])
    sim.show_at(marks[-1] + 1000, ["_chk_before"])
    values = sim.run(args.gpsim)
    # Release at 150000 plus 20 ms of debounce: running by 275000, not yet at 240000.
    check.equal([values[(c, "_chk_started")] for c in marks], [0, 0, 1, 1, 1, 1],
                "start: the program runs once a switch was pressed and released")
    check.equal((values[(240000, "portd")], values[(275000, "portd")]), (0, 0x2D),
                "start: LEDs dark while waiting, then the program's first LEDs")
    check.equal(values[(marks[-1] + 1000, "_chk_before")], 1,
                "start: WaitSwitch(0) gives 1 while the switch has not been pressed")
    # WaitSwitch gives 0 once the left switch is released (420000) plus its debounce, not before.
    check.equal([values[(c, "_chk_waited")] for c in marks], [0, 0, 0, 0, 0, 1],
                "start: WaitSwitch ends the loop after press and release")


AREAS = {"settings": area_settings, "motors": area_motors, "analogue": area_analogue, "tone": area_tone,
         "start": area_start}


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("area", choices=sorted(AREAS))
    for option in ("host", "module", "sdcc", "gpsim"):
        ap.add_argument("--" + option, required=True)
    ap.add_argument("--keep", help="folder to keep the programs and scripts in")
    a = ap.parse_args()
    check = Checker()
    with tempfile.TemporaryDirectory() as tmp:
        folder = a.keep or tmp
        os.makedirs(folder, exist_ok=True)
        AREAS[a.area](a, folder, check)
    return check.finish(a.area)


if __name__ == "__main__":
    sys.exit(main())
