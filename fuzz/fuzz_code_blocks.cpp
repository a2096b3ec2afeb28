// The code file as the component reads it: its definition sections through the profile reader,
// its blocks line by line, its macro table and every macro's text, from any bytes. The robot is
// made anew on each input, so start-up itself meets the file.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

#include "fuzz_robot.h"

namespace {

std::string scratch_folder() {
    char pattern[] = "/tmp/fuzz_code_blocks.XXXXXX";
    const char* made = ::mkdtemp(pattern);
    if (!made) std::abort();
    return made;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string folder = scratch_folder();
    {
        std::ofstream file(folder + "/Robo.c", std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    auto robot = fuzzing::make_robot(folder, "Robo");
    if (!robot) return 0;
    kestrone::IKestroneComponentV5& c = *robot.get();
    std::string text;
    c.get_DefinesCode(&text);
    c.get_InitialisationCode(&text);
    std::int32_t pins = 0;
    c.get_PinCount(&pins);
    for (std::int32_t id = -1; id <= pins && id < 64; ++id) {
        std::int32_t value = 0;
        c.get_PinName(id, &text);
        c.get_DesiredPort(id, &value);
        c.get_SamePortAsID(id, &value);
    }
    kestrone::Variant names;
    c.get_MacroNames(&names);
    for (std::int32_t id = -1; id < 64; ++id) {
        kestrone::Variant params;
        if (kestrone::failed(c.get_MacroCode(id, &text))) break;
        c.get_MacroParameters(id, &params);
    }
    return 0;
}
