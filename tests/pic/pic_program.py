"""Robot programs on the PIC: the C that `kestrone-host code` writes, its program replaced by a
driver of macro calls where a check needs one, compiled by SDCC's pic14 port and run in gpsim."""

import os
import re
import subprocess

CHIP = "16f877a"
CYCLES_PER_MS = 5000  # 20 MHz crystal, four clocks an instruction
VDD = 5.0
LOCALS_BANK = 96      # the largest bank of RAM on the 16F877A


def quote(text):
    """A string in the console's syntax."""
    escapes = {"\\": "\\\\", '"': '\\"', "\r": "\\r", "\n": "\\n", "\t": "\\t"}
    return '"' + "".join(escapes.get(c, c if 32 <= ord(c) < 127 else "\\x%02X" % ord(c)) for c in text) + '"'


def console(args, script):
    """The answer lines of a console script; a failed command raises."""
    r = subprocess.run([args.host, "console", "--module", args.module], input=script + "\nquit\n",
                       capture_output=True, text=True, encoding="latin-1")
    lines = r.stdout.splitlines()
    bad = [l for l in lines if l.startswith(("fail", "error"))]
    if bad or r.returncode != 0:
        raise RuntimeError("the console answered %s (%d): %s" % (bad, r.returncode, r.stderr[-500:]))
    return lines


def save_project(args, folder, settings):
    """A project file of a fresh object with these settings."""
    path = os.path.join(folder, "project.ktx")
    sets = ["%s = %s" % (k, quote(v) if isinstance(v, str) else v) for k, v in settings.items()]
    console(args, "\n".join(sets + ["writeprops", "store save " + quote(path)]))
    return path


HEX_WRITTEN = re.compile(r"^kestrone-host: wrote \S+ and \S+\.hex$")


def write_c(args, folder, name, program, settings, hex_too=False):
    """The C (and with hex_too the hex) of a .kflow program: the path of the C."""
    os.makedirs(folder, exist_ok=True)
    c = os.path.join(folder, name + ".c")
    command = [args.host, "code", program, "--module", args.module, "-o", c,
               "--project", save_project(args, folder, settings)] + (["--hex"] if hex_too else [])
    env = dict(os.environ, KESTRONE_PIC_PREFIX=os.path.dirname(os.path.dirname(args.sdcc)))
    r = subprocess.run(command, env=env, capture_output=True, text=True)
    if r.returncode != 0 or [l for l in (r.stdout + r.stderr).splitlines() if not HEX_WRITTEN.match(l)]:
        raise RuntimeError("kestrone-host code said (%d): %s%s" % (r.returncode, r.stdout, r.stderr))
    return c


# gplink names the linker script it picked on every link: no message about our C.
LINKER_NOTE = re.compile(r"^message: Using default linker script ")


def compile_c(args, c):
    """Compiles with SDCC for the chip: (the compiler's messages, path of the .cod or None)."""
    folder, name = os.path.split(c)
    r = subprocess.run([args.sdcc, "-mpic14", "-p" + CHIP, "--use-non-free", name], cwd=folder,
                       capture_output=True, text=True, encoding="latin-1")
    messages = [l for l in (r.stdout + r.stderr).splitlines() if l.strip() and not LINKER_NOTE.match(l)]
    cod = c[:-2] + ".cod"
    if r.returncode != 0 or not os.path.exists(cod):
        return messages + ["sdcc exited with %d and left no .cod" % r.returncode], None
    return messages, cod


def locals_bytes(asm_path):
    """Bytes of the section that holds every function's locals and temporaries. The port makes
    one such section per program and the linker must fit it into one bank of RAM."""
    with open(asm_path, encoding="latin-1") as f:
        asm = f.read()
    m = re.search(r"^UDL_\w+\s+udata\n(.*?)(?=^\S+\s+(?:udata|code|idata)\b|\Z)", asm, re.S | re.M)
    return sum(int(n) for n in re.findall(r"\sres\s+(\d+)", m.group(1))) if m else 0


