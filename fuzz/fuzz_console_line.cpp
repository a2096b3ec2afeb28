// The console's line splitting and value syntax on any bytes; what is written must read back.
// Then the line itself through a console whose module is missing: whatever the line, it is
// answered (by a `fail` here) and never reaches past the protocol.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>

#include "command_line.h"
#include "console_session.h"
#include "value_syntax.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view line(reinterpret_cast<const char*>(data), size);
    const bool skipped = console::is_skipped_line(line);
    const auto command = console::split_command(line);
    if (command)
        for (const std::string& word : command->words) {
            const auto value = console::parse_value(word);
            if (!value) continue;
            const std::string written = console::format_value(*value);
            const auto again = console::parse_value(written);
            if (!again || console::format_value(*again) != written) __builtin_trap();
        }
    if (line.find('\n') != std::string_view::npos) return 0;
    std::ostringstream out;
    console::ConsoleSession session(out);
    session.execute(line);
    // One final line for every line that is not skipped; `quit` alone answers nothing.
    const std::string answer = out.str();
    const bool quit = command && command->words.size() == 1 && command->words[0] == "quit";
    if (skipped != answer.empty() && !quit) __builtin_trap();
    return 0;
}
