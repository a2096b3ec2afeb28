#include "component_registry.h"

#include <sys/stat.h>
#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace host {

std::string component_folder() {
    const char* xdg = std::getenv("XDG_DATA_HOME");
    QString base;
    if (xdg && xdg[0] == '/')
        base = QString::fromLocal8Bit(xdg);
    else
        base = QDir::homePath() + QStringLiteral("/.local/share");
    return QDir::cleanPath(base + QStringLiteral("/kestrone/components")).toStdString();
}

std::string folder_problem(const std::string& folder) {
    if (folder.empty() || folder.front() != '/')
        return "there is no folder for registrations (neither XDG_DATA_HOME nor HOME is set)";
    // The deepest part of the path that exists decides: a file in the way, or a folder that
    // can't be written, where the rest would have to be made.
    std::string existing = folder;
    struct stat st {};
    while (::stat(existing.c_str(), &st) != 0) {
        if (errno != ENOENT && errno != ENOTDIR) return existing + ": " + std::strerror(errno);
        existing.erase(existing.rfind('/'));
        if (existing.empty()) existing = "/";
    }
    if (!S_ISDIR(st.st_mode)) return existing + " is a file, not a folder";
    if (::access(existing.c_str(), W_OK | X_OK) != 0)
        return existing + " can't be written: " + std::strerror(errno);
    return {};
}

namespace {
std::optional<ComponentRecord> read_record(const QString& path, std::string* error) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error) *error = path.toStdString() + ": " + file.errorString().toStdString();
        return std::nullopt;
    }
    QJsonParseError parse{};
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &parse);
    const QJsonObject o = doc.object();
    ComponentRecord r;
    r.file = path.toStdString();
    r.name = o.value(QStringLiteral("name")).toString().toStdString();
    r.class_id = o.value(QStringLiteral("class")).toString().toStdString();
    r.module = o.value(QStringLiteral("module")).toString().toStdString();
    r.version = o.value(QStringLiteral("version")).toString().toStdString();
    if (parse.error != QJsonParseError::NoError || !doc.isObject() || r.name.empty() ||
        r.module.empty()) {
        if (error) *error = path.toStdString() + ": not a component record";
        return std::nullopt;
    }
    return r;
}
}  // namespace

std::vector<ComponentRecord> list_components(std::vector<std::string>* problems) {
    std::vector<ComponentRecord> out;
    const QDir dir(QString::fromStdString(component_folder()));
    for (const QString& name : dir.entryList({QStringLiteral("*.json")}, QDir::Files)) {
        std::string error;
        if (auto r = read_record(dir.filePath(name), &error))
            out.push_back(std::move(*r));
        else if (problems)
            problems->push_back(error);
    }
    std::sort(out.begin(), out.end(),
              [](const ComponentRecord& a, const ComponentRecord& b) { return a.name < b.name; });
    return out;
}

std::optional<ComponentRecord> find_component(const std::string& name, std::string* error) {
    for (ComponentRecord& r : list_components())
        if (r.name == name) return std::move(r);
    if (error)
        *error = "no component named " + name + " is registered in " + component_folder() +
                 " (kestrone-host register --module PATH registers one)";
    return std::nullopt;
}

}  // namespace host
