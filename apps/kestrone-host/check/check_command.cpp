#include "check_command.h"

#include <fstream>
#include <ostream>
#include <thread>

#include "check_report.h"
#include "class_check.h"
#include "component_module.h"
#include "lesson.h"
#include "macro_table.h"
#include "object_recipe.h"
#include "user_file.h"

namespace lesson {

namespace {

struct Refusal {
    std::string why;
};

// The component's macros, which the lesson's program must know.
kflow::MacroTable macros_of(const std::string& module_path) {
    std::string why;
    const auto module = host::ComponentModule::open(module_path, why);
    if (!module) throw Refusal{why};
    QuietServices services;
    const host::ReadyObject made = host::make_ready_object(*module, services, {});
    if (!made.object) throw Refusal{made.why};
    const auto component =
        made.object.query<kestrone::IKestroneComponentV5>(kestrone::IID_IKestroneComponentV5);
    if (!component) throw Refusal{"the component offers no host interface"};
    auto table = kflow::MacroTable::read(*component.get(), &why);
    if (!table) throw Refusal{why};
    return std::move(*table);
}

unsigned jobs_of(const std::optional<std::string>& written) {
    if (!written) return std::max(1u, std::thread::hardware_concurrency());
    std::size_t used = 0;
    int n = 0;
    try {
        n = std::stoi(*written, &used);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used != written->size() || n < 1 || n > 1024)
        throw Refusal{"--jobs takes a number of workers from 1 to 1024, not '" + *written + "'"};
    return static_cast<unsigned>(n);
}

// The programs of this shard, read before any is checked.
std::vector<ProgramSource> programs_of(const CheckOptions& o, const Lesson& l) {
    if (o.programs.empty() && !l.program)
        throw Refusal{o.lesson + ": the lesson has no program, so name the programs to check"};
    // Without programs named, the class is the lesson's own program.
    const std::vector<std::string> names = o.programs.empty() ? std::vector{o.lesson} : o.programs;
    Shard shard;
    std::string why;
    if (o.shard) {
        const auto s = parse_shard(*o.shard, &why);
        if (!s) throw Refusal{why};
        shard = *s;
    }
    std::vector<ProgramSource> out;
    for (const std::size_t i : shard_places(names.size(), shard)) {
        ProgramSource p{names[i], o.programs.empty() ? *l.program : std::string()};
        if (!o.programs.empty() &&
            !host::read_user_file(p.name, host::kLargestTextFile, "a robot program", &p.text, &why))
            throw Refusal{"cannot read the program " + p.name + ": " + why};
        out.push_back(std::move(p));
    }
    return out;
}

void write_report(const std::string& path, const std::string& text) {
    if (path.empty()) return;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (!file) throw Refusal{"cannot write the report " + path};
}

int check(const CheckOptions& o, std::ostream& out) {
    const unsigned jobs = jobs_of(o.jobs);
    const kflow::MacroTable macros = macros_of(o.module);
    std::string error;
    const auto l = read_lesson(o.lesson, &macros, &error);
    if (!l) throw Refusal{error};
    const std::vector<ProgramSource> programs = programs_of(o, *l);
    const CheckSetup setup{&*l, o.lesson, lesson_folder(o.lesson), o.module};
    std::size_t width = 0;
    for (const ProgramSource& p : programs)
        width = std::max(width, p.name.size() + 3);
    std::vector<ClassResult> results;
    check_class(
        programs, jobs, [&setup](const ProgramSource& p) { return check_program(setup, p); },
        [&](std::size_t i, const CheckResult& r) {
            results.push_back({programs[i].name, r});
            out << result_line(results.back(), width) << '\n' << std::flush;
        });
    out << summary_line(results) << '\n' << std::flush;
    write_report(o.junit, junit_report(l->title.empty() ? o.lesson : l->title, results));
    write_report(o.csv, csv_report(results));
    for (const ClassResult& r : results)
        if (!r.result.passed) return 1;
    return 0;
}

}  // namespace

int run_check_command(const CheckOptions& options, std::ostream& out, std::ostream& err) {
    try {
        return check(options, out);
    } catch (const Refusal& r) {
        err << "kestrone-host: " << r.why << '\n';
        return 2;
    }
}

}  // namespace lesson
