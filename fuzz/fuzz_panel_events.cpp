// A sequence of pointer, click and arrow events on the panel, with resizes, repaints and time
// passing between them, on one robot through a run: every event answers with a status and the
// panel's elements stay readable.
#include <cstddef>
#include <cstdint>

#include "fuzz_robot.h"
#include "kestrone/panel.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static auto robot = fuzzing::shipped_robot();
    static auto panel = robot.query<kestrone::IKestronePanel>(kestrone::IID_IKestronePanel);
    FuzzedDataProvider in(data, size);
    std::int32_t count = 0;
    panel->GetElementCount(&count);
    robot->StartSimulation();
    while (in.remaining_bytes() > 0) {
        const std::int32_t id = in.ConsumeBool() ? in.ConsumeIntegralInRange(-1, count)
                                                 : in.ConsumeIntegral<std::int32_t>();
        switch (in.ConsumeIntegralInRange(0, 6)) {
            case 0: {
                const auto action =
                    static_cast<kestrone::PointerAction>(in.ConsumeIntegralInRange(0, 2));
                const std::int32_t buttons = in.ConsumeIntegralInRange(0, 7);
                const std::int32_t shift = in.ConsumeIntegralInRange(0, 7);
                const float x = in.ConsumeBool() ? in.ConsumeFloatingPointInRange(-10.f, 360.f)
                                                 : in.ConsumeFloatingPoint<float>();
                const float y = in.ConsumeBool() ? in.ConsumeFloatingPointInRange(-10.f, 300.f)
                                                 : in.ConsumeFloatingPoint<float>();
                panel->Pointer(action, buttons, shift, x, y);
                break;
            }
            case 1:
                panel->Click(id);
                break;
            case 2:
                panel->Arrow(id, in.ConsumeBool());
                break;
            case 3:
                panel->SetSize(in.ConsumeFloatingPoint<float>(), in.ConsumeFloatingPoint<float>());
                break;
            case 4: {
                std::int64_t now = 0, ticks = 0;
                panel->GetClock(&now);
                panel->AdvanceTo(now + in.ConsumeIntegralInRange(0, 200), &ticks);
                break;
            }
            case 5:
                panel->Tick(in.ConsumeIntegralInRange(-1, 2));
                break;
            default:
                panel->Paint();
                break;
        }
    }
    for (std::int32_t k = 0; k < count; ++k) {
        kestrone::ElementInfo info;
        kestrone::ElementView view;
        if (kestrone::failed(panel->GetElement(k, &info)) ||
            kestrone::failed(panel->GetElementView(k, &view)))
            __builtin_trap();
    }
    return 0;
}
