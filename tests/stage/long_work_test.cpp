// What keeps a session alive and honest at its edges: a module file checked before the loader
// maps it, and long work (an advance, a program run) that goes in slices, can show progress and
// can be stopped without losing the session.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <elf.h>

#include <cstring>

#include "module_file.h"
#include "support/temp_dir.h"
#include "window_double.h"

namespace {

using stage_testing::example_path;
using stage_testing::WindowDouble;
using testing::HasSubstr;

template <class T>
void poke(std::string& bytes, std::size_t offset, T value) {
    std::memcpy(bytes.data() + offset, &value, sizeof value);
}

TEST(ModuleFile, EachFaultOfTheHeadersIsNamed) {
    const std::string whole = testing_support::read_file(KESTRONE_MODULE);
    Elf64_Ehdr h;
    std::memcpy(&h, whole.data(), sizeof h);
    // The first loadable segment's place in the table.
    std::size_t load = 0;
    for (std::size_t i = 0; i < h.e_phnum; ++i) {
        Elf64_Phdr ph;
        std::memcpy(&ph, whole.data() + h.e_phoff + i * sizeof ph, sizeof ph);
        if (ph.p_type == PT_LOAD && ph.p_filesz > 0) {
            load = h.e_phoff + i * sizeof ph;
            break;
        }
    }
    ASSERT_NE(load, 0u);
    struct Case {
        const char* name;
        std::function<void(std::string&)> damage;
        std::string says;
    };
    const Case cases[] = {
        {"whole", [](std::string&) {}, ""},
        {"no magic", [](std::string& b) { b[1] = 'X'; }, "not a shared object"},
        {"32-bit", [](std::string& b) { b[EI_CLASS] = ELFCLASS32; }, "not a 64-bit"},
        {"big-endian", [](std::string& b) { b[EI_DATA] = ELFDATA2MSB; }, "not a little-endian"},
        {"a program",
         [](std::string& b) { poke<std::uint16_t>(b, offsetof(Elf64_Ehdr, e_type), ET_EXEC); },
         "no shared object"},
        {"another processor",
         [](std::string& b) { poke<std::uint16_t>(b, offsetof(Elf64_Ehdr, e_machine), EM_RISCV); },
         "another kind of processor"},
        {"no program headers",
         [](std::string& b) { poke<std::uint16_t>(b, offsetof(Elf64_Ehdr, e_phnum), 0); },
         "program headers are missing"},
        {"program headers past the end",
         [&](std::string& b) {
             poke<std::uint64_t>(b, offsetof(Elf64_Ehdr, e_phoff), whole.size() - 8);
         },
         "the program header table reaches byte"},
        {"section headers past the end",
         [&](std::string& b) {
             poke<std::uint64_t>(b, offsetof(Elf64_Ehdr, e_shoff), whole.size());
         },
         "the section header table reaches byte " +
             std::to_string(whole.size() + std::size_t{h.e_shnum} * h.e_shentsize) +
             " of a file of " + std::to_string(whole.size()) + " bytes"},
        {"a segment past the end",
         [&](std::string& b) {
             poke<std::uint64_t>(b, load + offsetof(Elf64_Phdr, p_offset), whole.size() - 16);
         },
         "reaches byte"},
        {"a segment bigger in the file than in memory",
         [&](std::string& b) { poke<std::uint64_t>(b, load + offsetof(Elf64_Phdr, p_memsz), 0); },
         "holds more bytes in the file than in memory"},
        {"cut within the header", [](std::string& b) { b.resize(63); },
         "the ELF header reaches byte 64"},
        {"cut by one byte", [](std::string& b) { b.pop_back(); }, "cut short or damaged"},
    };
    testing_support::TempDir dir;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::string bytes = whole;
        c.damage(bytes);
        const std::string why = host::check_module_file(dir.write("m.so", bytes));
        if (c.says.empty())
            EXPECT_EQ(why, "");
        else
            EXPECT_THAT(why, HasSubstr(c.says));
    }
    EXPECT_EQ(host::check_module_file(dir.path()), "it is a folder");
    EXPECT_THAT(host::check_module_file(dir.path() + "/none.so"), HasSubstr("No such file"));
}

TEST(LongWork, AnAdvanceInSlicesRaisesTheSameTicksAndStopsWhenAsked) {
    WindowDouble whole, sliced;
    for (WindowDouble* w : {&whole, &sliced}) {
        ASSERT_EQ(w->session.start_simulation(), kestrone::S_OK);
        w->set_motors(200, 150);  // the wheels' timers at 112 and 212 ms
    }
    int asked = 0;
    sliced.stage.set_progress_check([&](std::int64_t done, std::int64_t total) {
        ++asked;
        EXPECT_LT(done, total);
        EXPECT_EQ(total, 100000);
        return true;
    });
    std::int64_t a = 0, b = 0;
    ASSERT_EQ(whole.stage.advance(100000, &a), kestrone::S_OK);
    ASSERT_EQ(sliced.stage.advance(100000, &b), kestrone::S_OK);
    EXPECT_EQ(a, 100000 / 112 + 100000 / 212);
    EXPECT_EQ(b, a);
    EXPECT_GT(asked, 3);
    EXPECT_EQ(sliced.session.now(), whole.session.now());
    for (int wheel : {0, 1})
        EXPECT_EQ(sliced.field("iWheelPhase", wheel), whole.field("iWheelPhase", wheel));

    // Stopped after its fourth slice: the clock stands where it got to, the session lives on.
    int slices = 4;
    sliced.stage.set_progress_check([&](std::int64_t, std::int64_t) { return --slices > 0; });
    const std::int64_t from = sliced.session.now();
    std::int64_t ticks = 0;
    EXPECT_EQ(sliced.stage.advance(1'000'000'000'000, &ticks), stage::kInterrupted);
    const std::int64_t moved = sliced.session.now() - from;
    EXPECT_GT(moved, 0);
    EXPECT_LT(moved, 1'000'000'000);
    EXPECT_EQ(ticks, (from + moved) / 112 + (from + moved) / 212 - a);
    sliced.stage.set_progress_check({});
    EXPECT_EQ(sliced.stage.advance(1000, &ticks), kestrone::S_OK);
    EXPECT_EQ(sliced.session.now(), from + moved + 1000);
}

TEST(LongWork, AProgramRunIsHaltedAtItsNextDelay) {
    WindowDouble w;
    std::string error;
    ASSERT_TRUE(w.stage.load_program(example_path("square.kflow"), &error)) << error;
    int delays = 0;
    w.stage.set_progress_check([&](std::int64_t done, std::int64_t total) {
        EXPECT_EQ(total, kflow::RunLimits{}.clock_ms);
        EXPECT_GT(done, 0);
        return ++delays < 2;
    });
    const kflow::RunOutcome outcome = w.stage.run_program();
    EXPECT_EQ(outcome.end, kflow::RunOutcome::End::Halted);
    EXPECT_THAT(outcome.message, HasSubstr("interrupted at line"));
    EXPECT_EQ(w.field("bSimulating"), 0);
    // Without the check it runs to its end.
    w.stage.set_progress_check({});
    EXPECT_EQ(w.stage.run_program().end, kflow::RunOutcome::End::Finished);
}

}  // namespace
