"""Random robot programs as trees: made from a seed, written as .kflow text with no more brackets
than C's precedence needs, and made one step smaller for a shrinker.

Expressions: ("lit", value, text), ("var", name), ("par", e), ("un", op, e), ("bin", op, l, r).
Statements: ("decl", name, is_byte, e or None), ("set", name, e), ("call", macro, e),
("repeat", e, body), ("while", e, body), ("if", [("arm", e, body), ...], body or None), ("stop",).
A body is a list of statements.
"""

# Binary operators by how tightly they bind, as in C: 1 binds loosest.
LEVEL = {"||": 1, "&&": 2, "|": 3, "^": 4, "&": 5, "==": 6, "!=": 6, "<": 7, "<=": 7, ">": 7, ">=": 7,
         "<<": 8, ">>": 8, "+": 9, "-": 9, "*": 10, "/": 10, "%": 10}
UNARY, PRIMARY = 11, 12
MACROS = ("LedOn", "LedOff", "WriteLeds")
# Values on both sides of every edge the chip's bytes and words have.
EDGES = [0, 1, 2, 3, 5, 7, 8, 15, 16, 31, 127, 128, 129, 254, 255, 256, 257, 4095, 32766, 32767,
         32768, 32769, 65279, 65280, 65534, 65535]
ESCAPES = {10: "\\n", 13: "\\r", 9: "\\t", 0: "\\0", 92: "\\\\", 39: "\\'"}
MAX_VARIABLES = 7


def word(v):
    """The low 16 bits as the chip's signed int."""
    v &= 0xFFFF
    return v - 0x10000 if v & 0x8000 else v


def lit(v, text=None):
    return ("lit", word(v), text if text is not None else str(v & 0xFFFF))


class Generator:
    def __init__(self, rng):
        self.rng = rng

    def literal(self, top=None):
        r = self.rng
        v = r.randrange(top) if top else r.choice([r.choice(EDGES), r.randrange(65536), r.randrange(300)])
        form = r.choice("dxbc")
        if form == "c":
            v = v if v in ESCAPES or 32 <= v < 127 else r.choice(list(ESCAPES) + list(range(32, 127)))
            return lit(v, "'%s'" % ESCAPES.get(v, chr(v)))
        if form == "x":
            return lit(v, ("0x%0*x" if r.random() < 0.5 else "0X%0*X") % (r.randrange(1, 5), v))
        return lit(v, "0b" + bin(v)[2:] if form == "b" else str(v))

    def expr(self, depth):
        r = self.rng
        roll = r.random()
        if depth <= 0 or roll < 0.2:
            return ("var", r.choice(self.names)) if self.names and r.random() < 0.6 else self.literal()
        if roll < 0.3:
            return ("un", r.choice("-!~"), self.expr(depth - 1))
        if roll < 0.35:
            return ("par", self.expr(depth - 1))
        op = r.choice(list(LEVEL))
        left = self.expr(depth - 1)
        if op in ("<<", ">>") and r.random() < 0.7:
            right = self.literal(21)
        elif op in ("/", "%") and r.random() < 0.4:
            right = r.choice([lit(0), ("un", "-", self.literal(9)), self.literal(9)])
        else:
            right = self.expr(depth - 1)
        return ("bin", op, left, right)

    def block(self, depth, size):
        return [self.statement(depth) for _ in range(self.rng.randrange(1, size + 1))]

    def statement(self, depth):
        r = self.rng
        roll = r.random() if depth < 3 and self.names else 0
        if roll < 0.5:
            if self.names and r.random() < 0.85:
                return ("set", r.choice(self.names), self.expr(r.randrange(1, 5)))
            return ("call", r.choice(MACROS), self.expr(r.randrange(0, 3)))
        if roll < 0.7:
            arms = [("arm", self.expr(3), self.block(depth + 1, 3)) for _ in range(r.randrange(1, 4))]
            return ("if", arms, self.block(depth + 1, 2) if r.random() < 0.5 else None)
        if roll < 0.8:
            # Now and then a count past 32767, over a body that costs little.
            if r.random() < 0.15:
                return ("repeat", r.choice([("un", "-", lit(r.randrange(1, 3))), lit(r.randrange(32760, 65536))]),
                        [("set", r.choice(self.names), ("bin", r.choice("+-^"), ("var", r.choice(self.names)),
                                                        self.literal()))])
            return ("repeat", self.literal(7) if r.random() < 0.7 else self.expr(2), self.block(depth + 1, 3))
        if roll < 0.9 and self.guards:
            # A loop with a bound: its guard counts the passes and nothing else sets it.
            g = self.guards.pop()
            cond = ("bin", "&&", ("bin", "<", ("var", g), self.literal(6)), self.expr(2))
            return ("while", cond, [("set", g, ("bin", "+", ("var", g), lit(1)))] + self.block(depth + 1, 3))
        if roll < 0.98:
            return ("call", r.choice(MACROS), self.expr(2))
        return ("stop",)

    def program(self):
        """Declarations among statements at the outermost level; guards of loops first."""
        r = self.rng
        self.names, self.guards, body = [], [], []
        for k in range(r.randrange(0, 3)):
            self.guards.append("w%d" % k)
            body.append(("decl", "w%d" % k, r.random() < 0.5, None))
        for k in range(r.randrange(2, 10)):
            if len(self.names) < MAX_VARIABLES and (not self.names or r.random() < 0.35):
                is_byte = r.random() < 0.5
                value = self.expr(r.randrange(0, 4)) if r.random() < 0.8 else None
                name = "%s%d" % ("b" if is_byte else "i", k)
                body.append(("decl", name, is_byte, value))
                self.names.append(name)
            else:
                body.append(self.statement(0))
        return body


