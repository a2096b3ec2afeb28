"""Robot programs for the PIC, built as the host builds them, compiled by SDCC and run in gpsim.

The C comes from the component itself: a `kestrone-host console` session sets the settings,
asks for the macro table and the blocks, and passes each block through MacroCodeOverride, so
the tokens are filled exactly as the component fills them.
"""

import os
import re
import subprocess

CHIP = "16f877a"
PROGRAM_WORDS = 8192  # program memory of the 16F877A
LOCALS_BANK = 96      # the largest bank of RAM on the 16F877A

# The component's settings by name, with the values a fresh object has.
DEFAULTS = {
    "bReturnInt": 0, "iThreshL": 200, "iThreshF": 200, "iThreshR": 200, "iThreshMic": 128,
    "iThreshLdr": 128, "bUseI2C": 128, "bWaitForButton": 1, "bDummyBool1": 0, "bDummyBool2": 0,
    "iDummyInt1": 0, "iDummyInt2": 0, "sDummyString1": "", "sDummyString2": "", "iMotorBias": 0,
}

ESCAPES = {"\\": "\\\\", '"': '\\"', "\r": "\\r", "\n": "\\n", "\t": "\\t"}
UNESCAPES = {"\\": "\\", '"': '"', "r": "\r", "n": "\n", "t": "\t"}


def quote(text):
    """A string in the console's syntax."""
    out = []
    for ch in text:
        if ch in ESCAPES:
            out.append(ESCAPES[ch])
        elif ord(ch) < 32 or ord(ch) >= 127:
            out.append("\\x%02X" % ord(ch))
        else:
            out.append(ch)
    return '"' + "".join(out) + '"'


def read_string(text, at):
    """The string literal starting at text[at] (a quote): (value, index after it)."""
    assert text[at] == '"', text[at:at + 40]
    out, i = [], at + 1
    while text[i] != '"':
        if text[i] == "\\":
            if text[i + 1] == "x":
                out.append(chr(int(text[i + 2:i + 4], 16)))
                i += 4
                continue
            out.append(UNESCAPES[text[i + 1]])
            i += 2
            continue
        out.append(text[i])
        i += 1
    return "".join(out), i + 1


def read_string_array(text):
    """The strings of an answer such as String[0 to 1]("a", "b"); [] for an empty array."""
    m = re.match(r"\w+\[-?\d+ to -?\d+\]\(", text)
    if not m:
        raise ValueError("no array: %r" % text[:80])
    items, i = [], m.end()
    while text[i] != ")":
        if text[i] in ", ":
            i += 1
            continue
        value, i = read_string(text, i)
        items.append(value)
    return items


class ConsoleError(Exception):
    pass


class Console:
    """One `kestrone-host console` session, a command at a time."""

    def __init__(self, host, module):
        self.proc = subprocess.Popen([host, "console", "--module", module], stdin=subprocess.PIPE,
                                     stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                     encoding="latin-1", bufsize=1)
        self._answer("start-up")

    def _answer(self, command):
        notices = []
        while True:
            line = self.proc.stdout.readline()
            if not line:
                raise ConsoleError("the console ended during %r: %s" % (command[:60], self.proc.stderr.read()))
            line = line.rstrip("\n")
            if line == "ok" or line.startswith("ok "):
                return line[3:], notices
            if line.startswith("error ") or line.startswith("fail "):
                raise ConsoleError("%r answered %s" % (command[:60], line))
            notices.append(line)

    def ask(self, command):
        """Runs one command: the text after "ok " of its answer."""
        return self.ask_with_notices(command)[0]

    def ask_with_notices(self, command):
        """Runs one command: (the text after "ok " of its answer, the notice lines before it)."""
        self.proc.stdin.write(command + "\n")
        self.proc.stdin.flush()
        return self._answer(command)

    def close(self):
        if self.proc.poll() is None:
            self.proc.stdin.write("quit\n")
            self.proc.stdin.close()
            self.proc.wait(timeout=10)


