// The log of the signals against the readings: a seeded generator writes console scripts (clicks,
// arrows, macro calls with tones, ticks, advances, an arena, a new object, a debugged program run
// on in pieces) and after every step reads each signal the way a user would (`field`, `get`,
// `world`). A small model of the tones and of the pins turns those readings into what the log's
// CSV and VCD must hold at that moment; the files must also hold a row only where something
// changed, and each tone's end at its moment. KESTRONE_LOG_SEED=N replays one seed.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <sstream>

#include "command.h"
#include "gtkw_view.h"
#include "pins.h"
#include "signal_log.h"
#include "support/temp_dir.h"
#include "vcd_writer.h"
#include "window_double.h"

namespace {

constexpr std::int64_t kAbsent = INT64_MIN;
constexpr int kSignals = 19;  // motor_left ... theta, in the log's order
constexpr int kTone = 14, kX = 16;
using Values = std::array<std::int64_t, kSignals>;

std::int64_t number(const std::string& answer) {  // "200%", "-3&", "True"
    if (answer == "True" || answer == "False") return answer == "True";
    return std::stoll(answer);
}

struct Tone {
    std::int64_t start, hz, end;
};

struct Robot {
    stage_testing::WindowDouble w;
    commands::Context context{w.stage};
    std::int64_t now = 0;                 // ms since the log's start, as the script moves the clock
    std::map<std::int64_t, Values> seen;  // the readings, the last at each moment
    std::vector<Tone> tones;
    std::int64_t stop_count = -1;  // what `log stop` answered
    bool arena = false;            // loaded at some moment

