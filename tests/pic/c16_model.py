"""A small model of what a robot program means, written from the language's rules alone: C on
16-bit ints that wrap, bytes that keep their low 8 bits, && and || that decide from the left,
repeat counts read once as 0 to 65535, and a stop at a division by 0. Runs the trees of
kflow_random."""

from kflow_random import FIRST_LINE, size, word


class Stopped(Exception):
    """The program ended before its last line: at a division by 0 (its line) or a `stop`."""

    def __init__(self, line=None):
        super().__init__(line)
        self.line = line


class TooLong(Exception):
    pass


def truncated(a, b):
    q = abs(a) // abs(b)
    return q if (a < 0) == (b < 0) else -q


def shifted(op, a, n):
    n &= 0xFFFF
    if op == "<<":
        return 0 if n > 15 else word(a << n)
    return a >> min(n, 15)  # Python's >> keeps the sign, as the chip's does


ARITHMETIC = {
    "*": lambda a, b: word(a * b), "+": lambda a, b: word(a + b), "-": lambda a, b: word(a - b),
    "/": lambda a, b: word(truncated(a, b)), "%": lambda a, b: word(a - b * truncated(a, b)),
    "<": lambda a, b: int(a < b), "<=": lambda a, b: int(a <= b), ">": lambda a, b: int(a > b),
    ">=": lambda a, b: int(a >= b), "==": lambda a, b: int(a == b), "!=": lambda a, b: int(a != b),
    "&": lambda a, b: word(a & b), "^": lambda a, b: word(a ^ b), "|": lambda a, b: word(a | b),
    "<<": lambda a, b: shifted("<<", a, b), ">>": lambda a, b: shifted(">>", a, b),
}
# Rough instruction cycles of the chip's work, to keep every program short there: its 16-bit
# multiply and divide routines loop over the bits.
CYCLES = {"*": 900, "/": 1400, "%": 1400, "<<": 300, ">>": 300}


class Model:
    def __init__(self, budget):
        self.budget = budget
        self.values, self.bytes, self.leds, self.cycles = {}, set(), 0, 0

    def spend(self, cycles):
        self.cycles += cycles
        if self.cycles > self.budget:
            raise TooLong()

    def eval(self, e, line):
        kind = e[0]
        if kind == "lit":
            return e[1]
        if kind == "var":
            return self.values[e[1]]
        if kind == "par":
            return self.eval(e[1], line)
        if kind == "un":
            v = self.eval(e[2], line)
            return word(-v) if e[1] == "-" else int(v == 0) if e[1] == "!" else word(~v)
        op = e[1]
        self.spend(CYCLES.get(op, 20))
        a = self.eval(e[2], line)
        if op in ("&&", "||"):
            if (a != 0) == (op == "||"):
                return int(a != 0)
            return int(self.eval(e[3], line) != 0)
        b = self.eval(e[3], line)
        if op in ("/", "%") and b == 0:
            raise Stopped(line)
        return ARITHMETIC[op](a, b)

    def set(self, name, v):
        self.values[name] = v & 0xFF if name in self.bytes else v

    def call(self, macro, v):
        v &= 0xFF  # the macros take a char
        if macro == "WriteLeds":
            self.leds = v
        elif v < 8:
            self.leds = self.leds | 1 << v if macro == "LedOn" else self.leds & ~(1 << v)

    def block(self, body, line):
        for s in body:
            self.statement(s, line)
            line += size(s)

    def statement(self, s, line):
        self.spend(20)
        kind = s[0]
        if kind == "decl":
            if s[2]:
                self.bytes.add(s[1])
            self.values[s[1]] = 0
            if s[3] is not None:
                self.set(s[1], self.eval(s[3], line))
        elif kind == "set":
            self.set(s[1], self.eval(s[2], line))
        elif kind == "call":
            self.call(s[1], self.eval(s[2], line))
        elif kind == "stop":
            raise Stopped()
        elif kind == "repeat":
            for _ in range(self.eval(s[1], line) & 0xFFFF):
                self.spend(20)
                self.block(s[2], line + 1)
        elif kind == "while":
            while self.eval(s[1], line):
                self.block(s[2], line + 1)
        else:
            for arm in s[1]:
                if self.eval(arm[1], line):
                    return self.block(arm[2], line + 1)
                line += 1 + sum(size(t) for t in arm[2])
            if s[2] is not None:
                self.block(s[2], line + 1)


def run(body, budget):
    """{"values": by name, "leds": bits, "stop": None at the end, or the line of a division by 0
    (0 for a `stop`)}; raises TooLong past `budget` cycles."""
    m = Model(budget)
    stop = None
    m.values["done"] = 0
    m.bytes.add("done")
    try:
        m.block(body, FIRST_LINE)
        m.values["done"] = 1
    except Stopped as s:
        stop = s.line or 0
    return {"values": m.values, "leds": m.leds, "stop": stop}
