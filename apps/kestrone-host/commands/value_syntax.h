// The console's written form of tagged values, in commands and answers alike.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "kestrone/variant.h"

namespace console {

// Parses one value; nullopt with `error` set when the text is no value.
std::optional<kestrone::Variant> parse_value(std::string_view text, std::string* error = nullptr);

// Writes a value: 5%, 1281&, 75!, 0.5#, -0#, nan!, -inf#, True, "a\"b", Long[0 to 2](0, 1, 2),
// Empty. What it writes reads back to the same value, bit for bit.
std::string format_value(const kestrone::Variant& v);

// A string in double quotes, every byte below 32 and from 127 up escaped.
std::string quote(std::string_view text);
// Free text as an answer line carries it: every byte below 32 and from 127 up escaped, so that
// one answer stays one line of plain text.
std::string escape_text(std::string_view text);
// A store key as a command would write it: a bare word when it reads back as one, else quoted.
std::string key_text(std::string_view key);

std::string_view type_name(kestrone::VarType type);

// A piece of the user's text to repeat in a message: the whole when short, else its start and
// "...".
std::string excerpt(std::string_view text);
// "cannot read the value TEXT: WHY", a long TEXT cut short.
std::string unreadable(std::string_view text, const std::string& why);

}  // namespace console
