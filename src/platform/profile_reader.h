// The profile reader: one key of a Windows-style profile file, as GetPrivateProfileStringA
// finds it (see the platform notes: line ends, blanks, quotes, comments, first match wins).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

// The value of `key` in `section` of the profile text, or `fallback` (trailing spaces cut) when the
// section or key is missing. The result holds at most buffer_size - 1 bytes.
std::string profile_lookup(std::string_view text, std::string_view section, std::string_view key,
                           std::string_view fallback, std::size_t buffer_size);

// The same over a file; a file that can't be read counts as missing.
std::string get_private_profile_string(std::string_view section, std::string_view key,
                                       std::string_view fallback, std::size_t buffer_size,
                                       const std::string& path);

}  // namespace platform
