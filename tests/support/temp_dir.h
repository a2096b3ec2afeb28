// A folder of its own for a test, removed at the end.
#pragma once

#include <string>

namespace testing_support {

class TempDir {
  public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return path_; }
    // Writes `content` (bytes as they stand) to path()/name and returns the full path.
    std::string write(const std::string& name, const std::string& content) const;
    // Copies a file into the folder under `name` and returns the full path.
    std::string copy(const std::string& from, const std::string& name) const;

  private:
    std::string path_;
};

// The bytes of a file; empty when it can't be read.
std::string read_file(const std::string& path);

}  // namespace testing_support