    commands::Reply run(const std::string& line) {
        const auto before = w.services.tones.size();
        auto parsed = commands::parse_command(line);
        EXPECT_TRUE(parsed.command) << line << ": " << parsed.error;
        const commands::Reply reply = parsed.command->execute(context);
        for (auto t = before; t < w.services.tones.size(); ++t) {
            const auto [hz, ms] = w.services.tones[t];
            const bool sounds = hz > 0 && ms > 0;
            tones.push_back({now, sounds ? hz : 0, sounds ? now + ms : now});
        }
        return reply;
    }
    std::int64_t tone_at(std::int64_t t) const {  // a tone sounds until the next one is asked
        std::int64_t hz = 0;
        for (const Tone& tone : tones)
            if (tone.start <= t) hz = t < tone.end ? tone.hz : 0;
        return hz;
    }
    std::int64_t read(const std::string& line) {
        const commands::Reply r = run(line);
        return r.is_ok() ? number(r.text) : kAbsent;
    }
    void read_all() {
        Values v{};
        for (int m = 0; m < 2; ++m) {
            v[m] = read("field iMotorSpeed(" + std::to_string(m) + ")");
            v[2 + m] = read("field iWheelPhase(" + std::to_string(m) + ")");
        }
        for (int i = 0; i < 8; ++i)
            v[4] |= (read("get imageLedOn(" + std::to_string(i) + ").Visible") != 0) << i;
        int k = 5;
        for (const char* box : {"chkSwitchLeft", "chkSwitchRight", "chkLineLeft", "chkLineRight"})
            v[k++] = read(std::string("get ") + box + ".Value");
        for (int i = 0; i < 5; ++i)
            v[9 + i] = read("field lADCVal(" + std::to_string(i) + ")");
        v[kTone] = tone_at(now);
        for (int h = 12; h >= 0; --h)
            if (read("get imDirection(" + std::to_string(h) + ").Visible")) v[15] = h;
        for (const char* part : {"x", "y", "heading"})
            v[kX + (k++ - 9)] = read(std::string("world ") + part);
        seen[now] = v;
        arena = arena || v[kX] != kAbsent;
    }
};

// A forever loop of motor and LED calls between delays, for `debug` and `continue`.
std::string program(std::mt19937& rng) {
    const auto n = [&](int below) { return std::to_string(rng() % unsigned(below)); };
    const std::string calls[] = {
        "SetMotors(" + n(2) + ", " + n(256) + ", " + n(2) + ", " + n(256) + ")",
        "SpinLeft(" + n(256) + ")",
        "DriveBackwards(" + n(256) + ")",
        "WriteLeds(" + n(256) + ")",
        "LedOn(" + n(8) + ")",
        "DriveStop()"};
    std::string text = "forever\n";
    for (int k = 0; k < 6; ++k)
        text += "    " +
                (k % 3 == 2 ? "delay " + std::to_string(1 + rng() % 40) : calls[rng() % 6]) + "\n";
    return text + "end\n";
}

// One step of a script: its lines, and the milliseconds it moves the clock.
std::vector<std::string> step(std::mt19937& rng, bool& debugging, std::int64_t& moves) {
    const auto any = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    const auto n = [&](int below) { return std::to_string(any(below)); };
    moves = 0;
    if (debugging) {
        if (any(8) == 0) return debugging = false, std::vector<std::string>{"undebug"};
        moves = 1 + any(30);
        return {"continue " + std::to_string(moves)};
    }
    static const char* boxes[] = {"chkSwitchLeft", "chkSwitchRight", "chkLineLeft", "chkLineRight"};
    static const char* macros[] = {"4 [", "5 [", "7 [", "8 [", "10 [", "11 [", "12 ["};
    switch (any(12)) {
        case 0:
            return {std::string("click ") + boxes[any(4)]};
        case 1:
            return {"arrow updownADC(" + n(5) + ") " + (any(2) ? "up" : "down")};
        case 2:
            return {std::string("SimMacroCall ") + macros[any(7)] + n(300) + "] 0& Empty 0&"};
        case 3:
            return {"SimMacroCall 9 [" + n(2) + ", " + n(256) + ", " + n(2) + ", " + n(256) +
                    "] 0& Empty 0&"};
        case 4:
            return {"SimMacroCall 15 [" + n(90) + ", 0, " + n(60) + "] 0& Empty 0&"};
        case 5:
            return {"tick " + n(2)};
        case 6:
            return {any(3) ? "StartSimulation" : "StopSimulation"};
        case 7:
            return {any(2)   ? "world load " + stage_testing::example_path("open_floor.world")
                    : any(2) ? "world reset"
                             : "world unload"};
        case 8:
            return any(6) ? std::vector<std::string>{"SimMacroCall 6 [] 0& Empty 0&"}
                          : std::vector<std::string>{"new", "KestroneVersion = 1281"};
        case 9:
            return debugging = true, std::vector<std::string>{"debug PROGRAM"};
    }
    moves = 1 + any(any(4) ? 25 : 400);
    return {"advance " + std::to_string(moves)};
}

// A log's file as (time, values) a moment, and the count `log stop` answered.
using Rows = std::vector<std::pair<std::int64_t, Values>>;

void script(Robot& r, unsigned seed, const testing_support::TempDir& dir, const std::string& log) {
    std::mt19937 rng(seed);
    const std::string kflow = dir.write("loop.kflow", program(rng));
    r.run("log start " + dir.path() + "/" + log);
    r.read_all();
    bool debugging = false;
    for (int s = 0; s < 120; ++s) {
        std::int64_t moves = 0;
        for (std::string line : step(rng, debugging, moves)) {
            if (line == "debug PROGRAM") line = "debug " + kflow;
            const commands::Reply reply = r.run(line);
            // A debugged program may not start (no object); its `continue` then fails.
            if (line.starts_with("debug") && !reply.is_ok()) debugging = false;
            if (line.starts_with("continue") && !reply.is_ok()) moves = 0;
        }
        // What moves the clock may change things at its first moment too (a program's statements).
        if (moves > 0) r.seen.erase(r.now);
        r.now += moves;
        r.read_all();
    }
    const commands::Reply stop = r.run("log stop");
    EXPECT_TRUE(stop.is_ok()) << stop.line();
    if (stop.is_ok()) r.stop_count = number(stop.text);
}

std::int64_t cell(const std::string& text) {
    return text.empty() ? kAbsent : std::stoll(text);
}

Rows read_csv(const std::string& path, std::string* header) {
    std::ifstream in(path);
    std::getline(in, *header);
    Rows rows;
    for (std::string line; std::getline(in, line);) {
        std::stringstream cells(line + ",");
        std::string c;
        std::getline(cells, c, ',');
        rows.push_back({std::stoll(c), {}});
        for (auto& v : rows.back().second)
            std::getline(cells, c, ','), v = cell(c);
    }
    return rows;
}

// The pins as a VCD names them: PORTD RB0 RB1 RB2 RB3 RC0 RC5 duty_left duty_right RB5 x y theta.
Values pins(const Values& s) {
    const auto duty = [](std::int64_t speed) {
        return std::min<std::int64_t>(std::abs(speed), 255) * 4;
    };
    return {s[4],       s[5] != 0,  s[6] != 0,     s[7] != 0, s[8] != 0, s[0] < 0, s[1] < 0,
            duty(s[0]), duty(s[1]), s[kTone] != 0, s[kX],     s[kX + 1], s[kX + 2]};
}

Rows read_vcd(const std::string& path, std::string* header) {
    const char* names[] = {"PORTD",     "RB0",        "RB1", "RB2", "RB3", "RC0",  "RC5",
                           "duty_left", "duty_right", "RB5", "x",   "y",   "theta"};
    std::ifstream in(path);
    std::map<std::string, int> ids;
    Rows rows;
    Values now{};
    now.fill(kAbsent);
    for (std::string w; in >> w;) {
        if (w == "$var") {
            std::string type, width, id, name;
            in >> type >> width >> id >> name;
            for (int i = 0; i < 13; ++i)
                if (name == names[i]) ids[id] = i;
            *header += (type == "wire" ? "" : type + " ") + name +
                       (width == "1" ? " " : "[" + width + "] ");
        } else if (w == "$timescale" || w == "$scope") {
            std::string a, b;
            in >> a >> b;
            *header += w + " " + a + " " + b + " ";
        } else if (w[0] == '#') {
            rows.push_back({std::stoll(w.substr(1)), now});
        } else if (!rows.empty() && (w[0] == 'b' || w[0] == '0' || w[0] == '1' || w[0] == 'x')) {
            std::string value = w[0] == 'b' ? w.substr(1) : w.substr(0, 1), id = w.substr(1);
            if (w[0] == 'b') in >> id;
            const std::int64_t bits = value == "x" ? kAbsent : std::stoll(value, nullptr, 2);
            rows.back().second[ids.at(id)] = value.size() == 32 ? std::int32_t(bits) : bits;
            now = rows.back().second;
        }
    }
    return rows;
}

std::optional<Values> at(const Rows& rows, std::int64_t t) {
    std::optional<Values> v;
    for (const auto& [time, values] : rows)
        if (time <= t) v = values;
    return v;
}

void check(const Robot& r, const Rows& rows, std::int64_t scale, bool pin_view, int seed) {
    const int width = pin_view ? 13 : kSignals;
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(rows.front().first, 0);
    EXPECT_EQ(r.stop_count, static_cast<std::int64_t>(rows.size()) - 1);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        EXPECT_LT(rows[i - 1].first, rows[i].first) << "seed " << seed;
        EXPECT_NE(rows[i - 1].second, rows[i].second) << "a row of no change, seed " << seed;
    }
    for (const auto& [t, seen] : r.seen) {
        const Values want = pin_view ? pins(seen) : seen;
        const auto got = at(rows, t * scale);
        for (int s = 0; got && s < width; ++s)
            ASSERT_EQ((*got)[s], want[s]) << "signal " << s << " at " << t << " ms, seed " << seed;
    }
    // Each tone's last millisecond and its end, where the readings between steps do not look.
    for (const Tone& tone : r.tones)
        for (const std::int64_t t : {tone.end - 1, tone.end})
            if (!pin_view && t >= tone.start && t <= r.now) {
                EXPECT_EQ((*at(rows, t))[kTone], r.tone_at(t))
                    << "tone at " << t << ", seed " << seed;
            }
}

