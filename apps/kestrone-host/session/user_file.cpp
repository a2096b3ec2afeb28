#include "user_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace host {

namespace {

// Closes the file on every way out.
class Descriptor {
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return fd_; }

  private:
    int fd_;
};

bool fail(std::string* why, std::string text) {
    if (why) *why = std::move(text);
    return false;
}

std::string too_large(std::int64_t limit, const std::string& kind) {
    const std::int64_t mb = 1024 * 1024;
    const std::string size = limit >= mb && limit % mb == 0 ? std::to_string(limit / mb) + " MB"
                                                            : std::to_string(limit) + " bytes";
    return "it is too large to be " + kind + " (more than " + size + ")";
}

}  // namespace

std::string system_reason(int err) {
    char buffer[256];
    // The GNU strerror_r gives either its own constant text or the buffer.
    return ::strerror_r(err, buffer, sizeof buffer);
}

bool read_user_file(const std::string& path, std::int64_t limit, const std::string& kind,
                    std::string* bytes, std::string* why) {
    // Without blocking: a FIFO or a device must not hold the host until something writes to it.
    const Descriptor fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (fd.get() < 0) {
        const std::string reason = system_reason(errno);
        const std::string link = broken_link(path);
        return fail(why, link.empty() ? reason : link);
    }
    struct stat st {};
    if (::fstat(fd.get(), &st) != 0) return fail(why, system_reason(errno));
    if (S_ISDIR(st.st_mode)) return fail(why, "it is a folder");
    if (!S_ISREG(st.st_mode)) return fail(why, "it is not a regular file");
    if (st.st_size > limit) return fail(why, too_large(limit, kind));
    std::string text;
    char buffer[65536];
    for (;;) {
        const ssize_t n = ::read(fd.get(), buffer, sizeof buffer);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return fail(why, system_reason(errno));
        if (n == 0) break;
        text.append(buffer, static_cast<std::size_t>(n));
        // A file that grows while it is read is held to the same limit.
        if (static_cast<std::int64_t>(text.size()) > limit)
            return fail(why, too_large(limit, kind));
    }
    if (bytes) *bytes = std::move(text);
    return true;
}

std::string broken_link(const std::string& path) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0 || !S_ISLNK(st.st_mode) || ::stat(path.c_str(), &st) == 0)
        return {};
    const int err = errno;
    if (err == ELOOP) return "it is a symbolic link that leads round in a loop, to no file";
    char target[4096];
    const ssize_t n = ::readlink(path.c_str(), target, sizeof target);
    if (err == ENOENT && n > 0)
        return "it is a symbolic link to " + std::string(target, static_cast<std::size_t>(n)) +
               ", which does not exist";
    return "it is a symbolic link that leads to no file (" + system_reason(err) + ")";
}

std::string resolve_link(const std::string& path) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) return path;
    char* real = ::realpath(path.c_str(), nullptr);
    if (!real) return path;
    std::string out(real);
    std::free(real);
    return out;
}

}  // namespace host
