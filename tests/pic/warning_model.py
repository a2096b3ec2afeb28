"""The warnings of kflow_random's programs by the language's rules: constants worked out exactly
(None beyond 32 bits) to judge them, and by the chip (c16_model) for what it keeps and decides."""

import re

from c16_model import ARITHMETIC, Model, truncated
from kflow_random import FIRST_LINE, expr_text, size

LIMIT = 1 << 31
INF = float("inf")
# C's operators on integers of any size; a shift by a count below 0 is one by a large count.
EXACT = {
    "*": lambda a, b: a * b, "+": lambda a, b: a + b, "-": lambda a, b: a - b,
    "/": truncated, "%": lambda a, b: a - b * truncated(a, b),
    "<<": lambda a, b: 0 if a == 0 else None if not 0 <= b <= 31 else a << b,
    ">>": lambda a, b: a >> b if b >= 0 else -1 if a < 0 else 0,
    "&": lambda a, b: a & b, "^": lambda a, b: a ^ b, "|": lambda a, b: a | b,
    "&&": lambda a, b: int(a != 0 and b != 0), "||": lambda a, b: int(a != 0 or b != 0),
}
EXACT.update({op: ARITHMETIC[op] for op in ("<", "<=", ">", ">=", "==", "!=")})


def bounded(v):
    return v if v is not None and -LIMIT <= v <= LIMIT else None


def constant(e):
    """(exact, chip) of an expression of literals and operators alone; None for one that reads a
    variable or divides by 0, on the chip or as written."""
    kind = e[0]
    if kind in ("lit", "var", "par"):
        return (e[1] & 0xFFFF, e[1]) if kind == "lit" else None if kind == "var" else constant(e[1])
    parts = [constant(c) for c in e[2:]]
    if None in parts:
        return None
    if kind == "un":
        (a, x), = parts
        v = None if a is None else -a if e[1] == "-" else int(a == 0) if e[1] == "!" else ~a
        return bounded(v), Model(INF).eval(("un", e[1], ("lit", x)), 0)
    (a, x), (b, y) = parts
    if e[1] in ("/", "%") and 0 in (b, y):
        return None
    v = None if a is None or b is None else EXACT[e[1]](a, b)
    return bounded(v), Model(INF).eval(("bin", e[1], ("lit", x), ("lit", y)), 0)


def expected(body):
    """(line, column, what) of every warning, by place; `what` as `said` reads a warning."""
    out, bytes_ = [], {"done"}

    def warn(line, prefix, e, holder):
        c, t = constant(e), expr_text(e)
        at, high = (line, len(prefix) + len(t) - len(t.lstrip("(")) + 1), 65535 if holder == "repeat" else 255
        if c and holder == "if":
            out.append(at + (("if", c[1] != 0),))
        elif c and (c[0] is None or not 0 <= c[0] <= high):
            out.append(at + ((holder, BEYOND if c[0] is None else str(c[0]), str(c[1] & high)),))

    def block(b, line, pad):
        for s in b:
            kind = s[0]
            if kind == "decl" and s[2]:
                bytes_.add(s[1])
                if s[3] is not None:
                    warn(line, pad + "byte " + s[1] + " = ", s[3], s[1])
            elif kind == "set" and s[1] in bytes_ or kind == "call":
                warn(line, pad + s[1] + (" = " if kind == "set" else "("), s[2], s[1])
            elif kind in ("repeat", "while"):
                if kind == "repeat":
                    warn(line, pad + "repeat ", s[1], "repeat")
                block(s[2], line + 1, pad + "    ")
            elif kind == "if":
                at = line
                for k, arm in enumerate(s[1]):
                    warn(at, pad + ("if " if k == 0 else "else if "), arm[1], "if")
                    block(arm[2], at + 1, pad + "    ")
                    at += 1 + sum(size(t) for t in arm[2])
                if s[2] is not None:
                    block(s[2], at + 1, pad + "    ")
            line += size(s)

    block(body, FIRST_LINE, "")
    return sorted(out)


BEYOND = "a value beyond 32 bits"
SAID = re.compile(r":(\d+):(\d+): warning: (?:'(\w+)'[^:]*: (.+) is outside 0 to 255, so only its low 8 "
                  r"bits are kept: (\d+)|a count [^:]*: '(repeat)' reads (.+) as (\d+) times|(.*always (true)?.*))$")


def said(line):
    """(line, column, what) of a warning as `code` writes it."""
    m = SAID.search(line)
    g = [x for x in m.groups()[2:-2] if x is not None]
    return int(m.group(1)), int(m.group(2)), tuple(g) if g else ("if", m.group(10) is not None)
