// The project file: the host's key/value store on disk, as JSON. Every value keeps its kind; a
// save replaces the file atomically, and a load either takes the whole file or nothing of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kestrone/memory_store.h"

namespace host {

using StoreEntries = std::vector<kestrone::MemoryStore::Entry>;

// The version of the file's layout that this host writes and reads.
inline constexpr int kProjectFileVersion = 1;
// A project holds a few dozen keys; a file larger than this is not one of ours. A save that would
// write more is refused, so that every file saved can be opened again.
inline constexpr long long kMaxProjectFileBytes = 64LL * 1024 * 1024;

// The whole file as text, and back. decode gives nullopt with `error` saying what is wrong.
std::string encode_project(const StoreEntries& entries);
std::optional<StoreEntries> decode_project(const std::string& bytes, std::string* error);

// Reads the file at `path`. On any failure (no such file, a folder, unreadable, damaged,
// truncated, of another version, a value of an unknown kind) it gives nullopt and a message
// that names the file and the fault.
std::optional<StoreEntries> load_project(const std::string& path, std::string* error);

// Writes to a new file beside `path`, flushes it to disk and renames it over `path`, so that a
// crash at any moment leaves either the old file or the new one. False with a message on failure;
// the old file is then untouched. Refused before anything is written: a read-only file (as an
// editor refuses it), and a store that load_project would refuse (too large, nested too deep).
// The unfinished new files of earlier saves of `path` that were killed are removed.
bool save_project(const std::string& path, const StoreEntries& entries, std::string* error);
// The same with another limit of size than a load's (for tests: a file that large is costly).
bool save_project_within(const std::string& path, const StoreEntries& entries,
                         long long max_bytes, std::string* error);

}  // namespace host
