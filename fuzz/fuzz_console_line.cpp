// The console's line splitting and value syntax on any bytes; what is written must read back.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "command_line.h"
#include "value_syntax.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view line(reinterpret_cast<const char*>(data), size);
    console::is_skipped_line(line);
    const auto command = console::split_command(line);
    if (command)
        for (const std::string& word : command->words) {
            const auto value = console::parse_value(word);
            if (!value) continue;
            const std::string written = console::format_value(*value);
            const auto again = console::parse_value(written);
            if (!again || console::format_value(*again) != written) __builtin_trap();
        }
    return 0;
}
