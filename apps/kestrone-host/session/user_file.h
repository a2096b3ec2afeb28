// The files a user names to the host (a project, a robot program, an arena, a console script):
// read whole, and only when they are regular files of a sane size, so that a device, a FIFO or a
// folder named by mistake is refused at once instead of read without end.
#pragma once

#include <cstdint>
#include <string>

namespace host {

// The most a program, an arena or a script may hold, in bytes.
inline constexpr std::int64_t kLargestTextFile = 16LL * 1024 * 1024;

// Reads the file at `path` whole into `bytes`. False with `why`, which does not repeat the path,
// when it cannot be opened or read (the system's reason), is a folder, is not a regular file, or
// holds more than `limit` bytes ("it is too large to be KIND (more than N MB)").
bool read_user_file(const std::string& path, std::int64_t limit, const std::string& kind,
                    std::string* bytes, std::string* why);

// The system's reason for the error number `err`, safe to ask from several threads at once
// (strerror is not).
std::string system_reason(int err);

// Why a symbolic link at `path` leads to no file ("it is a symbolic link to X, which does not
// exist", or one that leads round in a loop); empty for anything else. Reading and saving refuse
// such a link alike: a save never puts a file in its place.
std::string broken_link(const std::string& path);

// The file a link names, so that a save replaces that file and not the link; any other path as
// it stands.
std::string resolve_link(const std::string& path);

}  // namespace host
