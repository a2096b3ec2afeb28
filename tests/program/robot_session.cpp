#include "robot_session.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "module_host.h"
#include "support/variant_number.h"

namespace program_testing {

using kestrone::Variant;

namespace {
const host::ModuleHost& module() {
    static const std::unique_ptr<host::ModuleHost> m = [] {
        std::string error;
        auto loaded = host::ModuleHost::load(KESTRONE_MODULE, error);
        if (!loaded) {
            ADD_FAILURE() << error;
            std::abort();
        }
        return loaded;
    }();
    return *m;
}
}  // namespace

RobotSession::RobotSession() {
    EXPECT_EQ(module().create(&services, object_), kestrone::S_OK);
    component_ = object_.query<kestrone::IKestroneComponentV5>(kestrone::IID_IKestroneComponentV5);
    panel_ = object_.query<kestrone::IKestronePanel>(kestrone::IID_IKestronePanel);
    fields_ = object_.query<kestrone::IKestroneInspection>(kestrone::IID_IKestroneInspection);
    elements_ =
        object_.query<kestrone::IKestronePanelInspection>(kestrone::IID_IKestronePanelInspection);
    component_->put_KestroneVersion(0x501);
    std::string error;
    auto table = kflow::MacroTable::read(*component_.get(), &error);
    EXPECT_TRUE(table.has_value()) << error;
    if (table) macros_ = std::move(*table);
}

int RobotSession::field(const std::string& name, std::int32_t index) {
    Variant v;
    EXPECT_EQ(fields_->GetField(name, index < 0 ? nullptr : &index, "", &v), kestrone::S_OK)
        << name;
    return variant_number(v, name);
}

bool RobotSession::visible(const std::string& element, std::int32_t index) {
    Variant v;
    EXPECT_EQ(elements_->GetProperty(element, &index, "Visible", &v), kestrone::S_OK);
    return v.type() == kestrone::VarType::Boolean && v.as_boolean();
}

void RobotSession::set_sensor(std::int32_t sensor, std::int32_t value) {
    EXPECT_EQ(elements_->PutProperty("updownADC", &sensor, "Value", Variant::long_(value)),
              kestrone::S_OK);
    EXPECT_EQ(field("lADCVal", sensor), value);
}

void RobotSession::click(const std::string& element) {
    std::int32_t id = -1;
    ASSERT_EQ(elements_->FindElement(element, nullptr, &id), kestrone::S_OK) << element;
    ASSERT_EQ(panel_->Click(id), kestrone::S_OK);
}

void ScriptedClock::advance_to(std::int64_t t) {
    std::int64_t clock = 0, ticks = 0;
    panel_.GetClock(&clock);
    panel_.AdvanceTo(clock + (t - now_), &ticks);
    ticks_ += ticks;
    now_ = t;
}

void ScriptedClock::wait(std::uint16_t ms) {
    const std::int64_t end = now_ + ms;
    while (!script_.empty() && script_.begin()->first <= end) {
        auto action = std::move(script_.begin()->second);
        advance_to(std::max(now_, script_.begin()->first));
        script_.erase(script_.begin());
        action();
    }
    advance_to(end);
}

std::string example(const std::string& name) {
    std::ifstream in(std::string(KESTRONE_EXAMPLES) + "/" + name);
    EXPECT_TRUE(in.good()) << name;
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

}  // namespace program_testing
