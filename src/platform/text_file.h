// Files as the component reads them: a test whether a normal file exists, a whole file's bytes,
// and line-by-line reading under the fixed file number 1.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

bool file_exists(const std::string& path);

// False if the path can't be opened and read as a file. The room `out` has is reused: only what
// lies past its present size is cleared before the read. A file served from memory
// (memory_files.h) is read from there.
bool read_whole_file(const std::string& path, std::string& out);
// How many files read_whole_file has read in this module: every lookup and every block read
// reads the code file anew, so this counts the component's reading (for the benchmarks).
std::uint64_t whole_file_reads();

// The lines of a text: CR LF, CR alone and LF alone each end one line. A last line without an
// end is a line; a text that ends with a line end has no empty line after it.
std::vector<std::string> split_lines(const std::string& text);

// Finds line ends in one text, front to back: the first CR or LF at or after a place. Each byte
// is looked at about once, however the lines end (CR LF, LF alone or CR alone).
class LineEnds {
  public:
    explicit LineEnds(std::string_view text = {}) : text_(text) {}
    // The place of the first CR or LF at or after `from` (from <= size), or npos.
    std::size_t find(std::size_t from);

  private:
    std::string_view text_;
    std::size_t lf_ = 0;  // the first LF at or after the last search, or npos
    bool searched_ = false;
};

// File number 1: one text file open for input at a time. Opening raises error 53 for a missing
// file, 75 for one that can't be read, 55 while the number is in use.
class InputFile {
  public:
    void open(const std::string& path);
    bool is_open() const { return open_; }
    bool at_end() const { return next_ >= text_.size(); }
    // Line Input: the next line; error 62 past the end.
    std::string read_line() { return std::string(read_line_view()); }
    // The same line without a copy: it stands until the next open or close.
    std::string_view read_line_view();
    // All that is left to read, at once (it stands until the next open or close).
    std::string_view read_all();
    void close();

  private:
    bool open_ = false;
    // The file's bytes. Kept from one opening to the next, so that reading a file of about the
    // same size again does not clear its room first.
    std::string buffer_;
    std::string_view text_;  // the open file's part of the buffer
    std::size_t next_ = 0;
    LineEnds ends_;
};

}  // namespace platform
