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

// The whole file as text, and back. decode gives nullopt with `error` saying what is wrong.
std::string encode_project(const StoreEntries& entries);
std::optional<StoreEntries> decode_project(const std::string& bytes, std::string* error);

// Reads the file at `path`. On any failure (no such file, a folder, unreadable, damaged,
// truncated, of another version, a value of an unknown kind) it gives nullopt and a message
// that names the file and the fault.
std::optional<StoreEntries> load_project(const std::string& path, std::string* error);

// Writes to a new file beside `path`, flushes it to disk and renames it over `path`, so that a
// crash at any moment leaves either the old file or the new one. False with a message on failure;
// the old file is then untouched.
bool save_project(const std::string& path, const StoreEntries& entries, std::string* error);

}  // namespace host
