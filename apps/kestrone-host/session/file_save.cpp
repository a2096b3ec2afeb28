#include "file_save.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "user_file.h"

namespace host {

namespace {

constexpr std::string_view kSavingMark = ".saving-";
constexpr std::size_t kSavingSuffix = 6;  // mkostemp's XXXXXX

bool write_all(int fd, const std::string& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

std::string folder_of(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string name_of(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Every writer holds a lock on its new file until it is renamed or removed; one that can be
// locked by anybody else belongs to a save that was killed.
void remove_stale_saves(const std::string& target) {
    const std::string folder = folder_of(target);
    const std::string prefix = name_of(target) + std::string(kSavingMark);
    DIR* dir = ::opendir(folder.c_str());
    if (!dir) return;
    while (const dirent* e = ::readdir(dir)) {
        const std::string_view name = e->d_name;
        if (name.size() != prefix.size() + kSavingSuffix || !name.starts_with(prefix)) continue;
        const std::string path = folder + "/" + std::string(name);
        const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (fd < 0) continue;
        struct stat st {};
        if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && st.st_uid == ::geteuid() &&
            ::flock(fd, LOCK_EX | LOCK_NB) == 0)
            ::unlink(path.c_str());
        ::close(fd);
    }
    ::closedir(dir);
}

bool read_only(const std::string& target, const struct stat& st) {
    return ::access(target.c_str(), W_OK) != 0 || (st.st_mode & 0222) == 0;
}

// Writes `bytes` to a new locked file beside `target` and renames it over `target`; 0 or errno.
int replace_file(const std::string& target, const std::string& bytes, mode_t mode) {
    std::string temp = target + std::string(kSavingMark) + "XXXXXX";
    const int fd = ::mkostemp(temp.data(), O_CLOEXEC);
    if (fd < 0) return errno;
    int err = 0;
    if (::flock(fd, LOCK_EX) != 0)
        err = errno;
    else if (!write_all(fd, bytes))
        err = errno ? errno : EIO;
    else if (::fchmod(fd, mode) != 0)
        err = errno;
    else if (::fsync(fd) != 0)
        err = errno;
    if (err == 0 && ::rename(temp.c_str(), target.c_str()) != 0) err = errno;
    if (err != 0) ::unlink(temp.c_str());
    if (::close(fd) != 0 && err == 0) err = errno;
    return err;
}

}  // namespace

bool save_user_file(const std::string& path, const std::string& bytes, std::string* why) {
    auto fail = [why](const std::string& text) {
        if (why) *why = text;
        return false;
    };
    if (const std::string link = broken_link(path); !link.empty()) return fail(link);
    const std::string target = resolve_link(path);
    struct stat st {};
    const bool exists = ::stat(target.c_str(), &st) == 0;
    if (exists && S_ISDIR(st.st_mode)) return fail("it is a folder");
    if (exists && !S_ISREG(st.st_mode)) return fail("it is not a regular file");
    if (exists && read_only(target, st))
        return fail("it is read-only; make it writable or save under another name");
    remove_stale_saves(target);
    // The new file takes the old one's permissions, or those a new file would get.
    mode_t mode = 0;
    if (exists) {
        mode = st.st_mode & 07777;
    } else {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        mode = 0666 & ~mask;
    }
    if (const int err = replace_file(target, bytes, mode)) return fail(system_reason(err));
    // The rename itself reaches the disk with the folder.
    const int dir = ::open(folder_of(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
}

}  // namespace host