TEST(SignalLog, CsvAndVcdHoldEveryReadingAtItsMoment) {
    const char* fixed = std::getenv("KESTRONE_LOG_SEED");
    for (const unsigned seed : fixed ? std::vector<unsigned>{unsigned(std::atoi(fixed))}
                                     : std::vector<unsigned>{11, 23, 37, 52})
        for (const bool vcd : {false, true}) {
            testing_support::TempDir dir;
            Robot r;
            const std::string file = vcd ? "log.vcd" : "log.csv";
            script(r, seed, dir, file);
            std::string header;
            const Rows rows = vcd ? read_vcd(dir.path() + "/" + file, &header)
                                  : read_csv(dir.path() + "/" + file, &header);
            check(r, rows, vcd ? 1000 : 1, vcd, seed);
            EXPECT_EQ(header,
                      vcd ? std::string("$timescale 1 us $scope module panel PORTD[8] RB0 "
                                        "RB1 RB2 RB3 RC0 RC5 duty_left[10] duty_right[10] "
                                        "RB5 ") +
                                (r.arena ? "integer x[32] integer y[32] integer theta[32] " : "")
                          : "time_ms,motor_left,motor_right,phase_left,phase_right,leds,"
                            "switch_left,switch_right,line_left,line_right,ldr,mic,"
                            "ir_left,ir_forward,ir_right,tone_hz,heading,x,y,theta");
        }
}

// The view for GTKWave names each pin as the dump declares it (a vector with its bit range), or
// GTKWave leaves it out.
TEST(SignalLog, TheViewNamesEveryPinAsTheDumpDeclaresIt) {
    std::vector<signal_log::VcdVariable> variables;
    for (const signal_log::PinInfo& p : signal_log::pins())
        variables.push_back({p.name, p.width});
    std::ostringstream dump, view;
    signal_log::VcdWriter(dump, "", signal_log::kPinScope, variables);
    signal_log::write_gtkw(view, "panel.vcd");
    std::set<std::string> declared, shown;
    std::istringstream lines(dump.str());
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string var, type, width, id, name, range;
        if (words >> var >> type >> width >> id >> name >> range && var == "$var")
            declared.insert(std::string(signal_log::kPinScope) + "." + name +
                            (range == "$end" ? "" : range));
    }
    std::istringstream rows(view.str());
    for (std::string row; std::getline(rows, row);)
        if (row.starts_with(std::string(signal_log::kPinScope) + ".") && !row.ends_with("."))
            shown.insert(row);
    EXPECT_EQ(shown, declared);
}

