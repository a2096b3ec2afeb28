#include "fake_component.h"

namespace program_testing {

using kestrone::Variant;

std::vector<FakeMacro> FakeComponent::robot_macros() {
    const std::vector<std::string> one{"char"}, none{};
    return {
        {"ReadAnalogue", "int", one, true},
        {"WaitForStart", "void", none},
        {"SetMotorTrim", "void", one},
        {"TestLevel", "char", one},
        {"DriveForwards", "void", one},
        {"DriveBackwards", "void", one},
        {"DriveStop", "void", none},
        {"SpinLeft", "void", one},
        {"SpinRight", "void", one},
        {"SetMotors", "void", {"char", "char", "char", "char"}},
        {"WriteLeds", "void", one},
        {"LedOn", "void", one},
        {"LedOff", "void", one},
        {"ReadSwitch", "char", one},
        {"WaitSwitch", "int", one},
        {"PlayTone", "void", {"char", "char", "char"}},
        {"ReadMic", "int", none},
        {"ReadLdr", "int", none},
        {"TestSideSensor", "char", one},
        {"ReadSideSensor", "int", one},
        {"ReadLine", "char", one},
    };
}

kestrone::HRESULT FakeComponent::get_MacroNames(Variant* pVal) noexcept {
    std::vector<Variant> names;
    for (const FakeMacro& m : macros_)
        names.push_back(Variant::string(m.name + "|" + m.name + "|" + m.returns));
    *pVal = Variant::array(kestrone::VarType::String, first_id, std::move(names));
    return kestrone::S_OK;
}

kestrone::HRESULT FakeComponent::get_MacroIsFunction(std::int32_t id, std::int32_t* pVal) noexcept {
    *pVal = macro(id).returns != "void" ? -1 : 0;
    return kestrone::S_OK;
}

kestrone::HRESULT FakeComponent::get_MacroIsPrivate(std::int32_t id, std::int32_t* pVal) noexcept {
    *pVal = macro(id).is_private ? -1 : 0;
    return kestrone::S_OK;
}

kestrone::HRESULT FakeComponent::get_MacroParameters(std::int32_t id, Variant* pVal) noexcept {
    const FakeMacro& m = macro(id);
    if (m.param_types.empty()) {
        *pVal = Variant::array(kestrone::VarType::Variant, 0, {});
        return kestrone::S_OK;
    }
    std::vector<Variant> params;
    for (std::size_t k = 0; k < m.param_types.size(); ++k) {
        const std::string name = "P" + std::to_string(k + 1);
        params.push_back(Variant::string(name + "|" + name + "|" + m.param_types[k]));
    }
    *pVal = Variant::array(kestrone::VarType::String, 0, std::move(params));
    return kestrone::S_OK;
}

kestrone::HRESULT FakeComponent::get_PinCount(std::int32_t* pVal) noexcept {
    *pVal = pin_count;
    return kestrone::S_OK;
}

kestrone::HRESULT FakeComponent::StartSimulation() noexcept {
    ++starts;
    events.push_back("start");
    return kestrone::S_OK;
}

kestrone::HRESULT FakeComponent::StopSimulation() noexcept {
    ++stops;
    events.push_back("stop");
    return kestrone::S_OK;
}

kestrone::HRESULT FakeComponent::SimMacroCall(std::int32_t id, const Variant& vParams,
                                              std::int32_t* pRetVal, Variant*,
                                              std::int32_t*) noexcept {
    // The host's array: variants from 0, one per parameter.
    if (!vParams.is_array() || vParams.as_array().lower != 0 ||
        vParams.as_array().element != kestrone::VarType::Variant)
        return kestrone::E_INVALIDARG;
    calls.push_back({id, vParams.as_array().items});
    events.push_back(macro(id).name);
    if (id == failing_id) return failure;
    if (macro(id).returns != "void") *pRetVal = result(id, calls.size() - 1);
    return kestrone::S_OK;
}

}  // namespace program_testing
