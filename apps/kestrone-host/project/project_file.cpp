#include "project_file.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>
#include <QString>
#include <cmath>
#include <limits>
#include <unordered_set>

#include "float_text.h"
#include "user_file.h"
#include "value_limits.h"

namespace host {

using kestrone::Variant;
using kestrone::VarType;

namespace {

constexpr const char* kFormat = "kestrone-project";

struct KindName {
    VarType type;
    const char* name;
};
constexpr KindName kKinds[] = {
    {VarType::Empty, "Empty"},   {VarType::Integer, "Integer"}, {VarType::Long, "Long"},
    {VarType::Single, "Single"}, {VarType::Double, "Double"},   {VarType::Boolean, "Boolean"},
    {VarType::String, "String"}, {VarType::Byte, "Byte"},       {VarType::Variant, "Variant"},
};

QString kind_name(VarType t) {
    for (const KindName& k : kKinds)
        if (k.type == t) return QString::fromLatin1(k.name);
    return {};
}
std::optional<VarType> kind_of(const QString& name) {
    for (const KindName& k : kKinds)
        if (name == QLatin1String(k.name)) return k.type;
    return std::nullopt;
}

// Reading: every fault is thrown as its message and caught once, at the top.
struct Fault {
    std::string message;
};
[[noreturn]] void fault(const std::string& message) {
    throw Fault{message};
}

std::string get_text(const QJsonObject& o, const char* field, const std::string& where) {
    const QString name = QLatin1String(field);
    const QString b64 = name + QLatin1String("Base64");
    if (o.contains(name) && o.value(name).isString()) return o.value(name).toString().toStdString();
    if (o.contains(b64) && o.value(b64).isString()) {
        const auto decoded = QByteArray::fromBase64Encoding(
            o.value(b64).toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        if (!decoded) fault(where + ": its " + field + " is not valid base64");
        return decoded.decoded.toStdString();
    }
    fault(where + " has no " + field);
}

// A float as a number, or as the text of one that JSON has no number for ("-0", "nan(0x1)",
// "-inf"; "NaN" and "Infinity" in files of the first version).
Variant get_float(const QJsonValue& v, VarType type, const std::string& where) {
    if (v.isDouble()) {
        const double d = v.toDouble();
        if (type == VarType::Double) return Variant::double_(d);
        const float f = static_cast<float>(d);
        if (static_cast<double>(f) != d)
            fault(where + ": " + QByteArray::number(d, 'g', 17).toStdString() +
                  " is not a 32-bit float");
        return Variant::single(f);
    }
    if (v.isString()) {
        const std::string s = v.toString().toStdString();
        if (s == "-0")
            return type == VarType::Double ? Variant::double_(-0.0) : Variant::single(-0.0f);
        if (type == VarType::Double) {
            if (const auto d = console::double_word(s)) return Variant::double_(*d);
        } else if (const auto f = console::single_word(s)) {
            return Variant::single(*f);
        }
    }
    fault(where + ": the value is not a number");
}

std::int64_t get_whole(const QJsonValue& v, std::int64_t low, std::int64_t high,
                       const std::string& kind, const std::string& where) {
    if (!v.isDouble()) fault(where + ": the value is not a number");
    const double d = v.toDouble();
    if (d != std::floor(d) || d < static_cast<double>(low) || d > static_cast<double>(high))
        fault(where + ": " + QByteArray::number(d, 'g', 17).toStdString() + " is not a " + kind);
    return static_cast<std::int64_t>(d);
}

Variant decode_scalar(VarType type, const QJsonValue& value, const std::string& where);

// `depth` counts the arrays around this value.
Variant decode_value(const QJsonValue& json, const std::string& where, int depth) {
    if (!json.isObject()) fault(where + " is not a value");
    const QJsonObject o = json.toObject();
    const QJsonValue kind_value = o.value(QStringLiteral("kind"));
    if (!kind_value.isString()) fault(where + " has no kind");
    const QString kind = kind_value.toString();
    const QJsonValue value = o.value(QStringLiteral("value"));
    if (kind == QLatin1String("Array")) {
        if (depth >= console::kMaxArrayNesting)
            fault(where + ": arrays nested more than " + std::to_string(console::kMaxArrayNesting) +
                  " deep");
        const auto element = kind_of(o.value(QStringLiteral("element")).toString());
        if (!element || *element == VarType::Empty)
            fault(where + ": an array of unknown kind \"" +
                  o.value(QStringLiteral("element")).toString().toStdString() + "\"");
        const std::int64_t lower =
            get_whole(o.value(QStringLiteral("lower")), std::numeric_limits<std::int32_t>::min(),
                      std::numeric_limits<std::int32_t>::max(), "32-bit lower bound", where);
        // Elements bare in the array's kind ("values"), or each with its own ("items").
        const bool bare = o.value(QStringLiteral("values")).isArray();
        if (bare && *element == VarType::Variant)
            fault(where + ": an array of Variant needs the kind of each element");
        if (!bare && !o.value(QStringLiteral("items")).isArray())
            fault(where + ": an array without items");
        const QJsonArray items =
            o.value(bare ? QStringLiteral("values") : QStringLiteral("items")).toArray();
        if (lower + items.size() - 1 > std::numeric_limits<std::int32_t>::max())
            fault(where + ": the array's bounds are out of range");
        std::vector<Variant> out;
        out.reserve(static_cast<std::size_t>(items.size()));
        for (qsizetype i = 0; i < items.size(); ++i) {
            const std::string at = where + ", element " + std::to_string(i);
            Variant item = bare ? decode_scalar(*element, items.at(i), at)
                                : decode_value(items.at(i), at, depth + 1);
            if (*element != VarType::Variant && (item.is_array() || item.type() != *element))
                fault(at + ": not of the array's kind " + kind_name(*element).toStdString());
            out.push_back(std::move(item));
        }
        return Variant::array(*element, static_cast<std::int32_t>(lower), std::move(out));
    }
    const auto type = kind_of(kind);
    if (!type || *type == VarType::Variant)
        fault(where + " has a value of unknown kind \"" + kind.toStdString() + "\"");
    if (*type == VarType::String) return Variant::string(get_text(o, "value", where));
    return decode_scalar(*type, value, where);
}

// A value of the kind `type` from its JSON value alone.
Variant decode_scalar(VarType type, const QJsonValue& value, const std::string& where) {
    switch (type) {
        case VarType::Empty:
            return Variant();
        case VarType::Integer:
            return Variant::integer(static_cast<std::int16_t>(
                get_whole(value, -32768, 32767, "16-bit integer", where)));
        case VarType::Long:
            return Variant::long_(static_cast<std::int32_t>(
                get_whole(value, std::numeric_limits<std::int32_t>::min(),
                          std::numeric_limits<std::int32_t>::max(), "32-bit integer", where)));
        case VarType::Byte:
            return Variant::byte(
                static_cast<std::uint8_t>(get_whole(value, 0, 255, "byte", where)));
        case VarType::Single:
        case VarType::Double:
            return get_float(value, type, where);
        case VarType::Boolean:
            if (!value.isBool()) fault(where + ": the value is not true or false");
            return Variant::boolean(value.toBool());
        case VarType::String:
            if (!value.isString()) fault(where + ": the value is not text");
            return Variant::string(value.toString().toStdString());
        default:
            fault(where + " has a value of unknown kind");
    }
}

// The host's part, when the file has one: each path text (or base64 of bytes that are not UTF-8).
ProjectLinks decode_links(const QJsonObject& root) {
    ProjectLinks links;
    const QJsonValue part = root.value(QStringLiteral("host"));
    if (part.isUndefined()) return links;
    if (!part.isObject()) fault("its host part is not an object");
    const QJsonObject o = part.toObject();
    for (const auto& [field, path] :
         {std::pair{"program", &links.program}, {"arena", &links.arena}}) {
        const QString name = QLatin1String(field);
        if (o.contains(name) || o.contains(name + QLatin1String("Base64")))
            *path = get_text(o, field, std::string("its host part's ") + field);
    }
    return links;
}

// `path` made whole against `folder`; an empty one stays empty.
std::string whole_path(const QString& folder, const std::string& path) {
    if (path.empty()) return path;
    return QDir::cleanPath(QDir(folder).absoluteFilePath(QString::fromStdString(path)))
        .toStdString();
}

}  // namespace

std::optional<StoreEntries> decode_project(const std::string& bytes, std::string* error) {
    auto contents = decode_project_contents(bytes, error);
    if (!contents) return std::nullopt;
    return std::move(contents->store);
}

std::optional<ProjectContents> decode_project_contents(const std::string& bytes,
                                                       std::string* error) {
    try {
        QJsonParseError parse{};
        const QJsonDocument doc = QJsonDocument::fromJson(
            QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())), &parse);
        if (parse.error != QJsonParseError::NoError)
            fault("it is damaged or cut short (" + parse.errorString().toStdString() + " at byte " +
                  std::to_string(parse.offset) + ")");
        if (!doc.isObject() ||
            doc.object().value(QStringLiteral("format")).toString() != QLatin1String(kFormat))
            fault("it is not a Kestrone project file");
        const QJsonObject root = doc.object();
        const QJsonValue version = root.value(QStringLiteral("version"));
        const double v = version.toDouble();
        if (!version.isDouble() || v < 1 || v > kProjectFileVersion || v != std::floor(v))
            fault("it is of version " +
                  (version.isDouble() ? QByteArray::number(version.toDouble()).toStdString()
                                      : std::string("(none)")) +
                  ", and this host reads versions 1 to " + std::to_string(kProjectFileVersion));
        if (!root.value(QStringLiteral("store")).isArray()) fault("it has no store");
        const QJsonArray store = root.value(QStringLiteral("store")).toArray();
        StoreEntries entries;
        std::unordered_set<std::string> keys;
        for (qsizetype i = 0; i < store.size(); ++i) {
            const std::string where = "entry " + std::to_string(i + 1);
            if (!store.at(i).isObject()) fault(where + " is not a key and value");
            const QJsonObject entry = store.at(i).toObject();
            std::string key = get_text(entry, "key", where);
            const std::string named = where + " (\"" + key + "\")";
            if (!keys.insert(key).second) fault(named + ": the key appears twice");
            if (!entry.contains(QStringLiteral("value"))) fault(named + " has no value");
            Variant value = decode_value(entry.value(QStringLiteral("value")), named, 0);
            entries.push_back({std::move(key), std::move(value)});
        }
        return ProjectContents{std::move(entries), decode_links(root)};
    } catch (const Fault& f) {
        if (error) *error = f.message;
        return std::nullopt;
    }
}

std::optional<StoreEntries> load_project(const std::string& path, std::string* error) {
    auto contents = load_project_file(path, error);
    if (!contents) return std::nullopt;
    return std::move(contents->store);
}

std::optional<ProjectContents> load_project_file(const std::string& path, std::string* error) {
    std::string bytes, why;
    std::optional<ProjectContents> contents;
    if (read_user_file(path, kMaxProjectFileBytes, "a project file", &bytes, &why))
        contents = decode_project_contents(bytes, &why);
    if (!contents) {
        if (error) *error = "cannot load the project file " + path + ": " + why;
        return contents;
    }
    const QString folder = QFileInfo(QString::fromStdString(path)).absolutePath();
    contents->links.program = whole_path(folder, contents->links.program);
    contents->links.arena = whole_path(folder, contents->links.arena);
    return contents;
}

}  // namespace host
