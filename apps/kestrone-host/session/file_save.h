// Saving a user's file whole: written beside the old one, flushed to disk and renamed over it, so
// that a crash at any moment leaves either the old file or the new one.
#pragma once

#include <string>

namespace host {

// Writes `bytes` to `path` so. False with `why` (not repeating the path) when `path` is a folder,
// not a regular file, read-only (as an editor refuses it) or a link to no file, or when the
// system refuses; the old file is then untouched. A link is followed: its file is replaced. The
// unfinished new files of earlier saves of `path` that were killed are removed.
bool save_user_file(const std::string& path, const std::string& bytes, std::string* why);

}  // namespace host
