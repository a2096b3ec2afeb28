#include "program_support.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <string_view>
#include <vector>

namespace program_testing {

std::int16_t Run::var(const std::string& name) const {
    const auto v = interpreter ? interpreter->variable(name) : std::nullopt;
    EXPECT_TRUE(v.has_value()) << "no variable " << name;
    return v.value_or(-12345);
}

std::vector<std::vector<int>> Run::args_of(std::int32_t id) const {
    std::vector<std::vector<int>> out;
    for (const SimCall& c : component.calls) {
        if (c.id != id) continue;
        std::vector<int> args;
        for (const kestrone::Variant& v : c.args) {
            EXPECT_EQ(v.type(), kestrone::VarType::Integer) << "arguments are 16-bit integers";
            args.push_back(v.type() == kestrone::VarType::Integer ? v.as_integer() : -99999);
        }
        out.push_back(args);
    }
    return out;
}

std::unique_ptr<Run> run_program(const std::string& source, const kflow::RunLimits& limits,
                                 const std::function<void(FakeComponent&)>& setup) {
    auto run = std::make_unique<Run>();
    if (setup) setup(run->component);
    // The text in a buffer of its own length: a read past its end is a fault the sanitizers see.
    const std::vector<char> text(source.begin(), source.end());
    run->checked = kflow::check_program(std::string_view(text.data(), text.size()), "test.kflow",
                                        table_of(run->component));
    if (!run->checked.program) return run;
    run->interpreter = std::make_unique<kflow::Interpreter>(*run->checked.program, run->component);
    run->outcome = kflow::run_to_end(*run->interpreter, run->clock, limits);
    return run;
}

Command shell(const std::string& command) {
    Command c;
    FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (!pipe) return c;
    for (int ch; (ch = std::fgetc(pipe)) != EOF;)
        c.output.push_back(static_cast<char>(ch));
    const int status = ::pclose(pipe);
    c.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return c;
}

}  // namespace program_testing
