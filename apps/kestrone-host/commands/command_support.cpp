#include "command_support.h"

#include <cmath>

#include "value_syntax.h"

namespace commands {

using kestrone::Variant;

std::string Context::file(const std::string& name) const {
    if (folder.empty() || name.empty() || name.front() == '/') return name;
    return folder.back() == '/' ? folder + name : folder + "/" + name;
}

std::optional<Reply> lacks_object(Context& context) {
    const host::ComponentSession& session = context.stage.session();
    if (session.has_object()) return std::nullopt;
    return Reply::fail(session.module_loaded() ? "there is no object: its creation failed (try new)"
                                               : session.load_error());
}

std::optional<Reply> lacks(Context& context, host::Facet facet) {
    if (auto no = lacks_object(context)) return no;
    if (context.stage.session().offers(facet)) return std::nullopt;
    switch (facet) {
        case host::Facet::Host:
            return Reply::fail("the component offers no host interface");
        case host::Facet::Calls:
            return Reply::fail("the component offers no calls by name");
        case host::Facet::Fields:
            return Reply::fail("the component offers no inspection");
        case host::Facet::Settings:
            return Reply::fail("the component keeps no settings");
        case host::Facet::Page:
            return Reply::fail("the component has no property page");
        case host::Facet::Panel:
            break;
    }
    return Reply::fail("the component offers no panel");
}

std::optional<Reply> load_program(Context& context, const std::string& path) {
    if (auto no = lacks_object(context)) return no;
    stage::Stage& stage = context.stage;
    if (!stage.session().offers(host::Facet::Host) || !stage.session().offers(host::Facet::Panel))
        return Reply::fail("the component offers no host interface and panel to run a program on");
    std::string error;
    // While a lesson's checks run, `program` is the program under check.
    const auto& under_check = context.program_under_check;
    const bool loaded = under_check && path == "program"
                            ? stage.load_program_text(under_check->text, under_check->name, &error)
                            : stage.load_program(context.file(path), &error);
    if (!loaded) return Reply::fail(error);
    return std::nullopt;
}

std::optional<double> number_of(std::string_view text) {
    const auto v = console::parse_value(text);
    if (!v || v->is_array()) return std::nullopt;
    switch (v->type()) {
        case kestrone::VarType::Integer:
            return v->as_integer();
        case kestrone::VarType::Long:
            return v->as_long();
        case kestrone::VarType::Single:
            return v->as_single();
        case kestrone::VarType::Double:
            return v->as_double();
        case kestrone::VarType::Byte:
            return v->as_byte();
        default:
            return std::nullopt;
    }
}

std::optional<std::int32_t> whole_number(std::string_view text) {
    const auto d = number_of(text);
    if (!d || *d != std::floor(*d) || *d < INT32_MIN || *d > INT32_MAX) return std::nullopt;
    return static_cast<std::int32_t>(*d);
}

std::string word_for(std::string_view text) {
    return console::key_text(text);
}

std::string path_for(std::string_view path) {
    return console::quote(path);
}

std::string ElementRef::text() const {
    return index ? name + "(" + std::to_string(*index) + ")" : name;
}

std::optional<ElementRef> parse_element(std::string_view text, bool with_property,
                                        std::string* property) {
    const auto path = console::parse_name_path(text);
    if (!path || path->member.empty() == with_property) return std::nullopt;
    if (property) *property = path->member;
    return ElementRef{path->name, console::index_of(*path)};
}

}  // namespace commands