def expr_text(e, need=0):
    kind = e[0]
    if kind == "lit":
        text, level = e[2], PRIMARY
    elif kind == "var":
        text, level = e[1], PRIMARY
    elif kind == "par":
        text, level = "(" + expr_text(e[1]) + ")", PRIMARY
    elif kind == "un":
        operand = expr_text(e[2], UNARY)
        text, level = e[1] + (" " if operand.startswith("-") else "") + operand, UNARY
    else:
        level = LEVEL[e[1]]
        text = "%s %s %s" % (expr_text(e[2], level), e[1], expr_text(e[3], level + 1))
    return "(" + text + ")" if level < need else text


def size(s):
    """The lines a statement takes."""
    if s[0] in ("repeat", "while"):
        return 2 + sum(size(t) for t in s[2])
    if s[0] == "if":
        arms = sum(1 + sum(size(t) for t in a[2]) for a in s[1])
        return arms + 1 + (1 + sum(size(t) for t in s[2]) if s[2] is not None else 0)
    return 1


def lines(body, depth=0):
    pad = "    " * depth
    out = []
    for s in body:
        kind = s[0]
        if kind == "decl":
            out.append(pad + ("byte " if s[2] else "int ") + s[1] + ("" if s[3] is None else " = " + expr_text(s[3])))
        elif kind == "set":
            out.append(pad + s[1] + " = " + expr_text(s[2]))
        elif kind == "call":
            out.append(pad + s[1] + "(" + expr_text(s[2]) + ")")
        elif kind == "stop":
            out.append(pad + "stop")
        elif kind in ("repeat", "while"):
            out += [pad + kind + " " + expr_text(s[1])] + lines(s[2], depth + 1) + [pad + "end"]
        else:
            for k, arm in enumerate(s[1]):
                out += [pad + ("if " if k == 0 else "else if ") + expr_text(arm[1])] + lines(arm[2], depth + 1)
            if s[2] is not None:
                out += [pad + "else"] + lines(s[2], depth + 1)
            out.append(pad + "end")
    return out


# Every program is framed by a byte that its last line sets, so that the chip's run can stop
# there; a program that stops early leaves it at 0.
HEAD, TAIL = "byte done = 0", "done = 1"
FIRST_LINE = 2


def text(body):
    return "\n".join([HEAD] + lines(body) + [TAIL]) + "\n"


def valid(body):
    """Every variable declared before its use, every if with an arm."""
    declared = set()

    def uses(e):
        return {e[1]} if e[0] == "var" else set().union(*[uses(c) for c in e[1:] if isinstance(c, tuple)])

    def block(b):
        for s in b:
            parts = [c for c in s[1:] if isinstance(c, tuple)]
            if s[0] in ("set",) and s[1] not in declared or any(not uses(p) <= declared for p in parts):
                return False
            if s[0] == "if" and (not s[1] or not all(uses(a[1]) <= declared and block(a[2]) for a in s[1])):
                return False
            if s[0] in ("repeat", "while") and not block(s[2]) or s[0] == "if" and s[2] and not block(s[2]):
                return False
            if s[0] == "decl":
                if s[1] in declared:
                    return False
                declared.add(s[1])
        return True

    return block(body)


def smaller(node):
    """Every tree one step smaller than node: a statement or an arm left out, a block in place of
    its statement, an operand in place of its operation, a literal made small."""
    if isinstance(node, list):
        for i, s in enumerate(node):
            yield node[:i] + node[i + 1:]
            inner = [a[2] for a in s[1]] + [s[2] or []] if s[0] == "if" else [s[2]] if s[0] in ("repeat", "while") else []
            for b in inner:
                yield node[:i] + b + node[i + 1:]
        for i, s in enumerate(node):
            for c in smaller(s):
                yield node[:i] + [c] + node[i + 1:]
        return
    kind = node[0]
    if kind == "if" and node[2] is not None:
        yield ("if", node[1], None)
    if kind in ("un", "par", "bin"):
        yield from (c for c in node[2:] if isinstance(c, tuple)) if kind != "par" else [node[1]]
    if kind in ("un", "par", "bin", "var") or kind == "lit" and node[1] not in (0, 1):
        yield lit(0)
        yield lit(1)
    if kind == "lit" and abs(node[1]) > 1:
        yield lit(node[1] // 2)
    for i, c in enumerate(node):
        if isinstance(c, (tuple, list)) and i > 0:
            for d in smaller(c):
                yield node[:i] + (d,) + node[i + 1:]
