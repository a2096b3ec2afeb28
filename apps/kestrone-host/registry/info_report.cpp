#include "info_report.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <iomanip>
#include <ostream>
#include <vector>

#include "error_text.h"
#include "kestrone/component_v5.h"
#include "kestrone/field_access.h"
#include "kestrone/panel.h"
#include "kestrone/property_page.h"
#include "object_recipe.h"
#include "value_syntax.h"

namespace host {

using kestrone::ComPtr;
using kestrone::HRESULT;
using kestrone::Variant;

namespace {
// Messages of the component, kept to be listed with the report.
class CollectingServices : public kestrone::IHostServices {
  public:
    virtual ~CollectingServices() = default;
    void ShowMessage(const std::string& text) noexcept override { messages.push_back(text); }
    void PlayTone(std::int32_t, std::int32_t) noexcept override {}
    std::vector<std::string> messages;
};

// The middle part of a "name|name|type" text, and its type.
std::pair<std::string, std::string> split_three(const std::string& text) {
    const std::size_t a = text.find('|');
    const std::size_t b = a == std::string::npos ? a : text.find('|', a + 1);
    if (b == std::string::npos) return {text, ""};
    return {text.substr(a + 1, b - a - 1), text.substr(b + 1)};
}

std::string number_or_status(HRESULT hr, std::int32_t value) {
    if (kestrone::failed(hr)) {
        const int n = kestrone::basic_error_number(hr);
        return n ? "(error " + std::to_string(n) + ")" : "(" + console::status_text(hr) + ")";
    }
    return std::to_string(value);
}
// A short run: both motors set, a second on the panel's clock, a sensor and a switch read back.
void write_simulated_run(const ComPtr<kestrone::IUnknown>& object, std::ostream& out) {
    auto c = object.query<kestrone::IKestroneComponentV5>(kestrone::IID_IKestroneComponentV5);
    auto panel = object.query<kestrone::IKestronePanel>(kestrone::IID_IKestronePanel);
    auto inspect =
        object.query<kestrone::IKestronePanelInspection>(kestrone::IID_IKestronePanelInspection);
    auto fields = object.query<kestrone::IKestroneInspection>(kestrone::IID_IKestroneInspection);
    if (!c || !panel || !inspect || !fields) return;
    auto property = [&](const char* element, std::int32_t index, const char* name) {
        Variant v;
        const HRESULT hr = inspect->GetProperty(element, &index, name, &v);
        return kestrone::failed(hr) ? "(" + console::status_text(hr) + ")"
                                    : console::format_value(v);
    };
    auto field = [&](const char* name, std::int32_t index) {
        Variant v;
        const HRESULT hr = fields->GetField(name, &index, "", &v);
        return kestrone::failed(hr) ? "(" + console::status_text(hr) + ")"
                                    : console::format_value(v);
    };
    out << "\nA simulated second:\n";
    const Variant motors = Variant::array(
        kestrone::VarType::Variant, 0,
        {Variant::integer(0), Variant::integer(200), Variant::integer(255), Variant::integer(56)});
    std::int32_t ret = 0, cycles = 0;
    std::int64_t now = 0, ticks = 0;
    Variant affected;
    c->StartSimulation();
    c->SimMacroCall(9, motors, &ret, &affected, &cycles);
    out << "  SetMotors 0, 200, 255, 56: speeds " << field("iMotorSpeed", 0) << " and "
        << field("iMotorSpeed", 1) << ", timers every " << property("Timer1", 0, "Interval")
        << " ms\n";
    panel->GetClock(&now);
    panel->AdvanceTo(now + 1000, &ticks);
    out << "  after 1000 ms: " << ticks << " ticks, wheel phases " << field("iWheelPhase", 0)
        << " and " << field("iWheelPhase", 1) << ", heading picture 8 shown "
        << property("imDirection", 8, "Visible") << "\n";
    panel->Pointer(kestrone::PointerAction::Down, 1, 0, 20, 60);
    panel->Pointer(kestrone::PointerAction::Up, 1, 0, 20, 60);
    c->SimMacroCall(17, Variant::array(kestrone::VarType::Variant, 0, {}), &ret, &affected,
                    &cycles);
    out << "  a press on the LDR bar: ReadLdr gives " << ret << ", caption "
        << property("lblADCVal", 0, "Caption") << "\n";
    c->StopSimulation();
}

// The version as the component shows it on its property page ("v5.0.3"), the same text as its
// registration; the major and minor parts of ComponentVersion when it has no page.
std::string component_version(const ComPtr<kestrone::IUnknown>& object, std::int32_t number) {
    const std::string from_number =
        std::to_string(number >> 8) + "." + std::to_string(number & 0xFF);
    auto pages =
        object.query<kestrone::IKestronePropertyPages>(kestrone::IID_IKestronePropertyPages);
    kestrone::IKestronePropertyPage* raw = nullptr;
    if (!pages || kestrone::failed(pages->CreatePropertyPage(&raw)) || !raw) return from_number;
    const auto page = ComPtr<kestrone::IKestronePropertyPage>::attach(raw);
    Variant caption;
    if (kestrone::failed(page->GetProperty("lblVersion", "Caption", &caption)) ||
        caption.is_array() || caption.type() != kestrone::VarType::String)
        return from_number;
    std::string text = caption.as_string();
    if (!text.empty() && text.front() == 'v') text.erase(0, 1);
    // A page that shows another version than the number would be a fault worth seeing.
    return text.rfind(from_number + ".", 0) == 0 ? text
                                                 : from_number + " (its page says " + text + ")";
}

// Why the component found no macros in its code file, or empty when it has some.
std::string code_file_problem(const std::string& path, std::size_t macros) {
    if (macros > 0) return {};
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0)
        return "The code file " + path + " is missing or unreadable (" + std::strerror(errno) +
               "): the component offers no macros without it.";
    struct stat st {};
    const bool regular = ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode);
    ::close(fd);
    if (!regular)
        return "The code file " + path +
               " is not a regular file: the component offers no macros without it.";
    return "The code file " + path +
           " holds no macro definitions: it is cut short, damaged or not a code file.";
}

