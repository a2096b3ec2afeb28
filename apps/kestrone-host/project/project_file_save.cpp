// Saving the project file: checked first against what a load accepts, then written beside the old
// file and renamed over it.
#include <QDir>
#include <QFileInfo>

#include "file_save.h"
#include "project_file.h"

namespace host {

bool save_project(const std::string& path, const StoreEntries& entries, std::string* error) {
    return save_project_within(path, entries, kMaxProjectFileBytes, error);
}

bool save_project_file(const std::string& path, const ProjectContents& contents,
                       std::string* error) {
    const QDir folder = QFileInfo(QString::fromStdString(path)).absoluteDir();
    const auto relative = [&folder](const std::string& link) {
        return link.empty() ? link
                            : folder.relativeFilePath(QString::fromStdString(link)).toStdString();
    };
    return save_project_within(path, contents.store, kMaxProjectFileBytes, error,
                               {relative(contents.links.program), relative(contents.links.arena)});
}

bool save_project_within(const std::string& path, const StoreEntries& entries, long long max_bytes,
                         std::string* error, const ProjectLinks& links) {
    auto fail = [&](const std::string& why) {
        if (error) *error = "cannot save the project file " + path + ": " + why;
        return false;
    };
    // What a load would refuse is said before anything is written; the last word is the
    // reader's own.
    if (std::string why = why_not_saveable(entries, nullptr, max_bytes); !why.empty())
        return fail(why);
    const std::string bytes = encode_project(entries, links);
    if (std::string why; !decode_project(bytes, &why))
        return fail("it could not be opened again: " + why);
    std::string why;
    return save_user_file(path, bytes, &why) || fail(why);
}

}  // namespace host
