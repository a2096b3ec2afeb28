// Files held in memory in place of the disk. A fuzz target serves the code file from here, so
// that the lookup after lookup that the component makes costs a copy instead of a stat, an open,
// a read and a close; the component still reads the file anew at every lookup, and nothing in
// the component serves a file. Not for use while another thread reads files.
#pragma once

#include <string>

namespace platform {

// From now on, the file at `path` (as the component forms it) exists and holds `bytes`, whatever
// stands on disk. Serving it again replaces its bytes.
void serve_from_memory(const std::string& path, std::string bytes);
// Every file back to the disk.
void stop_serving_from_memory();
// The bytes served for `path`, or null when it is read from disk.
const std::string* served_file(const std::string& path);

}  // namespace platform
