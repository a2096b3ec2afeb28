#!/usr/bin/env python3
"""Checks of the robot's code file, read the way the component and Kestrone read it.

  check_code_file.py definitions CODE_FILE
      The definition sections parse, every macro has its block and its parameters, the pin
      table agrees with the wiring in the C, the markers stand where the block reader finds them.

What the C does on the chip, at every setting, is for tests/pic: compiled by the pic14 compiler
and run in gpsim.
"""

import argparse
import re
import sys

BLANKS = " \t\v"

# Which define of the C carries each pin that is not an LED (pins 9 to 12).
PIN_DEFINES = {9: "ROV_SWITCH_LEFT", 10: "ROV_SWITCH_RIGHT", 11: "ROV_LINE_LEFT", 12: "ROV_LINE_RIGHT"}
PORT_LETTERS = "ABCDE"
DIR_INPUT, DIR_OUTPUT = 1, 2

TOKENS = ["%" + c for c in "abcdefghijklmnop"]
TEXT_TOKENS = ("%m", "%n")

def split_lines(data):
    return re.split(r"\r\n|\r|\n", data)


class Profile:
    """The profile reader's view of the file: first section of a name and first key win,
    names match without regard to case, blanks are cut, ';' lines are comments."""

    def __init__(self, text):
        self.sections = {}
        current = None
        for raw in re.split(r"[\r\n]+", text):
            line = raw.strip(BLANKS)
            if line.startswith("["):
                end = line.find("]")
                name = (line[1:end] if end >= 0 else line[1:]).strip(BLANKS).lower()
                if name in self.sections:
                    current = None  # a repeated section is never searched
                else:
                    current = self.sections[name] = {}
                continue
            if current is None or line.startswith(";") or "=" not in line:
                continue
            key, value = line.split("=", 1)
            key, value = key.strip(BLANKS).lower(), value.strip(BLANKS)
            if len(value) >= 2 and value[0] in "'\"" and value[-1] == value[0]:
                value = value[1:-1]
            current.setdefault(key, value)

    def get(self, section, key, default=None):
        return self.sections.get(section.lower(), {}).get(str(key).lower(), default)

    def has_section(self, section):
        return section.lower() in self.sections


def read_block(lines, name):
    """The block reader: exact marker lines, later pairs continue the text."""
    start, end = "/*" + name + "_Start*/", "/*" + name + "_End*/"
    inside, seen_start, seen_end, out = False, False, False, []
    for line in lines:
        if inside:
            if line == end:
                seen_end, inside = True, False
            else:
                out.append(line)
        elif line == start:
            seen_start, inside = True, True
    if not (seen_start and seen_end):
        return None
    return "".join(l + "\n" for l in out)


def to_int(text):
    return int(float(text.strip(BLANKS)))


def to_bool(text):
    t = text.strip(BLANKS).lower()
    if t in ("true", "false"):
        return t == "true"
    return float(t) != 0


class Checker:
    def __init__(self):
        self.failures = []
        self.count = 0

    def check(self, ok, message):
        self.count += 1
        if not ok:
            self.failures.append(message)
        return ok

    def finish(self, what):
        for f in self.failures:
            print("FAIL: " + f)
        print("%s: %d checks, %d failed" % (what, self.count, len(self.failures)))
        return 1 if self.failures else 0


def macro_table(p):
    """[(name, return word, [(param, type)])] in file order."""
    table = []
    for i in range(1, to_int(p.get("MacroNames", "Count", "0")) + 1):
        name = p.get("MacroNames", i, "")
        ret = p.get("MacroReturns", i, "void")
        count = to_int(p.get("MacroParameters_" + name, "Count", "0"))
        params = [(p.get("MacroParameters_" + name, j, ""), p.get("MacroParamTypes_" + name, j, "char"))
                  for j in range(1, count + 1)]
        table.append((name, ret, params))
    return table


def signature(name, ret, params):
    args = ", ".join("%s %s" % (t, n) for n, t in params) or "void"
    return "%s %s(%s)" % (ret, name, args)


