#include "window_double.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace stage_testing {

using kestrone::HRESULT;
using kestrone::Variant;

void WindowServices::ShowMessage(const std::string& text) noexcept {
    messages.push_back(text);
    if (while_box_open) while_box_open();
}

void WindowServices::PlayTone(std::int32_t hertz, std::int32_t ms) noexcept {
    tones.emplace_back(hertz, ms);
    if (while_tone) while_tone(ms);
}

host::ProjectCodec MemoryFiles::codec() {
    host::ProjectCodec c;
    c.load = [this](const std::string& path,
                    std::string* error) -> std::optional<host::ProjectContents> {
        const auto it = files.find(path);
        if (it != files.end()) return it->second;
        *error = "cannot open the project " + path;
        return std::nullopt;
    };
    c.save = [this](const std::string& path, const host::ProjectContents& contents, std::string*) {
        files[path] = contents;
        return true;
    };
    return c;
}

WindowDouble::WindowDouble() {
    std::string error;
    EXPECT_TRUE(session.load_module(KESTRONE_MODULE, &error)) << error;
    EXPECT_EQ(session.create_object(), kestrone::S_OK);
    // As the host does once it has made the object.
    EXPECT_EQ(session.make_ready(), kestrone::S_OK);
}

std::int64_t WindowDouble::elapse(std::int64_t gap) {
    real_now_ += gap;
    std::int64_t ticks = -1;
    EXPECT_TRUE(kestrone::succeeded(stage.bring_to(real_now_, &ticks)));
    return ticks;
}

HRESULT WindowDouble::call(const std::string& name, std::vector<Variant> args, bool write) {
    const auto op = host::ComponentSession::find_operation(name, write);
    EXPECT_TRUE(op.has_value()) << name;
    if (!op) return kestrone::DISP_E_UNKNOWNNAME;
    Variant result;
    return session.call(*op, args, &result);
}

void WindowDouble::set_motors(std::int32_t left, std::int32_t right) {
    const Variant speeds =
        Variant::array(kestrone::VarType::Variant, 0,
                       {Variant::integer(0), Variant::integer(static_cast<std::int16_t>(left)),
                        Variant::integer(0), Variant::integer(static_cast<std::int16_t>(right))});
    EXPECT_EQ(call("SimMacroCall",
                   {Variant::long_(9), speeds, Variant::long_(0), Variant(), Variant::long_(0)}),
              kestrone::S_OK);
}

std::string example_path(const std::string& name) {
    return std::string(KESTRONE_EXAMPLES) + "/" + name;
}

}  // namespace stage_testing
