// Floats as text that reads back to the same bits, in the console's values and in the project
// file alike: the shortest digits (a negative zero keeps its sign, "-0"), and words for what digits
// cannot write: "inf", "-inf", "nan", "-nan". A NaN other than the usual quiet one carries its
// mantissa bits as well, "nan(0x1)", so that no payload is lost on the way.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace console {

std::string float_text(float f);
std::string float_text(double d);

// The words float_text writes for infinities and NaN, in any case ("NaN", "Infinity" too), with a
// sign; nullopt when `text` is no such word.
std::optional<float> single_word(std::string_view text);
std::optional<double> double_word(std::string_view text);

}  // namespace console
