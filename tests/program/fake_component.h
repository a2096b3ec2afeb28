// A component of the test's own behind the host interface: it lists the macros it is given,
// records every simulation call in order, and answers function macros from a rule of the
// test's. The interpreter cannot tell it from a module.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kestrone/component_v5.h"

namespace program_testing {

struct FakeMacro {
    std::string name;
    std::string returns = "void";
    std::vector<std::string> param_types;  // one C type word per parameter
    bool is_private = false;
};

// One call as the component saw it.
struct SimCall {
    std::int32_t id;
    std::vector<kestrone::Variant> args;
    bool operator==(const SimCall&) const = default;
};

// Every operation answered E_NOTIMPL: a running program asks only those FakeComponent overrides.
#define KT_NOT_IMPLEMENTED(kind, name, ...)                              \
    KT_SIGNATURE(kind, name, __VA_ARGS__) override {                     \
        return not_implemented(KT_FOR_EACH(KT_PARAM_NAME, __VA_ARGS__)); \
    }
class NoOperations : public kestrone::IKestroneComponentV5 {
  public:
    virtual ~NoOperations() = default;
    KESTRONE_COMPONENT_V5_OPERATIONS(KT_NOT_IMPLEMENTED)

  private:
    template <class... A>
    static kestrone::HRESULT not_implemented(const A&...) {
        return kestrone::E_NOTIMPL;
    }
};
#undef KT_NOT_IMPLEMENTED

class FakeComponent : public NoOperations {
  public:
    explicit FakeComponent(std::vector<FakeMacro> macros) : macros_(std::move(macros)) {}

    // The Rovanta robot's table as the code file gives it: ids 0 to 20.
    static std::vector<FakeMacro> robot_macros();

    // The result of a function macro: by default the low bits of a count of all calls made.
    std::function<std::int32_t(std::int32_t id, std::size_t call)> result =
        [](std::int32_t, std::size_t call) { return static_cast<std::int32_t>(call * 37 + 11); };
    // The id of the first macro, as the component numbers them; and what it says of its pins.
    std::int32_t first_id = 0;
    std::int32_t pin_count = 0;
    // A macro that fails with this status (0: none).
    std::int32_t failing_id = -1;
    kestrone::HRESULT failure = 0;

    int starts = 0, stops = 0;
    std::vector<SimCall> calls;
    // Every event in order: "start", "stop", or the macro's name.
    std::vector<std::string> events;

    kestrone::HRESULT QueryInterface(const kestrone::Guid&, void**) noexcept override {
        return kestrone::E_NOINTERFACE;
    }
    std::uint32_t AddRef() noexcept override { return 1; }
    std::uint32_t Release() noexcept override { return 1; }

    kestrone::HRESULT get_MacroNames(kestrone::Variant* pVal) noexcept override;
    kestrone::HRESULT get_MacroIsFunction(std::int32_t id, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_MacroParameters(std::int32_t id,
                                          kestrone::Variant* pVal) noexcept override;
    kestrone::HRESULT get_MacroIsPrivate(std::int32_t id, std::int32_t* pVal) noexcept override;
    kestrone::HRESULT get_PinCount(std::int32_t* pVal) noexcept override;
    kestrone::HRESULT StartSimulation() noexcept override;
    kestrone::HRESULT StopSimulation() noexcept override;
    kestrone::HRESULT SimMacroCall(std::int32_t id, const kestrone::Variant& vParams,
                                   std::int32_t* pRetVal, kestrone::Variant* pvAffected,
                                   std::int32_t* pCycles) noexcept override;

  private:
    const FakeMacro& macro(std::int32_t id) const {
        return macros_.at(static_cast<std::size_t>(std::int64_t{id} - first_id));
    }
    std::vector<FakeMacro> macros_;
};

}  // namespace program_testing
