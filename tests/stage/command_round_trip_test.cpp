// Every command a face builds and a recorder writes reads back as itself: a generator makes many
// of each kind the window records, with awkward values (quotes and control bytes in paths and
// text, negative and fractional coordinates, every kind of value), and each is formatted, parsed
// and compared field by field.
#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "object_commands.h"
#include "panel_commands.h"
#include "store_commands.h"
#include "world_commands.h"

namespace {

using kestrone::Variant;

class Generator {
  public:
    explicit Generator(unsigned seed) : rng_(seed) {}
    int below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }
    std::string text() {
        static const std::string pieces[] = {"a",  "Z9",   " ",    "\"",     "\\",
                                             "\t", "\r\n", "\x01", "\x7f",   "\xc3\xa9",
                                             "/",  ".",    "=",    "[1, 2]", "#"};
        std::string out;
        for (int n = below(6); n >= 0; --n)
            out += pieces[below(static_cast<int>(std::size(pieces)))];
        return out;
    }
    std::string name() {
        static const char* names[] = {"chkSwitchLeft", "updownADC", "frameADC",
                                      "txtiThreshF",   "optInt",    "sldMotorBias"};
        return names[below(static_cast<int>(std::size(names)))];
    }
    commands::ElementRef element() {
        return {name(), below(2) ? std::optional<std::int32_t>(below(5)) : std::nullopt};
    }
    float coordinate() {
        return std::uniform_real_distribution<float>(-400.0f, 900.0f)(rng_) / (1 + below(7));
    }
    Variant value() {
        switch (below(7)) {
            case 0:
                return Variant::integer(static_cast<std::int16_t>(below(65536) - 32768));
            case 1:
                return Variant::long_(static_cast<std::int32_t>(rng_()));
            case 2:
                return Variant::single(coordinate());
            case 3:
                return Variant::double_(std::uniform_real_distribution<double>(-1e9, 1e9)(rng_));
            case 4:
                return Variant::boolean(below(2));
            case 5:
                return Variant::string(text());
        }
        return Variant();
    }
    commands::CommandPtr command() {
        using namespace commands;
        switch (below(16)) {
            case 0:
                return make(Mouse{static_cast<kestrone::PointerAction>(below(3)), below(8),
                                  coordinate(), coordinate(), below(8)});
            case 1:
                return make(Click{element()});
            case 2:
                return make(Arrow{element(), below(2) == 1});
            case 3:
                return make(PagePut{name(), below(2) ? "Text" : "Value", value()});
            case 4:
                return make(PageClick{name()});
            case 5:
                return make(PageOpen{});
            case 6:
                return make(PageApply{});
            case 7:
                return make(StoreWalk{below(2) == 1});
            case 8:
                return make(StoreFile{below(2) == 1, text() + ".kproj"});
            case 9:
                return make(StoreClear{});
            case 10:
                return make(NewObject{});
            case 11:
                return make(Operation{below(2) ? "StartSimulation" : "StopSimulation", false, {}});
            case 12:
                return make(Operation{"KestroneVersion", true, {value()}});
            case 13:
                return make(WorldLoad{text()});
            case 14:
                if (below(2)) return make(WorldReset{});
                return make(WorldUnload{});
        }
        return make(Advance{static_cast<std::int64_t>(rng_() % 100000)});
    }

  private:
    std::mt19937 rng_;
};

TEST(CommandRoundTrip, EveryRecordableCommandFormatsAndParsesBackToItself) {
    Generator g(20261124);
    for (int i = 0; i < 5000; ++i) {
        const commands::CommandPtr c = g.command();
        const std::string line = c->format();
        const commands::Parsed back = commands::parse_command(line);
        ASSERT_TRUE(back.command) << line << ": " << back.error;
        EXPECT_TRUE(back.command->equals(*c)) << line << " read back as " << back.command->format();
        EXPECT_EQ(back.command->format(), line);
    }
}

}  // namespace
