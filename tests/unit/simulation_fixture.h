// A robot with the twelve pins and the 21 macros of the shipped robot, ready for macro calls.
#pragma once

#include <string>

#include "host/panel_facet.h"
#include "host_fixture.h"
#include "kestrone/status.h"
#include "platform/basic_error.h"

namespace sim_testing {

inline std::string robot_code_file(int macros = 21) {
    std::string s = "[Settings]\nDescription=Sim\n[Pins]\nCount=12\n";
    for (int i = 1; i <= 12; ++i)
        s += std::to_string(i) + "=P" + std::to_string(i) + "\n";
    s += "[MacroNames]\nCount=" + std::to_string(macros) + "\n";
    for (int i = 1; i <= macros; ++i)
        s += std::to_string(i) + "=M" + std::to_string(i) + "\n";
    return s;
}

using kestrone::Variant;

inline Variant params(std::initializer_list<int> values) {
    std::vector<Variant> items;
    for (int v : values)
        items.push_back(Variant::integer(static_cast<std::int16_t>(v)));
    return Variant::array(kestrone::VarType::Variant, 0, std::move(items));
}

class SimRobot : public host_testing::Robot {
  public:
    explicit SimRobot(int macros = 21, kestrone::IHostServices* host = nullptr)
        : Robot(robot_code_file(macros), host) {
        object().put_KestroneVersion(1281);
        unknown()->QueryInterface(kestrone::IID_IKestronePanel, view_.put());
        unknown()->QueryInterface(kestrone::IID_IKestronePanelInspection, inspect_.put());
    }
    // The panel's two interfaces, as a view reaches them.
    kestrone::IKestronePanel& view() { return *view_.get(); }
    kestrone::IKestronePanelInspection& inspect() { return *inspect_.get(); }
    rovanta::Rovanta& r() { return core(); }
    panel::Panel& panel() { return core().panel; }
    const panel::Element& el(const char* name, int index = -1) {
        return panel().at(panel().find(name, index));
    }
    // Runs macro `id` through the host's interface; the status, with pRetVal as it comes back.
    kestrone::HRESULT call(std::int32_t id, const Variant& p, std::int32_t* ret = nullptr) {
        std::int32_t r = ret ? *ret : 0, cycles = 0;
        Variant affected;
        const kestrone::HRESULT hr = object().SimMacroCall(id, p, &r, &affected, &cycles);
        if (ret) *ret = r;
        last_affected = affected;
        return hr;
    }
    int shown_heading() {
        int shown = -1;
        for (int k = 0; k < 13; ++k)
            if (el("imDirection", k).visible) shown = shown < 0 ? k : 99;
        return shown;
    }
    Variant last_affected;

  private:
    kestrone::ComPtr<kestrone::IKestronePanel> view_;
    kestrone::ComPtr<kestrone::IKestronePanelInspection> inspect_;
};

inline kestrone::HRESULT error(int n) {
    return kestrone::basic_error_status(n);
}

}  // namespace sim_testing
