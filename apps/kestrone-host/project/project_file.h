// The project file: the host's key/value store on disk, as JSON. Every value keeps its kind; a
// save replaces the file atomically, and a load either takes the whole file or nothing of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "component_session.h"
#include "kestrone/memory_store.h"

namespace host {

using StoreEntry = kestrone::MemoryStore::Entry;
using StoreEntries = std::vector<StoreEntry>;

// The version of the file's layout that this host writes; it reads this one and the one before
// (version 2 added typed arrays with their kind once and their elements bare, and floats that
// JSON has no number for written as text: "-0", "nan", "-inf"...).
inline constexpr int kProjectFileVersion = 2;
// A project holds a few dozen keys; a file larger than this is not one of ours. A save that would
// write more is refused, so that every file saved can be opened again.
inline constexpr long long kMaxProjectFileBytes = 64LL * 1024 * 1024;

// The whole file as text, and back. decode gives nullopt with `error` saying what is wrong. The
// host's part (`links`) is written as it is given, beside the store; a file without it (as every
// file before it) reads with none.
std::string encode_project(const StoreEntries& entries, const ProjectLinks& links = {});

// Why a store could not be saved (a load would refuse the file: arrays nested too deep, more than
// `max_bytes`), or empty when it can. With `extra`, the store as it would be with that entry set:
// what the console asks before it takes `store KEY = VALUE`.
std::string why_not_saveable(const StoreEntries& entries, const StoreEntry* extra = nullptr,
                             long long max_bytes = kMaxProjectFileBytes);
std::optional<StoreEntries> decode_project(const std::string& bytes, std::string* error);
std::optional<ProjectContents> decode_project_contents(const std::string& bytes,
                                                       std::string* error);

// Reads the file at `path`. On any failure (no such file, a folder, unreadable, damaged,
// truncated, of another version, a value of an unknown kind) it gives nullopt and a message
// that names the file and the fault.
std::optional<StoreEntries> load_project(const std::string& path, std::string* error);
// The same with the host's part, its paths made whole against the file's folder.
std::optional<ProjectContents> load_project_file(const std::string& path, std::string* error);

// Writes to a new file beside `path`, flushes it to disk and renames it over `path`, so that a
// crash at any moment leaves either the old file or the new one. False with a message on failure;
// the old file is then untouched. Refused before anything is written: a read-only file (as an
// editor refuses it), and a store that load_project would refuse (too large, nested too deep).
// The unfinished new files of earlier saves of `path` that were killed are removed.
bool save_project(const std::string& path, const StoreEntries& entries, std::string* error);
// The same with the host's part, its paths written relative to the file's folder.
bool save_project_file(const std::string& path, const ProjectContents& contents,
                       std::string* error);
// The same with another limit of size than a load's (for tests: a file that large is costly).
bool save_project_within(const std::string& path, const StoreEntries& entries, long long max_bytes,
                         std::string* error, const ProjectLinks& links = {});

}  // namespace host
