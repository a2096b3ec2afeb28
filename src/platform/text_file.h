// Files as the component reads them: a test whether a normal file exists, a whole file's bytes,
// and line-by-line reading under the fixed file number 1.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace platform {

bool file_exists(const std::string& path);

// False if the path can't be opened and read as a file.
bool read_whole_file(const std::string& path, std::string& out);

// The lines of a text: CR LF, CR alone and LF alone each end one line. A last line without an
// end is a line; a text that ends with a line end has no empty line after it.
std::vector<std::string> split_lines(const std::string& text);

// File number 1: one text file open for input at a time. Opening raises error 53 for a missing
// file, 75 for one that can't be read, 55 while the number is in use.
class InputFile {
  public:
    void open(const std::string& path);
    bool is_open() const { return open_; }
    bool at_end() const { return next_ >= lines_.size(); }
    // Line Input: the next line; error 62 past the end.
    std::string read_line();
    void close();

  private:
    bool open_ = false;
    std::vector<std::string> lines_;
    std::size_t next_ = 0;
};

}  // namespace platform