class Sim:
    """A gpsim script: modules on pins, then runs to cycle marks, showing registers by name."""

    def __init__(self, cod):
        self.lines = ["load s " + os.path.basename(cod), "module library libgpsim_modules"]
        self.folder = os.path.dirname(cod)
        self.shown = []   # (mark, register) in the order gpsim shows them
        self.modules = 0

    def drive(self, pin, volts):
        """A voltage source on a pin (gpsim's pullup module with a stiff resistance)."""
        self.modules += 1
        name = "src%d" % self.modules
        self.lines += ["module load pullup " + name, "%s.voltage = %.4f" % (name, volts),
                       "%s.resistance = 100" % name, "node n_" + pin, "attach n_%s %s %s.pin" % (pin, pin, name)]

    def pulse(self, pin, edges):
        """A digital signal on a pin: edges is [(cycle, level), ...], low before the first."""
        self.modules += 1
        name = "stim%d" % self.modules
        self.lines += ["stimulus asynchronous_stimulus", "initial_state 0", "start_cycle 0",
                       "{ %s }" % ", ".join("%d, %d" % e for e in edges), "name " + name, "end",
                       "node n_" + pin, "attach n_%s %s %s" % (pin, pin, name)]

    def show_at(self, cycle, registers):
        # A cycle break that the run has already passed would never stop it.
        if self.shown and cycle < self.shown[-1][0] + 10:
            raise ValueError("cycle marks must grow by 10 or more: %d after %d" % (cycle, self.shown[-1][0]))
        self.lines += ["break c %d" % cycle, "run"] + list(registers)
        self.shown += [(cycle, r) for r in registers]

    def run(self, gpsim):
        """{(cycle, register): value} for every register shown."""
        script = os.path.join(self.folder, "run.stc")
        with open(script, "w") as f:
            f.write("\n".join(self.lines + ["quit"]) + "\n")
        try:
            r = subprocess.run([gpsim, "-i", "-c", script], cwd=self.folder, capture_output=True, text=True,
                               timeout=120)
        except subprocess.TimeoutExpired as e:
            raise RuntimeError("gpsim did not finish %s within 120 s:\n%s" % (script, (e.stdout or b"")[-2000:]))
        values = re.findall(r"^(?:\*\*gpsim> )*(\w+) = 0x([0-9a-fA-F]+)\s*$", r.stdout, re.M)
        if len(values) != len(self.shown):
            raise RuntimeError("gpsim showed %d values for %d requests:\n%s"
                               % (len(values), len(self.shown), r.stdout[-3000:] + r.stderr[-2000:]))
        return {key: int(v, 16) for key, (_, v) in zip(self.shown, values)}


def toggles(levels):
    """[(cycle, level), ...] -> the cycles at which the level changed."""
    return [c for (_, a), (c, b) in zip(levels, levels[1:]) if a != b]


class Checker:
    def __init__(self):
        self.failures, self.count = [], 0

    def equal(self, got, want, what):
        self.true(got == want, "%s: got %r, expected %r" % (what, got, want))

    def true(self, ok, what):
        self.count += 1
        if not ok:
            self.failures.append(what)
        return ok

    def finish(self, area):
        for f in self.failures:
            print("FAIL: " + f)
        print("%s: %d checks, %d failed" % (area, self.count, len(self.failures)))
        return 1 if self.failures else 0


MACRO_CALL = re.compile(r"\b[A-Z][A-Za-z]+\([^()]*\)")


class Driver:
    """Statements in place of a program: macro calls whose results and effects are copied into
    named bytes that gpsim shows once the driver has reached its end."""

    def __init__(self):
        self.names, self.statements = [], []

    def do(self, statement):
        self.statements.append("    %s;\n" % statement)

    def byte(self, name, expression):
        self.names.append(name)
        self.do("chk_%s = (unsigned char)(%s)" % (name, expression))

    def word(self, name, expression):
        self.names += [name + "_l", name + "_h"]
        self.do("{ unsigned int v = (unsigned int)(%s); chk_%s_l = (unsigned char)v; chk_%s_h = (unsigned char)(v >> 8); }"
                % (expression, name, name))

    def shown(self):
        return ["_chk_" + n for n in self.names + ["done"]]

    def build(self, args, folder, name, settings, check):
        """The host's C of a program calling the driver's macros, its program replaced by the
        driver; compiled: the .cod, or None after a failed check."""
        sub = os.path.join(folder, name)
        os.makedirs(sub, exist_ok=True)
        calls = [m for s in self.statements for m in MACRO_CALL.findall(s)]
        with open(os.path.join(sub, "calls.kflow"), "w") as f:
            f.write("".join(c + "\n" for c in calls))
        c = write_c(args, sub, name, os.path.join(sub, "calls.kflow"), settings)
        with open(c, encoding="latin-1") as f:
            text = f.read()
        head, main = text.split("void main(void)\n{\n")
        init = main.split("    /* calls.kflow */\n")[0]
        chk = "".join("volatile unsigned char chk_%s;\n" % n for n in self.names + ["done"])
        with open(c, "w", encoding="latin-1") as f:
            f.write(head + chk + "void main(void)\n{\n" + init + "".join(self.statements) +
                    "    chk_done = 1;\n    for (;;) {\n    }\n}\n")
        messages, cod = compile_c(args, c)
        check.true(not messages, "%s: the compiler said:\n  %s" % (name, "\n  ".join(messages)))
        return cod

    def results(self, values, cycle):
        """The driver's bytes at a cycle mark, by name; words put together."""
        out = {n[len("_chk_"):]: values[(cycle, n)] for n in self.shown()}
        for n in [n for n in out if n.endswith("_l") and n[:-2] + "_h" in out]:
            out[n[:-2]] = out[n] | out[n[:-2] + "_h"] << 8
        return out

    def run(self, args, folder, name, settings, check, setup=None, cycles=60000):
        """Builds and runs the driver to its end: its results, or None."""
        cod = self.build(args, folder, name, settings, check)
        if cod is None:
            return None
        sim = Sim(cod)
        if setup:
            setup(sim)
        sim.show_at(cycles, self.shown())
        got = self.results(sim.run(args.gpsim), cycles)
        check.equal(got["done"], 1, "%s: the driver reached its end within %d cycles" % (name, cycles))
        return got