// The chip's registers that would show a moment of the panel, by the robot's wiring, carry the
// same pins as the panel's values do.
TEST(SignalLog, PanelAndChipGiveTheSamePinsForTheSameMoment) {
    std::mt19937 rng(5);
    for (int n = 0; n < 2000; ++n) {
        signal_log::Values panel{};
        for (auto& v : panel)
            v = static_cast<std::int32_t>(rng() % 2) * static_cast<std::int32_t>(rng() % 512) -
                static_cast<std::int32_t>(rng() % 256);
        for (const int bit : {5, 6, 7, 8})
            panel[bit] = static_cast<std::int32_t>(rng() % 2);
        panel[4] &= 0xFF;
        const auto duty = [](std::int32_t speed) { return std::min(std::abs(speed), 255) * 4; };
        const auto low_bits = [&](std::int32_t speed) {
            return static_cast<std::uint8_t>((duty(speed) & 3) << 4 | (rng() % 2) * 0x0C);
        };
        const signal_log::ChipRegisters chip{
            static_cast<std::uint8_t>(panel[5] | panel[6] << 1 | panel[7] << 2 | panel[8] << 3 |
                                      (panel[kTone] != 0) << 5 | (rng() % 2) << 6),
            static_cast<std::uint8_t>((panel[0] < 0) | (panel[1] < 0) << 5 | (rng() % 2) << 3),
            static_cast<std::uint8_t>(panel[4]),
            static_cast<std::uint8_t>(duty(panel[0]) >> 2),
            low_bits(panel[0]),
            static_cast<std::uint8_t>(duty(panel[1]) >> 2),
            low_bits(panel[1])};
        ASSERT_EQ(signal_log::pins_of(panel), signal_log::pins_of(chip)) << "case " << n;
    }
}

// A log bounded in time or in changes keeps, from its first moment on, what an unbounded one holds.
TEST(SignalLog, ABoundedLogHoldsTheNewestMomentsAsTheWholeLogDoes) {
    std::mt19937 rng(9);
    Robot r;
    signal_log::SignalLog whole(r.w.stage), by_time(r.w.stage, {300, std::size_t{1} << 22}),
        by_count(r.w.stage, {std::int64_t{1} << 40, 40});
    for (signal_log::SignalLog* log : {&whole, &by_time, &by_count})
        log->start();
    r.run("StartSimulation");
    for (int n = 0; n < 150; ++n) {
        r.run("SimMacroCall 9 [0, " + std::to_string(rng() % 256) + ", 255, " +
              std::to_string(rng() % 256) + "] 0& Empty 0&");
        r.run("SimMacroCall 11 [" + std::to_string(rng() % 256) + "] 0& Empty 0&");
        r.run("advance " + std::to_string(1 + rng() % 30));
    }
    // Replayed while the latest moment is still open (both motors just set): each moment holds
    // what `at` gives for it and marks what differs from the moment before.
    r.run("SimMacroCall 9 [1, 7, 0, 201] 0& Empty 0&");
    signal_log::Values before{};
    int moments = 0;
    whole.replay(0, whole.last_ms(), [&](const signal_log::Moment& m) {
        EXPECT_EQ(m.values, whole.at(m.at_ms - whole.started_at())) << m.at_ms;
        for (std::size_t s = 0; s < signal_log::kSignalCount && moments > 0; ++s)
            EXPECT_EQ(m.changed.test(s), m.values[s] != before[s]) << m.at_ms << " signal " << s;
        before = m.values;
        ++moments;
    });
    EXPECT_GT(moments, 100);
    for (signal_log::SignalLog* log : {&whole, &by_time, &by_count})
        log->stop();
    EXPECT_GT(by_time.first_ms(), 0);
    // Every moment of the newest 300 ms is kept: the first kept is older.
    EXPECT_GT(by_time.last_ms() - by_time.first_ms(), 300);
    EXPECT_LE(by_time.last_ms() - by_time.first_ms(), 300 + 30);
    EXPECT_GT(by_count.first_ms(), by_time.first_ms());
    for (const signal_log::SignalLog* log : {&by_time, &by_count})
        for (std::int64_t t = log->first_ms(); t <= log->last_ms(); ++t)
            ASSERT_EQ(log->at(t), whole.at(t)) << t << " ms";
}

}  // namespace
