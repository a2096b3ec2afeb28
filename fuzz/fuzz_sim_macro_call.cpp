// SimMacroCall and SimMacroCall2 with any number and any tagged values as parameters, on one
// robot through a run: every call answers with a status, whatever the values, and the robot
// keeps answering.
#include <cstddef>
#include <cstdint>

#include "fuzz_robot.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static auto robot = fuzzing::shipped_robot();
    FuzzedDataProvider in(data, size);
    kestrone::IKestroneComponentV5& c = *robot.get();
    c.StartSimulation();
    while (in.remaining_bytes() > 0) {
        const std::int32_t id = in.ConsumeBool() ? in.ConsumeIntegralInRange(-1, 22)
                                                 : in.ConsumeIntegral<std::int32_t>();
        const kestrone::Variant params = fuzzing::consume_variant(in);
        kestrone::Variant affected = fuzzing::consume_variant(in);
        std::int32_t ret = in.ConsumeIntegral<std::int32_t>(), cycles = 0;
        if (in.ConsumeBool()) {
            c.SimMacroCall(id, params, &ret, &affected, &cycles);
        } else {
            kestrone::Variant result = fuzzing::consume_variant(in);
            c.SimMacroCall2(id, params, &result, &affected, &cycles);
        }
        if (in.ConsumeIntegralInRange(0, 15) == 0) c.StopSimulation(), c.StartSimulation();
    }
    std::string description;
    if (kestrone::failed(c.get_Description(&description))) __builtin_trap();
    return 0;
}
