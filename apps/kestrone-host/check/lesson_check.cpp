#include "lesson_check.h"

#include "command.h"
#include "kestrone/services.h"
#include "object_commands.h"
#include "stage.h"

namespace lesson {

namespace {

CheckResult failed(std::string message, const stage::Stage* stage = nullptr) {
    return {false, stage ? stage->now() : 0, std::move(message)};
}

// The robot as every check starts it: the lesson's settings read in, its arena loaded and the
// simulation started. Empty when it is ready, else why not.
std::string prepare(const CheckSetup& setup, commands::Context& context) {
    stage::Stage& stage = context.stage;
    host::ComponentSession& session = stage.session();
    std::string error;
    if (!session.load_module(setup.module, &error)) return error;
    const commands::Reply made = commands::make_object(context);
    if (!made.is_ok()) return "the robot could not be made: " + made.line();
    const Lesson& l = *setup.lesson;
    for (const auto& [key, value] : l.settings)
        session.set_store_entry(key, value);
    host::ObjectRecipe recipe;
    recipe.settings = &l.settings;
    recipe.settings_from = setup.lesson_name;
    if (kestrone::failed(session.make_ready(recipe)))
        return "the robot could not take the settings of " + setup.lesson_name;
    if (l.arena && !stage.world_driver().load_text(*l.arena, setup.lesson_name, &error))
        return error;
    if (kestrone::failed(session.start_simulation())) return "the simulation could not start";
    return {};
}

}  // namespace

std::string failure_message(const std::string& line, const std::string& answer,
                            const std::string& program_name) {
    if (answer.starts_with(program_name + ":")) return answer;
    return line + ": " + answer;
}

CheckResult check_program(const CheckSetup& setup, const ProgramSource& program) {
    QuietServices services;
    stage::Stage stage(services);
    commands::Context context(stage);
    context.folder = setup.folder;
    context.program_under_check = commands::Context::ProgramText{program.name, program.text};
    if (const std::string why = prepare(setup, context); !why.empty()) return failed(why);
    for (const std::string& line : setup.lesson->checks) {
        if (console::is_skipped_line(line)) continue;
        const commands::Parsed parsed = commands::parse_command(line);
        if (!parsed.command) return failed(line + ": " + parsed.error, &stage);
        const commands::Reply reply = parsed.command->execute(context);
        if (!reply.is_ok()) {
            const std::string answer =
                reply.kind == commands::Reply::Kind::Fail ? reply.text : reply.line();
            return failed(failure_message(line, answer, program.name), &stage);
        }
        if (context.quit) break;
    }
    return {true, stage.now(), {}};
}

}  // namespace lesson