class RobotCode:
    """The C texts of the component for one set of settings, tokens filled by the component."""

    def __init__(self, host, module, settings):
        console = Console(host, module)
        try:
            console.ask("KestroneVersion = 1281")
            for name, value in settings.items():
                value = quote(value) if isinstance(value, str) else str(value)
                console.ask("%s = %s" % (name, value))
            self.macros = []
            for i, entry in enumerate(read_string_array(console.ask("MacroNames"))):
                name, _, ret = entry.split("|")
                params = [p.split("|") for p in read_string_array(console.ask("MacroParameters %d" % i))]
                body = self._filled(console, console.ask("MacroCode %d" % i))
                self.macros.append((name, ret, [(p[0], p[2]) for p in params], body))
            self.defines = self._filled(console, console.ask("DefinesCode"))
            self.initialisation = self._filled(console, console.ask("InitialisationCode"))
            self.interrupt = self._filled(console, console.ask("InterruptCode"))
        finally:
            console.close()

    @staticmethod
    def _filled(console, answer):
        text, _ = read_string(answer, 0)
        answer = console.ask("MacroCodeOverride " + quote(text))
        if not answer.startswith("pVal="):
            raise ConsoleError("MacroCodeOverride answered %r" % answer[:80])
        return read_string(answer, len("pVal="))[0]

    def program(self, driver_globals="", driver=""):
        """The whole program as the host writes it, with a driver after the initialisation."""
        parts = [self.defines]
        for name, ret, params, body in self.macros:
            args = ", ".join("%s %s" % (t, n) for n, t in params) or "void"
            parts.append("%s %s(%s)\n{\n%s}\n" % (ret, name, args, body))
        parts.append(driver_globals)
        parts.append("void main(void)\n{\n%s%s    for (;;) {\n    }\n}\n" % (self.initialisation, driver))
        parts.append("void isr(void) __interrupt 0\n{\n%s}\n" % self.interrupt)
        return "\n".join(parts)


# gplink names the linker script it picked on every link: no message about our C.
LINKER_NOTE = re.compile(r"^message: Using default linker script ")


def compile_program(sdcc, source, folder, name):
    """Compiles with SDCC for the chip: (list of the compiler's messages, path of the .cod)."""
    path = os.path.join(folder, name + ".c")
    with open(path, "w", encoding="latin-1") as f:
        f.write(source)
    r = subprocess.run([sdcc, "-mpic14", "-p" + CHIP, "--use-non-free", name + ".c"], cwd=folder,
                       capture_output=True, text=True, encoding="latin-1")
    messages = [l for l in (r.stdout + r.stderr).splitlines() if l.strip() and not LINKER_NOTE.match(l)]
    cod = os.path.join(folder, name + ".cod")
    if r.returncode != 0 or not os.path.exists(cod):
        messages.append("sdcc exited with %d and left no %s.cod" % (r.returncode, name))
        cod = None
    return messages, cod


def program_words(hex_path):
    """Words of program memory a .hex file fills (the configuration word excluded)."""
    words = set()
    base = 0
    with open(hex_path) as f:
        for line in f:
            line = line.strip()
            if not line.startswith(":"):
                continue
            data = bytes.fromhex(line[1:])
            count, address, kind = data[0], int.from_bytes(data[1:3], "big"), data[3]
            if kind == 4:
                base = int.from_bytes(data[4:6], "big") << 16
            elif kind == 0:
                for k in range(0, count, 2):
                    word = (base + address + k) // 2
                    if word < PROGRAM_WORDS:
                        words.add(word)
    return len(words)


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
        pairs = ", ".join("%d, %d" % e for e in edges)
        self.lines += ["stimulus asynchronous_stimulus", "initial_state 0", "start_cycle 0",
                       "{ %s }" % pairs, "name " + name, "end", "node n_" + pin,
                       "attach n_%s %s %s" % (pin, pin, name)]

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
