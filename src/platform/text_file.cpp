#include "platform/text_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "platform/basic_error.h"
#include "platform/memory_files.h"

namespace platform {

bool file_exists(const std::string& path) {
    if (served_file(path)) return true;
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

namespace {
std::atomic<std::uint64_t> reads{0};
}  // namespace

// One open, one size and one read when the size holds: this is the floor of every lookup.
// Opened without blocking, so that a FIFO in the file's place is refused, not waited on.
bool read_whole_file(const std::string& path, std::string& out) {
    if (const std::string* held = served_file(path)) {
        out.assign(*held);
        reads.fetch_add(1, std::memory_order_relaxed);
        return true;
    }
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) return false;
    struct stat st {};
    bool ok = ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode);
    std::size_t got = 0;
    if (ok) out.resize(static_cast<std::size_t>(st.st_size) + 1);
    while (ok) {
        // One byte of room past the size shows the end; a file that grew meanwhile goes on.
        if (got == out.size()) out.resize(out.size() * 2);
        const ssize_t n = ::read(fd, out.data() + got, out.size() - got);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            ok = n == 0;
            break;
        }
        got += static_cast<std::size_t>(n);
        // A regular file reads short only at its end: with room left over, there is no more.
        if (got < out.size()) break;
    }
    ::close(fd);
    out.resize(ok ? got : 0);
    if (ok) reads.fetch_add(1, std::memory_order_relaxed);
    return ok;
}

std::uint64_t whole_file_reads() {
    return reads.load(std::memory_order_relaxed);
}

std::vector<std::string> split_lines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t end = text.find_first_of("\r\n", i);
        if (end == std::string::npos) {
            lines.push_back(text.substr(i));
            break;
        }
        lines.push_back(text.substr(i, end - i));
        i = end + ((text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n') ? 2 : 1);
    }
    return lines;
}

std::size_t LineEnds::find(std::size_t from) {
    const char* data = text_.data();
    if (!searched_ || (lf_ != std::string_view::npos && lf_ < from)) {
        const void* lf = std::memchr(data + from, '\n', text_.size() - from);
        lf_ = lf ? static_cast<std::size_t>(static_cast<const char*>(lf) - data)
                 : std::string_view::npos;
        searched_ = true;
    }
    const std::size_t limit = lf_ == std::string_view::npos ? text_.size() : lf_;
    const void* cr = std::memchr(data + from, '\r', limit - from);
    return cr ? static_cast<std::size_t>(static_cast<const char*>(cr) - data) : lf_;
}

void InputFile::open(const std::string& path) {
    if (open_) vb::raise_error(vb::kFileAlreadyOpen);
    // Read first; only a failed read asks which error it is.
    if (!read_whole_file(path, buffer_)) {
        struct stat st {};
        vb::raise_error(::stat(path.c_str(), &st) != 0 ? vb::kFileNotFound
                                                       : vb::kPathFileAccessError);
    }
    text_ = buffer_;
    next_ = 0;
    ends_ = LineEnds(text_);
    open_ = true;
}

// Lines end as split_lines ends them: CR LF, CR alone or LF alone.
std::string_view InputFile::read_line_view() {
    if (!open_) vb::raise_error(vb::kBadFileNameOrNumber);
    if (at_end()) vb::raise_error(vb::kInputPastEndOfFile);
    const std::string_view all = text_;
    const std::size_t end = ends_.find(next_);
    const std::size_t stop = end == std::string_view::npos ? all.size() : end;
    const std::string_view line = all.substr(next_, stop - next_);
    next_ =
        stop == all.size()
            ? stop
            : stop +
                  ((all[stop] == '\r' && stop + 1 < all.size() && all[stop + 1] == '\n') ? 2 : 1);
    return line;
}

std::string_view InputFile::read_all() {
    if (!open_) vb::raise_error(vb::kBadFileNameOrNumber);
    const std::string_view rest = text_.substr(next_);
    next_ = text_.size();
    return rest;
}

void InputFile::close() {
    open_ = false;
    text_ = {};
    next_ = 0;
    ends_ = LineEnds();
}

}  // namespace platform
