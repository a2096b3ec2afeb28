// The profile reader on any bytes: the first bytes choose the section and key, the rest is the
// file.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/profile_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view all(reinterpret_cast<const char*>(data), size);
    const std::size_t a = all.find('\0');
    const std::size_t b = a == std::string_view::npos ? a : all.find('\0', a + 1);
    if (b == std::string_view::npos) {
        platform::profile_lookup(all, "Pins", " 1", "default ", 255);
        return 0;
    }
    const std::string_view section = all.substr(0, a), key = all.substr(a + 1, b - a - 1),
                           text = all.substr(b + 1);
    const std::string value = platform::profile_lookup(text, section, key, "x", 255);
    if (value.size() > 254) __builtin_trap();
    platform::profile_lookup(text, section, key, "", 1);
    return 0;
}
