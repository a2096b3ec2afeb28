// The soak: COUNT seeded random console commands against one object (with a new one now and
// then), through the line protocol. Every line must be answered by exactly one final line, and
// the resident memory after the first tenth may grow by no more than a small margin: what the
// commands leave behind is bounded by the fixed set of keys and elements they touch. Under
// LeakSanitizer the run ends with no leak.
//   soak [COUNT [SEED]]
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "console.h"

namespace {

long resident_kib() {
    std::ifstream statm("/proc/self/statm");
    long pages = 0, resident = 0;
    statm >> pages >> resident;
    return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

class Commands {
  public:
    explicit Commands(unsigned seed) : rng_(seed) {}

    std::string next() {
        switch (pick(16)) {
            case 0:
                return "SimMacroCall " + std::to_string(pick(24) - 1) + " " + values() +
                       " 0& Empty 0&";
            case 1:
                return pick(2) ? "StartSimulation" : "StopSimulation";
            case 2:
                return "mouse " + one_of({"down", "move", "up"}) + " " + std::to_string(pick(5)) +
                       " " + std::to_string(pick(360) - 8) + " " + std::to_string(pick(300) - 8);
            case 3:
                return "arrow updownADC(" + std::to_string(pick(6)) + ") " + one_of({"up", "down"});
            case 4:
                return "click " + one_of({"chkSwitchLeft", "chkSwitchRight", "chkLineLeft",
                                          "chkLineRight", "lblSpeedVal(0)"});
            case 5:
                return "advance " + std::to_string(pick(50));
            case 6:
                return "tick " + std::to_string(pick(3));
            case 7:
                return one_of({"page open", "page apply", "page click optInt",
                               "page click chkWaitForButton"});
            case 8:
                return "page put " +
                       one_of({"txtiThreshR.Text", "txtiThreshF.Text", "sldMotorBias.Value",
                               "optByte.Value"}) +
                       " = " + value();
            case 9:
                return one_of({"iMotorBias", "iThreshL", "bReturnInt", "sDummyString1"}) + " = " +
                       value();
            case 10:
                return "MacroCodeOverride \"%a %o %p %m\"";
            case 11:
                return "MacroCode " + std::to_string(pick(24) - 1);
            case 12:
                return "store key" + std::to_string(pick(40)) + " = " + value();
            case 13:
                return one_of({"writeprops", "readprops", "store clear"});
            case 14:
                return "field " + one_of({"lADCVal(" + std::to_string(pick(6)) + ")",
                                          "iWheelPhase(1)", "bSimulating", "Pins(3).SimValue"});
            default:
                return pick(200) == 0 ? "new"
                                      : "get lblSpeedVal(" + std::to_string(pick(3)) + ").Caption";
        }
    }

  private:
    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }
    std::string one_of(std::initializer_list<std::string> words) {
        return *(words.begin() + pick(static_cast<int>(words.size())));
    }
    std::string value() {
        switch (pick(6)) {
            case 0:
                return std::to_string(pick(70000) - 35000) + "%";
            case 1:
                return std::to_string(pick(1000) - 500) + "&";
            case 2:
                return "\"" + std::to_string(pick(400)) + ".5\"";
            case 3:
                return "True";
            case 4:
                return "Empty";
            default:
                return std::to_string(pick(300)) + ".25#";
        }
    }
    std::string values() {
        std::string list = "[";
        for (int k = pick(6); k > 0; --k)
            list += value() + (k > 1 ? ", " : "");
        return list + "]";
    }
    std::mt19937 rng_;
};

int final_lines(const std::string& answer) {
    int n = 0;
    std::istringstream lines(answer);
    for (std::string line; std::getline(lines, line);)
        if (line == "ok" || line.starts_with("ok ") || line.starts_with("error ") ||
            line.starts_with("fail"))
            ++n;
    return n;
}

}  // namespace

int main(int argc, char** argv) {
    const long count = argc > 1 ? std::atol(argv[1]) : 1000000;
    const unsigned seed = argc > 2 ? static_cast<unsigned>(std::atol(argv[2])) : 20261123u;
    // The allowance over the memory after the first tenth: caches warm up, nothing accumulates.
    const long margin_kib = argc > 3 ? std::atol(argv[3]) : 8192;
    std::ostringstream out;
    console::Console console(out);
    std::string error;
    if (!console.session().load_module(KESTRONE_MODULE, &error)) {
        std::fprintf(stderr, "soak: %s\n", error.c_str());
        return 2;
    }
    console.start();
    console.execute("KestroneVersion = 1281");
    Commands commands(seed);
    // SOAK_ECHO=1 writes every command and its answer, to see what a seed does.
    const bool echo = std::getenv("SOAK_ECHO") != nullptr;
    long settled = 0, peak = 0;
    for (long k = 0; k < count; ++k) {
        const std::string line = commands.next();
        out.str({});
        console.execute(line);
        if (echo) std::printf("> %s\n%s", line.c_str(), out.str().c_str());
        if (final_lines(out.str()) != 1) {
            std::fprintf(stderr, "soak: command %ld, \"%s\", answered:\n%s", k, line.c_str(),
                         out.str().c_str());
            return 1;
        }
        if (k + 1 == count / 10) settled = resident_kib();
        if (k >= count / 10 && (k & 1023) == 0) peak = std::max(peak, resident_kib());
    }
    peak = std::max(peak, resident_kib());
    std::printf("soak: %ld commands (seed %u), resident %ld KiB after a tenth, %ld KiB at most\n",
                count, seed, settled, peak);
    // Under AddressSanitizer freed memory waits in quarantine, so the resident size grows by
    // design; there LeakSanitizer checks at exit instead.
#if defined(__SANITIZE_ADDRESS__)
    const bool bounded = margin_kib >= 0;
#else
    const bool bounded = settled == 0 || peak <= settled + margin_kib;
#endif
    if (!bounded) {
        std::fprintf(stderr, "soak: resident memory grew by %ld KiB\n", peak - settled);
        return 1;
    }
    return 0;
}