def check_definitions(path):
    c = Checker()
    with open(path, "rb") as f:
        text = f.read().decode("latin-1")
    lines = split_lines(text)
    p = Profile(text)

    # Settings.
    c.check(p.get("Settings", "IsAnalogue") is not None and not to_bool(p.get("Settings", "IsAnalogue")),
            "[Settings] IsAnalogue must be 0")
    c.check(p.get("Settings", "MultipleAllowed") is not None
            and not to_bool(p.get("Settings", "MultipleAllowed")), "[Settings] MultipleAllowed must be 0")
    desc = p.get("Settings", "Description", "")
    c.check(0 < len(desc) <= 254, "[Settings] Description must be given, at most 254 characters")

    # Blocks and markers.
    for block in ("DefinesCode", "InitialisationCode", "InterruptCode"):
        body = read_block(lines, block)
        c.check(body is not None and body.strip() != "", "block %s missing or empty" % block)
    starts = {}
    for n, line in enumerate(lines):
        m = re.fullmatch(r"/\*(\w+)_(Start|End)\*/", line.strip(BLANKS))
        if not m:
            continue
        c.check(line == line.strip(BLANKS), "line %d: marker with blanks around it is no marker" % (n + 1))
        if m.group(2) == "Start":
            starts[m.group(1)] = starts.get(m.group(1), 0) + 1
    for block, k in starts.items():
        c.check(k == 1, "block %s has %d start markers" % (block, k))

    # Macros.
    table = macro_table(p)
    c.check(len(table) == 21, "[MacroNames] Count must be 21, is %d" % len(table))
    names = [t[0] for t in table]
    c.check(len(set(n.lower() for n in names)) == len(names), "macro names repeat")
    defines = read_block(lines, "DefinesCode") or ""
    for i, (name, ret, params) in enumerate(table, start=1):
        c.check(re.fullmatch(r"[A-Za-z_]\w*", name) is not None, "macro %d has no usable name: %r" % (i, name))
        c.check(ret in ("void", "char", "int"), "macro %s returns %r" % (name, ret))
        c.check(p.get("MacroIsPrivate", i) is not None, "macro %s: no [MacroIsPrivate] entry" % name)
        if params:
            c.check(p.has_section("MacroParamTypes_" + name), "macro %s: no [MacroParamTypes_%s]" % (name, name))
        for j, (pname, ptype) in enumerate(params, start=1):
            c.check(re.fullmatch(r"[A-Za-z_]\w*", pname) is not None, "parameter %d.%d has no name" % (i, j))
            c.check(ptype in ("char", "int"), "parameter %s.%s has type %r" % (name, pname, ptype))
        body = read_block(lines, "Macro_" + name)
        if c.check(body is not None and body.strip() != "", "macro %s: block Macro_%s missing or empty" % (name, name)):
            if ret != "void":
                c.check(re.search(r"\breturn\b", body) is not None, "macro %s returns nothing" % name)
            for pname, _ in params:
                c.check(re.search(r"\b%s\b" % re.escape(pname), body) is not None,
                        "macro %s never uses its parameter %s" % (name, pname))
            # The wrapper shown in the file is the one Kestrone writes from the sections.
            at = lines.index("/*Macro_%s_Start*/" % name)
            c.check(at >= 2 and lines[at - 1] == "{" and lines[at - 2] == signature(name, ret, params),
                    "macro %s: the wrapper before its block is not %r" % (name, signature(name, ret, params)))
    sections = set(p.sections)
    for s in sections:
        if s.startswith("macroparameters_") or s.startswith("macroparamtypes_"):
            c.check(s.split("_", 1)[1] in {n.lower() for n in names}, "section [%s] belongs to no macro" % s)

    # Settings tokens: each number in a #define of its own in the definitions; the two texts
    # nowhere, since no place in C holds a user's text safely.
    code = "".join(read_block(lines, b) or "" for b in
                   ["DefinesCode", "InitialisationCode", "InterruptCode"] + ["Macro_" + n for n in names])
    for token in TOKENS:
        if token in TEXT_TOKENS:
            c.check(token not in code, "token %s pastes a user's text into the C" % token)
        else:
            c.check(re.search(r"^#define\s+\w+\s+\(%s\)" % token, defines, re.M) is not None
                    and code.count(token) == 1, "token %s must stand once, in a #define of its own" % token)

    # Pins, against the wiring that the C defines.
    count = to_int(p.get("Pins", "Count", "0"))
    c.check(count == 12, "[Pins] Count must be 12, is %d" % count)
    init = read_block(lines, "InitialisationCode") or ""
    tris = {m.group(1): int(m.group(2), 0) for m in re.finditer(r"\bTRIS([A-E])\s*=\s*(0x[0-9A-Fa-f]+|\d+)\s*;", init)}
    led_port = re.search(r"#define\s+ROV_LEDS\s+PORT([A-E])\b", defines)
    placed = {}
    for i in range(1, count + 1):
        name = p.get("Pins", i, "")
        port = to_int(p.get("PinPort", i, "0"))
        bit = to_int(p.get("PinDesiredBit", i, "0"))
        direction = to_int(p.get("PinDirection", i, "3"))
        c.check(name != "", "pin %d has no name" % i)
        c.check(0 <= port <= 4 and 0 <= bit <= 7, "pin %d: port %d bit %d is no place" % (i, port, bit))
        c.check((port, bit) not in placed, "pin %d shares its place with pin %s" % (i, placed.get((port, bit))))
        placed[(port, bit)] = i
        c.check(to_bool(p.get("PinMustUsePort", i, "False")) and to_bool(p.get("PinMustUsePin", i, "0")),
                "pin %d must be fixed to its port and bit" % i)
        same = to_int(p.get("SamePortAsPinX", i, "0"))
        c.check(0 <= same < count and to_int(p.get("PinPort", same + 1, "0")) == port,
                "pin %d: SamePortAsPinX %d names no pin on its port" % (i, same))
        c.check(not to_bool(p.get("PinValue", i, "0")), "pin %d starts high" % i)
        letter = PORT_LETTERS[port] if 0 <= port <= 4 else "?"
        if i <= 8:
            c.check(direction == DIR_OUTPUT, "LED pin %d must be an output" % i)
            c.check(led_port is not None and led_port.group(1) == letter and bit == i - 1,
                    "LED %d: the table says R%s%d, the C drives the LED port bit %d" % (i - 1, letter, bit, i - 1))
        else:
            c.check(direction == DIR_INPUT, "pin %d must be an input" % i)
            m = re.search(r"#define\s+%s\s+R([A-E])(\d)\b" % PIN_DEFINES.get(i, "?"), defines)
            c.check(m is not None and (m.group(1), int(m.group(2))) == (letter, bit),
                    "pin %d (%s): the table says R%s%d, the C reads %s" % (i, name, letter, bit, m.group(0) if m else "nothing"))
        if letter in tris:
            is_input = bool(tris[letter] >> bit & 1)
            c.check(is_input == (direction == DIR_INPUT),
                    "pin %d: TRIS%s makes R%s%d an %s" % (i, letter, letter, bit, "input" if is_input else "output"))
        else:
            c.check(False, "pin %d: the initialisation never sets TRIS%s" % (i, letter))
    return c.finish("definitions")


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("mode", choices=["definitions"])
    ap.add_argument("code_file")
    return check_definitions(ap.parse_args().code_file)


if __name__ == "__main__":
    sys.exit(main())
