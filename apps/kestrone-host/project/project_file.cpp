#include "project_file.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>
#include <QString>
#include <cmath>
#include <limits>
#include <unordered_set>

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

// Text that is valid UTF-8 is kept as JSON text; other bytes as base64, so nothing is lost.
bool is_utf8(const std::string& s) {
    const QByteArray bytes(s.data(), static_cast<qsizetype>(s.size()));
    return QString::fromUtf8(bytes).toUtf8() == bytes;
}
void put_text(QJsonObject& o, const char* field, const std::string& s) {
    if (is_utf8(s)) {
        o[QLatin1String(field)] = QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
    } else {
        const QByteArray bytes(s.data(), static_cast<qsizetype>(s.size()));
        o[QLatin1String(field) + QLatin1String("Base64")] = QString::fromLatin1(bytes.toBase64());
    }
}

// JSON has no infinities or NaN: those are written as text.
QJsonValue put_float(double d) {
    if (std::isnan(d)) return QStringLiteral("NaN");
    if (std::isinf(d)) return d > 0 ? QStringLiteral("Infinity") : QStringLiteral("-Infinity");
    return d;
}

QJsonObject encode_value(const Variant& v) {
    QJsonObject o;
    if (v.is_array()) {
        const kestrone::SafeArray& a = v.as_array();
        o[QStringLiteral("kind")] = QStringLiteral("Array");
        o[QStringLiteral("element")] = kind_name(a.element);
        o[QStringLiteral("lower")] = a.lower;
        QJsonArray items;
        for (const Variant& item : a.items)
            items.append(encode_value(item));
        o[QStringLiteral("items")] = items;
        return o;
    }
    o[QStringLiteral("kind")] = kind_name(v.type());
    const QString value = QStringLiteral("value");
    switch (v.type()) {
        case VarType::Integer:
            o[value] = v.as_integer();
            break;
        case VarType::Long:
            o[value] = static_cast<qint64>(v.as_long());
            break;
        case VarType::Byte:
            o[value] = v.as_byte();
            break;
        case VarType::Single:
            o[value] = put_float(static_cast<double>(v.as_single()));
            break;
        case VarType::Double:
            o[value] = put_float(v.as_double());
            break;
        case VarType::Boolean:
            o[value] = v.as_boolean();
            break;
        case VarType::String:
            put_text(o, "value", v.as_string());
            break;
        default:
            break;
    }
    return o;
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

double get_float(const QJsonValue& v, const std::string& where) {
    if (v.isDouble()) return v.toDouble();
    if (v.isString()) {
        const QString s = v.toString();
        if (s == QLatin1String("NaN")) return std::numeric_limits<double>::quiet_NaN();
        if (s == QLatin1String("Infinity")) return std::numeric_limits<double>::infinity();
        if (s == QLatin1String("-Infinity")) return -std::numeric_limits<double>::infinity();
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
        if (!o.value(QStringLiteral("items")).isArray()) fault(where + ": an array without items");
        const QJsonArray items = o.value(QStringLiteral("items")).toArray();
        if (lower + items.size() - 1 > std::numeric_limits<std::int32_t>::max())
            fault(where + ": the array's bounds are out of range");
        std::vector<Variant> out;
        for (qsizetype i = 0; i < items.size(); ++i) {
            const std::string at = where + ", element " + std::to_string(i);
            Variant item = decode_value(items.at(i), at, depth + 1);
            if (*element != VarType::Variant && (item.is_array() || item.type() != *element))
                fault(at + ": not of the array's kind " + kind_name(*element).toStdString());
            out.push_back(std::move(item));
        }
        return Variant::array(*element, static_cast<std::int32_t>(lower), std::move(out));
    }
    const auto type = kind_of(kind);
    if (!type || *type == VarType::Variant)
        fault(where + " has a value of unknown kind \"" + kind.toStdString() + "\"");
    switch (*type) {
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
        case VarType::Single: {
            const double d = get_float(value, where);
            const float f = static_cast<float>(d);
            if (std::isfinite(d) && static_cast<double>(f) != d)
                fault(where + ": " + QByteArray::number(d, 'g', 17).toStdString() +
                      " is not a 32-bit float");
            return Variant::single(f);
        }
        case VarType::Double:
            return Variant::double_(get_float(value, where));
        case VarType::Boolean:
            if (!value.isBool()) fault(where + ": the value is not true or false");
            return Variant::boolean(value.toBool());
        case VarType::String:
            return Variant::string(get_text(o, "value", where));
        default:
            fault(where + " has a value of unknown kind");
    }
}

}  // namespace

std::string encode_project(const StoreEntries& entries) {
    QJsonArray store;
    for (const auto& e : entries) {
        QJsonObject entry;
        put_text(entry, "key", e.key);
        entry[QStringLiteral("value")] = encode_value(e.value);
        store.append(entry);
    }
    QJsonObject root;
    root[QStringLiteral("format")] = QLatin1String(kFormat);
    root[QStringLiteral("version")] = kProjectFileVersion;
    root[QStringLiteral("store")] = store;
    return QJsonDocument(root).toJson(QJsonDocument::Indented).toStdString();
}

std::optional<StoreEntries> decode_project(const std::string& bytes, std::string* error) {
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
        if (!version.isDouble() || version.toDouble() != kProjectFileVersion)
            fault("it is of version " +
                  (version.isDouble() ? QByteArray::number(version.toDouble()).toStdString()
                                      : std::string("(none)")) +
                  ", and this host reads version " + std::to_string(kProjectFileVersion));
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
        return entries;
    } catch (const Fault& f) {
        if (error) *error = f.message;
        return std::nullopt;
    }
}

std::optional<StoreEntries> load_project(const std::string& path, std::string* error) {
    std::string bytes, why;
    std::optional<StoreEntries> entries;
    if (read_user_file(path, kMaxProjectFileBytes, "a project file", &bytes, &why))
        entries = decode_project(bytes, &why);
    if (!entries && error) *error = "cannot load the project file " + path + ": " + why;
    return entries;
}

}  // namespace host
