#include "module_file.h"

#include <elf.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <vector>

#include "user_file.h"

namespace host {

namespace {

#if defined(__x86_64__)
constexpr std::uint16_t kMachine = EM_X86_64;
#elif defined(__aarch64__)
constexpr std::uint16_t kMachine = EM_AARCH64;
#else
constexpr std::uint16_t kMachine = EM_NONE;  // not checked
#endif

// Reads the whole file (a module is a few megabytes at most); empty `why` on success.
bool read_whole(const std::string& path, std::vector<unsigned char>& bytes, std::string& why) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0) {
        why = system_reason(errno);
        return false;
    }
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        why = S_ISDIR(st.st_mode) ? "it is a folder" : "it is not a regular file";
        ::close(fd);
        return false;
    }
    bytes.resize(static_cast<std::size_t>(st.st_size));
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::read(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        done += static_cast<std::size_t>(n);
    }
    ::close(fd);
    bytes.resize(done);
    return true;
}

// True when [offset, offset + size) lies within a file of `file_size` bytes.
bool within(std::uint64_t offset, std::uint64_t size, std::uint64_t file_size) {
    return offset <= file_size && size <= file_size - offset;
}

std::string cut_short(const char* what, std::uint64_t end, std::uint64_t file_size) {
    return std::string("it is cut short or damaged: ") + what + " reaches byte " +
           std::to_string(end) + " of a file of " + std::to_string(file_size) + " bytes";
}

std::string check_header(const Elf64_Ehdr& h, std::uint64_t size) {
    if (std::memcmp(h.e_ident, ELFMAG, SELFMAG) != 0)
        return "it is not a shared object (no ELF header)";
    if (h.e_ident[EI_CLASS] != ELFCLASS64) return "it is not a 64-bit shared object";
    if (h.e_ident[EI_DATA] != ELFDATA2LSB) return "it is not a little-endian shared object";
    if (h.e_type != ET_DYN) return "it is an ELF file but no shared object";
    if (kMachine != EM_NONE && h.e_machine != kMachine)
        return "it is built for another kind of processor (machine " + std::to_string(h.e_machine) +
               ")";
    if (h.e_phnum == 0 || h.e_phentsize != sizeof(Elf64_Phdr))
        return "it is damaged: its program headers are missing or malformed";
    const std::uint64_t ph_bytes = std::uint64_t{h.e_phnum} * sizeof(Elf64_Phdr);
    if (!within(h.e_phoff, ph_bytes, size))
        return cut_short("the program header table", h.e_phoff + ph_bytes, size);
    if (h.e_shoff != 0) {
        const std::uint64_t sh_bytes = std::uint64_t{h.e_shnum} * h.e_shentsize;
        if (!within(h.e_shoff, sh_bytes, size))
            return cut_short("the section header table", h.e_shoff + sh_bytes, size);
    }
    return {};
}

}  // namespace

std::string check_module_file(const std::string& path) {
    std::vector<unsigned char> bytes;
    std::string why;
    if (!read_whole(path, bytes, why)) return why;
    const std::uint64_t size = bytes.size();
    if (size < sizeof(Elf64_Ehdr))
        return size < SELFMAG || std::memcmp(bytes.data(), ELFMAG, SELFMAG) != 0
                   ? "it is not a shared object (no ELF header)"
                   : cut_short("the ELF header", sizeof(Elf64_Ehdr), size);
    Elf64_Ehdr header;
    std::memcpy(&header, bytes.data(), sizeof header);
    why = check_header(header, size);
    if (!why.empty()) return why;
    for (std::uint16_t i = 0; i < header.e_phnum; ++i) {
        Elf64_Phdr ph;
        std::memcpy(&ph, bytes.data() + header.e_phoff + i * sizeof(Elf64_Phdr), sizeof ph);
        if (ph.p_type == PT_NULL) continue;
        if (!within(ph.p_offset, ph.p_filesz, size)) {
            const std::string what = "segment " + std::to_string(i);
            return cut_short(what.c_str(), ph.p_offset + ph.p_filesz, size);
        }
        if (ph.p_type == PT_LOAD && ph.p_filesz > ph.p_memsz)
            return "it is damaged: segment " + std::to_string(i) +
                   " holds more bytes in the file than in memory";
    }
    return {};
}

}  // namespace host
