// The project file reader on any bytes: a file is taken whole or refused with a message, and
// what is taken writes back to a file that reads to the same entries.
#include <cstddef>
#include <cstdint>
#include <string>

#include "project_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::string error;
    const auto entries = host::decode_project(bytes, &error);
    if (!entries) {
        if (error.empty()) __builtin_trap();
        return 0;
    }
    // Compared as written, which keeps every bit: a NaN is not equal to itself.
    const std::string written = host::encode_project(*entries);
    const auto again = host::decode_project(written, &error);
    if (!again || host::encode_project(*again) != written) __builtin_trap();
    return 0;
}
