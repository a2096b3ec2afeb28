#include "log_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "log_writers.h"
#include "user_file.h"

namespace signal_log {

namespace {

// "csv" or "vcd", in any case; empty for anything else.
std::string format_of(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return {};
    std::string ext = path.substr(dot + 1);
    for (char& c : ext)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return ext == "csv" || ext == "vcd" ? ext : std::string();
}

// Why `target` cannot be replaced; empty when it can.
std::string why_not_writable(const std::string& target, mode_t* mode) {
    struct stat st {};
    if (::stat(target.c_str(), &st) != 0) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        *mode = 0666 & ~mask;
        return {};
    }
    if (S_ISDIR(st.st_mode)) return "it is a folder";
    if (!S_ISREG(st.st_mode)) return "it is not a regular file";
    if (::access(target.c_str(), W_OK) != 0 || (st.st_mode & 0222) == 0) return "it is read-only";
    *mode = st.st_mode & 07777;
    return {};
}

// Where a log of `path` goes: checked, with a new file made beside the one it replaces.
struct Prepared {
    std::string target, temp;
    bool vcd;
};
std::optional<Prepared> prepare(const std::string& path, std::string* why) {
    const std::string format = format_of(path);
    if (format.empty()) {
        *why = "a log is written as CSV (.csv) or VCD (.vcd), not as " + path;
        return std::nullopt;
    }
    const auto cannot = [&](const std::string& reason) {
        *why = "cannot write " + path + ": " + reason;
        return std::nullopt;
    };
    if (const std::string link = host::broken_link(path); !link.empty()) return cannot(link);
    Prepared p{host::resolve_link(path), {}, format == "vcd"};
    mode_t mode = 0;
    if (const std::string reason = why_not_writable(p.target, &mode); !reason.empty())
        return cannot(reason);
    p.temp = p.target + ".log-XXXXXX";
    const int fd = ::mkostemp(p.temp.data(), O_CLOEXEC);
    if (fd < 0) return cannot(std::strerror(errno));
    const bool moded = ::fchmod(fd, mode) == 0;
    const int err = errno;
    ::close(fd);
    if (!moded) {
        ::unlink(p.temp.c_str());
        return cannot(std::strerror(err));
    }
    return p;
}

// The log into the prepared file, renamed over its target: the moments of change written.
std::optional<std::size_t> write_out(const SignalLog& log, const Prepared& p,
                                     const std::string& path, std::string* why) {
    std::ofstream out(p.temp, std::ios::binary | std::ios::trunc);
    const std::size_t changes = p.vcd ? write_vcd(log, out) : write_csv(log, out);
    out.close();
    errno = 0;
    if (!out || ::rename(p.temp.c_str(), p.target.c_str()) != 0) {
        *why = "cannot write " + path + ": " + std::strerror(errno ? errno : EIO);
        ::unlink(p.temp.c_str());
        return std::nullopt;
    }
    return changes;
}

}  // namespace

std::optional<std::size_t> export_log(const SignalLog& log, const std::string& path,
                                      std::string* why) {
    const std::optional<Prepared> p = prepare(path, why);
    if (!p) return std::nullopt;
    return write_out(log, *p, path, why);
}

std::unique_ptr<LogFile> LogFile::start(stage::Stage& stage, const std::string& path,
                                        std::string* why) {
    const std::optional<Prepared> p = prepare(path, why);
    if (!p) return nullptr;
    std::unique_ptr<LogFile> file(new LogFile(stage, path, p->target, p->temp, p->vcd));
    file->log_.start();
    return file;
}

LogFile::LogFile(stage::Stage& stage, std::string path, std::string target, std::string temp,
                 bool vcd)
    : path_(std::move(path)),
      target_(std::move(target)),
      temp_(std::move(temp)),
      vcd_(vcd),
      log_(stage) {}

LogFile::~LogFile() {
    if (!temp_.empty()) ::unlink(temp_.c_str());
}

std::optional<std::size_t> LogFile::finish(std::string* why) {
    log_.stop();
    const std::optional<std::size_t> changes = write_out(log_, {target_, temp_, vcd_}, path_, why);
    temp_.clear();
    return changes;
}

}  // namespace signal_log
