// A lesson written as its file: the whole lesson, or the student's program put into a lesson's
// text with every other byte kept. What is written here the lesson's reader reads back the same.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "lesson.h"

namespace lesson {

// The lesson's file: a JSON object, two spaces in, its keys in the order of the format, each check
// on a line of its own; no arena, no program and no settings where the lesson has none.
std::string write_lesson(const Lesson& l);

// `text`, a lesson's file, with the value of its "program" replaced by `program` and every other
// byte as it was; a lesson without a program gets one as its first key (a lesson has one key at
// least). nullopt with `what` when `text` is no JSON object.
std::optional<std::string> with_program(std::string_view text, std::string_view program,
                                        std::string* what);

// `text` as a JSON string, quotes included: UTF-8 as it stands, the quote, the backslash and the
// control characters escaped.
std::string json_string(std::string_view text);

}  // namespace lesson