void write_macro(kestrone::IKestroneComponentV5& c, std::int32_t id, const Variant& text,
                 std::ostream& out) {
    const auto [name, returns] = split_three(text.is_array() ? std::string() : text.as_string());
    Variant params;
    std::int32_t is_private = 0;
    c.get_MacroParameters(id, &params);
    c.get_MacroIsPrivate(id, &is_private);
    std::string signature;
    if (params.is_array())
        for (const Variant& p : params.as_array().items) {
            const auto [pname, ptype] = split_three(p.is_array() ? std::string() : p.as_string());
            signature += (signature.empty() ? "" : ", ") + ptype + " " + pname;
        }
    out << "  " << std::setw(2) << id << "  " << returns << " " << name << "(" << signature << ")"
        << (is_private ? "  [private]" : "") << "\n";
}

}  // namespace

void write_macros(kestrone::IKestroneComponentV5& c, const kestrone::SafeArray& list,
                  std::ostream& out) {
    out << "\nMacros (" << list.items.size() << "):\n";
    // Ids are 32-bit: of a list that starts near the top, the macros past the last id have none.
    const std::int64_t last = std::min<std::int64_t>(list.upper(), INT32_MAX);
    const std::size_t with_id =
        last < list.lower ? 0 : static_cast<std::size_t>(last - list.lower + 1);
    const std::size_t listed = std::min(with_id, kMostListed);
    for (std::size_t k = 0; k < listed; ++k)
        write_macro(c, list.lower + static_cast<std::int32_t>(k), list.items[k], out);
    if (listed < with_id)
        out << "  ... and " << with_id - listed << " more, not listed: no component has so many\n";
    if (with_id < list.items.size())
        out << "  ... and " << list.items.size() - with_id
            << " more past the id 2147483647, which no call can name\n";
}

void write_pins(kestrone::IKestroneComponentV5& c, std::ostream& out) {
    std::int32_t n = 0;
    std::string text;
    c.get_PinCount(&n);
    out << "\nPins (" << n << "):\n";
    const std::int32_t listed = std::min(std::max(n, 1), static_cast<std::int32_t>(kMostListed));
    for (std::int32_t id = 0; id < listed; ++id) {
        c.get_PinName(id, &text);
        std::int32_t port = 0, bit = 0, direction = 0;
        const HRESULT hp = c.get_Port(id, &port);
        const HRESULT hb = c.get_Bit(id, &bit);
        const HRESULT hd = c.get_Direction(id, &direction);
        out << "  " << std::setw(2) << id << "  " << std::left << std::setw(20) << text
            << std::right << " port " << number_or_status(hp, port) << "  bit "
            << number_or_status(hb, bit) << "  direction " << number_or_status(hd, direction)
            << "\n";
    }
    if (listed < n)
        out << "  ... and " << n - listed << " more, not listed: no component has so many\n";
}

int write_info(const ComponentModule& module, std::ostream& out) {
    CollectingServices services;
    ComPtr<kestrone::IUnknown> object;
    HRESULT hr = module.create(&services, object);
    out << "Component module: " << module.path() << "\n";
    for (const std::string& m : services.messages)
        out << "Message at creation: " << console::quote(m) << "\n";
    if (kestrone::failed(hr)) {
        out << "The object could not be created: status " << console::status_text(hr) << "\n";
        return 1;
    }
    auto c = object.query<kestrone::IKestroneComponentV5>(kestrone::IID_IKestroneComponentV5);
    if (!c) {
        out << "The object does not offer the host interface.\n";
        return 1;
    }
    std::string text;
    std::int32_t n = 0;
    c->get_Description(&text);
    out << "Description: " << text << "\n";
    c->get_ComponentVersion(&n);
    out << "Component version: " << component_version(object, n) << "\n";
    std::string code_file;
    c->get_CodeFilename(&code_file);
    out << "Code file: " << code_file << "\n";

    // The host tells its version first: that builds the macro table.
    services.messages.clear();
    ready_object(*object.get(), {});
    for (const std::string& m : services.messages)
        out << "Message while loading macros: " << console::quote(m) << "\n";
    Variant names;
    c->get_MacroNames(&names);
    const auto* list = names.is_array() ? &names.as_array() : nullptr;
    const std::string problem = code_file_problem(code_file, list ? list->items.size() : 0);
    if (!problem.empty()) {
        // Without macros the rest of the report would only contradict itself.
        out << "\n" << problem << "\n";
        return 1;
    }
    write_macros(*c.get(), *list, out);
    write_pins(*c.get(), out);
    std::int32_t has = 0;
    c->get_HasInitialisation(&has);
    out << "\nInitialisation code: " << (has ? "yes" : "no");
    c->get_HasInterrupts(&has);
    out << ", interrupt code: " << (has ? "yes" : "no") << "\n";
    write_simulated_run(object, out);
    return 0;
}

}  // namespace host
