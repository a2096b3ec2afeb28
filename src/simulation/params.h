// How the macro handlers read their parameters.
#pragma once

#include <cstdint>

#include "kestrone/variant.h"
#include "platform/basic_error.h"

namespace rovanta::sim {

// Parameter k of vParams: error 13 when vParams holds no array, 9 when k lies outside it.
const kestrone::Variant& param(const kestrone::Variant& vParams, std::int32_t k);

enum class Side { Left, Forward, Right };

// The side a number names, as a digit or a letter's code: 0, 108 "l", 76 "L" left; 1, 102 "f",
// 70 "F" forward where `forward` is known, else right; any other number right.
Side side_of(const kestrone::Variant& value, bool forward);

}  // namespace rovanta::sim
