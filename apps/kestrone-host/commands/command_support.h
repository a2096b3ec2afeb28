// What the commands share: checks that the stage has what a command needs, and the reading and
// writing of the words the commands take (element paths, numbers, names of files).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "command.h"
#include "component_session.h"

namespace commands {

// The program at `path` checked and loaded on the stage, ready to run: nullopt, or the reply
// that says why not (no object to run it on, a file that can't be read, its first fault).
std::optional<Reply> load_program(Context& context, const std::string& path);

// nullopt when the robot has an object offering `facet`; else the reply that says why not.
std::optional<Reply> lacks(Context& context, host::Facet facet);
// The same for an object at all.
std::optional<Reply> lacks_object(Context& context);

// A number as written in the console: any numeric kind.
std::optional<double> number_of(std::string_view text);
// A whole number in the range of a 32-bit integer.
std::optional<std::int32_t> whole_number(std::string_view text);
// A name as a command takes it: a bare word, or quoted for anything else.
std::string word_for(std::string_view text);
// A file's path as a command takes it: always quoted, so that any path reads back.
std::string path_for(std::string_view path);

// ELEMENT or ELEMENT(I): a panel element as the console names it.
struct ElementRef {
    std::string name;
    std::optional<std::int32_t> index;
    std::string text() const;
    bool operator==(const ElementRef&) const = default;
};
// ELEMENT(I).PROPERTY when `with_property` (the property into `property`), else ELEMENT(I).
std::optional<ElementRef> parse_element(std::string_view text, bool with_property,
                                        std::string* property = nullptr);

}  // namespace commands
