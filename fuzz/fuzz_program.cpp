// The robot-program reader on any text: the lexer, the parser and the checks against the shipped
// component's macros. A program that checks also gets its C written.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "c_program.h"
#include "fuzz_robot.h"
#include "macro_table.h"
#include "program.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static auto robot = fuzzing::shipped_robot();
    static const kflow::MacroTable table = [] {
        std::string error;
        auto t = kflow::MacroTable::read(*robot.get(), &error);
        if (!t) std::abort();
        return *t;
    }();
    const std::string_view source(reinterpret_cast<const char*>(data), size);
    const auto result = kflow::check_program(source, "fuzz.kflow", table);
    if (!result.program) return 0;
    std::string error;
    const auto blocks = kflow::read_component_code(*robot.get(), *result.program, &error);
    if (blocks) kflow::write_c_program(*result.program, *blocks, "fuzz");
    return 0;
}
