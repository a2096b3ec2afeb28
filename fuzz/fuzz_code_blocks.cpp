// The code file as the component reads it: its definition sections through the profile reader,
// its blocks line by line, its macro table and every macro's text, from any bytes. The robot is
// made anew on each input, so start-up itself meets the file. The file is served from memory, in
// a folder that stands nowhere on disk.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz_robot.h"
#include "platform/basic_error.h"
#include "platform/vb_numeric.h"

namespace {

// Start-up makes eight lookups a pin and two a parameter, each over the whole file, as it should:
// a file that counts 200,000 pins takes minutes, which says nothing new. Inputs with any
// `Count` entry beyond a few dozen are passed over.
bool counts_few(std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\r\n");
        std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
        const std::size_t eq = line.find('=');
        if (eq == std::string_view::npos) continue;
        std::string key(line.substr(0, eq));
        for (char& c : key)
            c = static_cast<char>(c | 0x20);
        if (key.find("count") == std::string::npos) continue;
        // The value as the profile reader gives it: blanks cut, one pair of quotes gone.
        std::string_view value = line.substr(eq + 1);
        const std::size_t first = value.find_first_not_of(" \t\v");
        value = first == std::string_view::npos ? std::string_view{} : value.substr(first);
        value = value.substr(0, value.find_last_not_of(" \t\v") + 1);
        if (value.size() >= 2 && (value[0] == '"' || value[0] == '\'') && value.back() == value[0])
            value = value.substr(1, value.size() - 2);
        try {
            if (std::fabs(vb::text_to_double(value)) > 64) return false;
        } catch (const vb::BasicError&) {
        }
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (!counts_few(bytes)) return 0;
    const std::string folder = "/fuzz_code_blocks";
    fuzzing::serve_code_file(folder, "Robo", std::string(bytes));
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
