// What the fuzz targets share: a robot made from the component's own code file and linked in,
// and tagged values read from the fuzzer's bytes.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "host/rovanta_object.h"
#include "kestrone/com.h"
#include "kestrone/variant.h"
#include "platform/memory_files.h"
#include "platform/module_facts.h"
#include "platform/text_file.h"

namespace fuzzing {

// A robot whose code file is `folder`/`name`.c, with the headless services (messages answered at
// once, silent tones). Its host has told its version, so that its macro table stands.
inline kestrone::ComPtr<rovanta::RovantaObject> make_robot(const std::string& folder,
                                                           const std::string& name,
                                                           bool ready = true) {
    rovanta::RovantaObject* raw = nullptr;
    rovanta::RovantaObject::create(platform::ModuleFacts::for_path(folder + "/" + name + ".so"),
                                   nullptr, &raw);
    auto robot = kestrone::ComPtr<rovanta::RovantaObject>::attach(raw);
    if (robot && ready) robot->put_KestroneVersion(kestrone::kHostVersion);
    return robot;
}

// The code file `folder`/`name`.c as the component forms its path, served from memory: the
// component reads it at every lookup as ever, without a system call.
inline void serve_code_file(const std::string& folder, const std::string& name, std::string bytes) {
    platform::serve_from_memory(folder + "/" + name + ".c", std::move(bytes));
}

// The component's shipped code file, read once from the build tree and served from memory.
inline kestrone::ComPtr<rovanta::RovantaObject> shipped_robot() {
    static const bool served = [] {
        std::string bytes;
        if (!platform::read_whole_file(KESTRONE_COMPONENT_DIR "/KT5_Rovanta.c", bytes))
            std::abort();
        serve_code_file(KESTRONE_COMPONENT_DIR, "KT5_Rovanta", std::move(bytes));
        return true;
    }();
    (void)served;
    return make_robot(KESTRONE_COMPONENT_DIR, "KT5_Rovanta");
}

// A tagged value of any kind: the scalars at their edges or anywhere, text of any bytes, and
// arrays of any element kind with any lower bound, nested a few deep.
inline kestrone::Variant consume_variant(FuzzedDataProvider& in, int depth = 0) {
    using kestrone::Variant;
    switch (in.ConsumeIntegralInRange<int>(0, depth < 3 ? 9 : 7)) {
        case 0:
            return Variant{};
        case 1:
            return Variant::integer(in.ConsumeIntegral<std::int16_t>());
        case 2:
            return Variant::long_(in.ConsumeIntegral<std::int32_t>());
        case 3:
            return Variant::single(in.ConsumeFloatingPoint<float>());
        case 4:
            return Variant::double_(in.ConsumeFloatingPoint<double>());
        case 5:
            return Variant::boolean(in.ConsumeBool());
        case 6:
            return Variant::string(in.ConsumeRandomLengthString(64));
        case 7:
            return Variant::byte(in.ConsumeIntegral<std::uint8_t>());
        default: {
            const auto element = static_cast<kestrone::VarType>(
                in.ConsumeIntegralInRange<int>(0, static_cast<int>(kestrone::VarType::Variant)));
            const std::int32_t lower = in.ConsumeBool() ? in.ConsumeIntegralInRange(-3, 3)
                                                        : in.ConsumeIntegral<std::int32_t>();
            const std::size_t count = in.ConsumeIntegralInRange<std::size_t>(0, 8);
            // An array's upper bound is a Long like its lower one.
            const auto room = static_cast<std::size_t>(std::int64_t{INT32_MAX} - lower + 1);
            std::vector<Variant> items;
            for (std::size_t k = 0; k < count && k < room; ++k)
                items.push_back(consume_variant(in, depth + 1));
            return Variant::array(element, lower, std::move(items));
        }
    }
}

}  // namespace fuzzing
