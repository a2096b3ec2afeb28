#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>
#include <QString>
#include <algorithm>
#include <array>

#include "arena.h"
#include "lesson.h"
#include "program.h"
#include "user_file.h"
#include "value_syntax.h"

namespace lesson {

namespace {

constexpr std::array kKeys{"lesson",  "title",    "instructions", "arena",
                           "program", "settings", "checks"};

// Reading: the first fault is thrown as what is wrong and caught once, at the top.
struct Fault {
    std::string what;
};
[[noreturn]] void fault(std::string what) {
    throw Fault{std::move(what)};
}

std::string text_of(const QString& s) {
    return s.toStdString();
}

std::optional<std::string> optional_text(const QJsonObject& o, const char* key) {
    if (!o.contains(QLatin1String(key))) return std::nullopt;
    const QJsonValue v = o.value(QLatin1String(key));
    if (!v.isString()) fault(std::string("'") + key + "' is not a string");
    return text_of(v.toString());
}

void check_keys(const QJsonObject& o) {
    for (const QString& key : o.keys()) {
        const std::string k = text_of(key);
        if (std::find(kKeys.begin(), kKeys.end(), k) == kKeys.end())
            fault("unknown key '" + k + "'");
    }
    if (!o.contains(QLatin1String("lesson")))
        fault("'lesson' is missing: a lesson starts with \"lesson\": 1");
    const QJsonValue version = o.value(QLatin1String("lesson"));
    if (!version.isDouble()) fault("'lesson' is not a number: a lesson starts with \"lesson\": 1");
    if (version.toDouble() != kLessonVersion)
        fault("'lesson' is " + text_of(QString::number(version.toDouble(), 'g', 17)) +
              ": this host reads lessons of version 1");
}

std::vector<kestrone::MemoryStore::Entry> settings_of(const QJsonObject& o) {
    std::vector<kestrone::MemoryStore::Entry> out;
    if (!o.contains(QLatin1String("settings"))) return out;
    const QJsonValue v = o.value(QLatin1String("settings"));
    const char* const shape = "'settings' is not a list of [KEY, VALUE] pairs of strings";
    if (!v.isArray()) fault(shape);
    for (const QJsonValue& pair : v.toArray()) {
        const QJsonArray kv = pair.toArray();
        if (!pair.isArray() || kv.size() != 2 || !kv[0].isString() || !kv[1].isString())
            fault(shape);
        const std::string key = text_of(kv[0].toString());
        const std::string written = text_of(kv[1].toString());
        std::string why;
        auto value = console::parse_value(written, &why);
        if (key.empty()) fault("a setting has an empty key");
        if (!value) fault("the setting " + key + ": " + console::unreadable(written, why));
        out.push_back({key, std::move(*value)});
    }
    return out;
}

std::vector<std::string> checks_of(const QJsonObject& o) {
    std::vector<std::string> out;
    if (!o.contains(QLatin1String("checks"))) return out;
    const QJsonValue v = o.value(QLatin1String("checks"));
    if (!v.isArray()) fault("'checks' is not a list of strings");
    for (const QJsonValue& line : v.toArray()) {
        if (!line.isString()) fault("'checks' is not a list of strings");
        out.push_back(text_of(line.toString()));
    }
    return out;
}

// The arena and the program must pass their readers.
void check_contents(const Lesson& l, const kflow::MacroTable* macros) {
    if (l.arena) {
        const world::ArenaReading reading = world::read_arena(*l.arena);
        if (!reading.arena)
            fault("the arena, line " + std::to_string(reading.error.line) + ": " +
                  reading.error.text);
    }
    if (l.program && macros) {
        const kflow::CheckedProgram checked = kflow::check_program(*l.program, "program", *macros);
        if (!checked.program && !checked.faults.empty()) {
            const kflow::Diagnostic& d = checked.faults.front();
            fault("the program, line " + std::to_string(d.at.line) + ", column " +
                  std::to_string(d.at.column) + ": " + d.text);
        }
        if (!checked.program) fault("the program does not pass its checks");
    }
}

Lesson lesson_of(std::string_view text, const kflow::MacroTable* macros) {
    QJsonParseError error{};
    const QJsonDocument doc = QJsonDocument::fromJson(
        QByteArray(text.data(), static_cast<qsizetype>(text.size())), &error);
    if (error.error != QJsonParseError::NoError)
        fault("not JSON: " + text_of(error.errorString()) + " at byte " +
              std::to_string(error.offset));
    if (!doc.isObject()) fault("a lesson is a JSON object: { \"lesson\": 1, ... }");
    const QJsonObject o = doc.object();
    check_keys(o);
    Lesson l;
    l.title = optional_text(o, "title").value_or("");
    l.instructions = optional_text(o, "instructions").value_or("");
    l.arena = optional_text(o, "arena");
    l.program = optional_text(o, "program");
    l.settings = settings_of(o);
    l.checks = checks_of(o);
    check_contents(l, macros);
    return l;
}

}  // namespace

std::optional<Lesson> parse_lesson(std::string_view text, const kflow::MacroTable* macros,
                                   std::string* what) {
    try {
        return lesson_of(text, macros);
    } catch (const Fault& f) {
        if (what) *what = f.what;
        return std::nullopt;
    }
}

std::optional<Lesson> read_lesson(const std::string& path, const kflow::MacroTable* macros,
                                  std::string* error, std::string* file_text) {
    std::string text, why;
    std::optional<Lesson> l;
    if (!host::read_user_file(path, host::kLargestTextFile, "a lesson", &text, &why))
        why = "cannot read the file: " + why;
    else
        l = parse_lesson(text, macros, &why);
    if (!l && error) *error = path + ": " + why;
    if (l && file_text) *file_text = std::move(text);
    return l;
}

std::string lesson_folder(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return {};
    return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace lesson
