"""The test bench of the PIC checks: a driver of macro calls after the initialisation, built
into the host's program, compiled and run in gpsim, and the checks of what it left behind."""

import os

from pic_program import DEFAULTS, RobotCode, Sim, compile_program


class Checker:
    def __init__(self):
        self.failures, self.count = [], 0

    def equal(self, got, want, what):
        self.count += 1
        if got != want:
            self.failures.append("%s: got %r, expected %r" % (what, got, want))

    def true(self, ok, what):
        self.count += 1
        if not ok:
            self.failures.append(what)

    def finish(self, area):
        for f in self.failures:
            print("FAIL: " + f)
        print("%s: %d checks, %d failed" % (area, self.count, len(self.failures)))
        return 1 if self.failures else 0


class Driver:
    """The statements after the initialisation: macro calls whose results and effects are copied
    into named bytes that gpsim shows once the driver has reached its end."""

    def __init__(self):
        self.names, self.statements = [], []

    def _var(self, name):
        self.names.append(name)
        return "chk_" + name

    def do(self, statement):
        self.statements.append("    %s;\n" % statement)

    def byte(self, name, expression):
        self.do("%s = (unsigned char)(%s)" % (self._var(name), expression))

    def word(self, name, expression):
        low, high = self._var(name + "_l"), self._var(name + "_h")
        self.statements.append("    { unsigned int v = (unsigned int)(%s); %s = (unsigned char)v; "
                               "%s = (unsigned char)(v >> 8); }\n" % (expression, low, high))

    def globals(self):
        return "".join("volatile unsigned char chk_%s;\n" % n for n in self.names + ["done"])

    def body(self):
        return "".join(self.statements) + "    chk_done = 1;\n"

    def shown(self):
        return ["_chk_" + n for n in self.names + ["done"]]


class Bench:
    def __init__(self, args, folder):
        self.args, self.folder = args, folder

    def build(self, name, settings, driver, check):
        """Compiles the program; its .cod, or None after a failed check."""
        code = RobotCode(self.args.host, self.args.module, dict(DEFAULTS, **settings))
        source = code.program(driver.globals(), driver.body())
        sub = os.path.join(self.folder, name)
        os.makedirs(sub, exist_ok=True)
        messages, cod = compile_program(self.args.sdcc, source, sub, name)
        check.true(not messages, "%s: the compiler said:\n  %s" % (name, "\n  ".join(messages)))
        return cod

    def run(self, sim):
        return sim.run(self.args.gpsim)


def results(values, cycle, driver):
    """The driver's bytes at a cycle mark, by name; words put together."""
    out = {n[len("_chk_"):]: values[(cycle, n)] for n in driver.shown()}
    for n in list(out):
        if n.endswith("_l") and n[:-2] + "_h" in out:
            out[n[:-2]] = out[n] | out[n[:-2] + "_h"] << 8
    return out


def run_driver(bench, name, settings, driver, check, setup=None, cycles=60000, extra=()):
    """Builds and runs a driver to its end: its results, or None."""
    cod = bench.build(name, settings, driver, check)
    if cod is None:
        return None
    sim = Sim(cod)
    if setup:
        setup(sim)
    sim.show_at(cycles, driver.shown() + list(extra))
    values = bench.run(sim)
    got = results(values, cycles, driver)
    got.update({r: values[(cycles, r)] for r in extra})
    check.equal(got["done"], 1, "%s: the driver reached its end within %d cycles" % (name, cycles))
    return got
