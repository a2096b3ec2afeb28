// The property page's puts: any widget and property names, any tagged values, clicks, applies
// and new selections, on one robot. Every call answers with a status; whatever the page applied,
// the robot's settings stay readable and its code text can still be formed or refused cleanly.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz_robot.h"
#include "kestrone/property_page.h"

namespace {

const std::array<const char*, 17> kWidgets{
    "Frame3",      "sldMotorBias", "lblBiasVal", "Label1",     "lblBiasLeft", "chkWaitForButton",
    "Frame2",      "optByte",      "optInt",     "Frame1",     "txtiThreshR", "txtiThreshL",
    "txtiThreshF", "lblThreshL",   "lblThreshF", "lblThreshR", "lblVersion"};
const std::array<const char*, 8> kProperties{"Text", "Value", "Caption", "Min",
                                             "Max",  "Left",  "Enabled", "Visible"};

std::string consume_name(FuzzedDataProvider& in, const char* const* names, std::size_t count) {
    if (in.ConsumeIntegralInRange(0, 7) == 0) return in.ConsumeRandomLengthString(16);
    return names[in.ConsumeIntegralInRange<std::size_t>(0, count - 1)];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static auto robot = fuzzing::shipped_robot();
    FuzzedDataProvider in(data, size);
    kestrone::IKestronePropertyPage* raw = nullptr;
    if (kestrone::failed(robot->CreatePropertyPage(&raw))) __builtin_trap();
    auto page = kestrone::ComPtr<kestrone::IKestronePropertyPage>::attach(raw);
    kestrone::IUnknown* selected[] = {static_cast<kestrone::IKestroneComponentV5*>(robot.get())};
    page->SetSelectedControls(selected, 1);
    while (in.remaining_bytes() > 0) {
        const std::string widget = consume_name(in, kWidgets.data(), kWidgets.size());
        switch (in.ConsumeIntegralInRange(0, 4)) {
            case 0: {
                const std::string property =
                    consume_name(in, kProperties.data(), kProperties.size());
                page->UserPut(widget, property, fuzzing::consume_variant(in));
                break;
            }
            case 1:
                page->UserClick(widget);
                break;
            case 2:
                page->Apply();
                break;
            case 3: {
                kestrone::Variant value;
                page->GetProperty(widget, consume_name(in, kProperties.data(), kProperties.size()),
                                  &value);
                break;
            }
            default:
                page->SetSelectedControls(selected, in.ConsumeIntegralInRange(0, 1));
                break;
        }
    }
    std::string text = "%a%b%c%d%o%p";
    const kestrone::HRESULT hr = robot->MacroCodeOverride(&text);
    if (kestrone::failed(hr) && kestrone::basic_error_number(hr) == 0) __builtin_trap();
    return 0;
}
