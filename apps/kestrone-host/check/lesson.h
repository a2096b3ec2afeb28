// A lesson: one file a teacher hands out, holding the instructions, the arena, the starting
// program, the component's settings and the checks that a student's program must pass. JSON,
// `.klesson`; read whole or refused whole.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kestrone/memory_store.h"
#include "macro_table.h"

namespace lesson {

// The version of the format this host reads.
inline constexpr int kLessonVersion = 1;

struct Lesson {
    std::string title;
    std::string instructions;            // Markdown
    std::optional<std::string> arena;    // an arena's text; none: the panel only
    std::optional<std::string> program;  // the starting program's text, or the student's work
    std::vector<kestrone::MemoryStore::Entry> settings;
    std::vector<std::string> checks;  // console lines, run in order
    bool operator==(const Lesson&) const = default;
};

// The lesson in `text`, or nullopt with `what` saying what is wrong (without the file's name).
// With `macros`, the program must also pass its checks against them.
std::optional<Lesson> parse_lesson(std::string_view text, const kflow::MacroTable* macros,
                                   std::string* what);

// The lesson in the file at `path`: a regular file of at most 16 MB. nullopt with `error` as
// "FILE: what". With `text`, the file's text too.
std::optional<Lesson> read_lesson(const std::string& path, const kflow::MacroTable* macros,
                                  std::string* error, std::string* text = nullptr);

// The folder of the lesson at `path`, where its checks find the files they name: empty for a
// lesson in the current folder.
std::string lesson_folder(const std::string& path);

}  // namespace lesson
