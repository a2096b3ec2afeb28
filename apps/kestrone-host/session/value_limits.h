// Limits that every reader and writer of tagged values shares, so that whatever one of them
// accepts the others accept too: a value the console reads can be stored, saved and opened again.
#pragma once

namespace console {

// Arrays within arrays: a value is at most this many arrays deep. Readers stop there instead of
// recursing into a line or a file without end.
inline constexpr int kMaxArrayNesting = 64;

}  // namespace console
