// The definition sections of the code file, read key by key through the profile reader.
#include <new>

#include "core/rovanta_core.h"
#include "platform/basic_error.h"
#include "platform/profile_reader.h"

namespace rovanta {

namespace {
// The reader's buffer: a value has at most 254 characters.
constexpr std::size_t kValueBuffer = 255;
}  // namespace

std::string RovantaCore::CodeFilePath() const {
    return App.Path + platform::kPathSeparator + link.sCodeFile;
}

void RovantaCore::ReportMissingCodeFile() {
    MsgBox("Error - cannot find C code file:\r\n\r\n" + CodeFilePath());
    file1_.close();
}

std::string RovantaCore::GetIniKeyValue(const std::string& lpApplicationName,
                                        const std::string& lpKeyName,
                                        const std::string& lpDefault) {
    try {
        const std::string path = CodeFilePath();
        if (!platform::file_exists(path)) ReportMissingCodeFile();
        return platform::get_private_profile_string(lpApplicationName, lpKeyName, lpDefault,
                                                    kValueBuffer, path);
    } catch (const vb::BasicError& e) {
        MsgBox(e.description());
    } catch (const std::bad_alloc&) {
        MsgBox(std::string(vb::error_description(vb::kOutOfMemory)));
    }
    return {};
}

}  // namespace rovanta
