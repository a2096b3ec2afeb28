// The console's line splitting and value syntax on any bytes; what is written must read back, and
// a line read as a command formats to one that reads back as the same command. Then the line
// itself through a console whose module is missing: whatever the line, it is answered (by a
// `fail` here) and never reaches past the protocol.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>

#include "command_line.h"
#include "command.h"
#include "console.h"
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
    if (!skipped) {
        const commands::Parsed parsed = commands::parse_command(line);
        if (parsed.command) {
            // Compared as written: a value that is NaN is not equal to itself.
            const std::string written = parsed.command->format();
            const commands::Parsed again = commands::parse_command(written);
            if (!again.command || again.command->format() != written) __builtin_trap();
        }
    }
    std::ostringstream out;
    console::Console session(out);
    session.execute(line);
    // One final line for every line that is not skipped; `quit` alone answers nothing.
    const std::string answer = out.str();
    const bool quit = command && command->words.size() == 1 && command->words[0] == "quit";
    if (skipped != answer.empty() && !quit) __builtin_trap();
    return 0;
}
