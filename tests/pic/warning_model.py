"""The warnings a random program (kflow_random's trees) should draw, from the language's rules
alone: a constant outside 0 to 255 given to a byte or to a macro's char, a constant count
outside 0 to 65535, a constant condition. Constants are worked out exactly, as a reader takes
them (None once beyond 32 bits), and by the chip (c16_model) for what it keeps and decides."""

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

    def warn(line, prefix, e, holder, low, high, kept):
        c = constant(e)
        t = expr_text(e)
        column = len(prefix) + len(t) - len(t.lstrip("(")) + 1
        if c and holder == "if":
            out.append((line, column, ("if", c[1] != 0)))
        elif c and holder != "if" and not (c[0] is not None and low <= c[0] <= high):
            out.append((line, column, (holder, str(c[0]) if c[0] is not None else None, c[1] & kept)))

    def block(b, line, pad):
        for s in b:
            if s[0] == "decl" and s[2]:
                bytes_.add(s[1])
            if s[0] == "decl" and s[2] and s[3] is not None:
                warn(line, pad + "byte " + s[1] + " = ", s[3], s[1], 0, 255, 0xFF)
            elif s[0] == "set" and s[1] in bytes_:
                warn(line, pad + s[1] + " = ", s[2], s[1], 0, 255, 0xFF)
            elif s[0] == "call":
                warn(line, pad + s[1] + "(", s[2], s[1], 0, 255, 0xFF)
            elif s[0] == "repeat":
                warn(line, pad + "repeat ", s[1], "repeat", 0, 65535, 0xFFFF)
            if s[0] in ("repeat", "while"):
                block(s[2], line + 1, pad + "    ")
            elif s[0] == "if":
                arm_line = line
                for k, arm in enumerate(s[1]):
                    warn(arm_line, pad + ("if " if k == 0 else "else if "), arm[1], "if", 0, 0, 0)
                    block(arm[2], arm_line + 1, pad + "    ")
                    arm_line += 1 + sum(size(t) for t in arm[2])
                if s[2] is not None:
                    block(s[2], arm_line + 1, pad + "    ")
            line += size(s)

    block(body, FIRST_LINE, "")
    return sorted(out)


WARNING = re.compile(r":(\d+):(\d+): warning: (.*)$")
KEPT = re.compile(r"'(\w+)'[^:]*: (-?\d+|a value beyond 32 bits) is outside 0 to 255, so only its low 8 bits are kept: (\d+)$")
READ = re.compile(r"'(repeat)' reads (-?\d+|a value beyond 32 bits) as (\d+) times$")


def said(line):
    """(line, column, what) of a warning as `code` writes it."""
    m = WARNING.search(line)
    text = m.group(3)
    k = KEPT.search(text) or READ.search(text)
    if k:
        what = (k.group(1), None if k.group(2).startswith("a ") else k.group(2), int(k.group(3)))
    else:
        what = ("if", "always true" in text) if "always" in text else (text,)
    return int(m.group(1)), int(m.group(2)), what
