#include "object_commands.h"

#include "command_support.h"
#include "value_syntax.h"

namespace commands {

using console::CommandLine;
using kestrone::HRESULT;
using kestrone::Variant;

Reply make_object(Context& context) {
    host::ComponentSession& session = context.stage.session();
    if (!session.module_loaded()) {
        session.release_object();
        return Reply::fail(session.load_error());
    }
    const HRESULT hr = session.create_object();
    return kestrone::failed(hr) ? Reply::error(hr) : Reply::ok();
}

std::string format(const NewObject&) {
    return "new";
}

Reply execute(const NewObject&, Context& context) {
    return make_object(context);
}

Parsed parse_new(const CommandLine& line) {
    if (line.words.size() != 1) return refused("new takes no arguments");
    return parsed(NewObject{});
}

std::string format(const Quit&) {
    return "quit";
}

Reply execute(const Quit&, Context& context) {
    context.quit = true;
    return Reply::ok();
}

Parsed parse_quit(const CommandLine& line) {
    if (line.words.size() != 1) return refused("quit takes no arguments");
    return parsed(Quit{});
}

std::string format(const Field& c) {
    std::string text = "field " + c.name;
    if (c.index) text += "(" + std::to_string(*c.index) + ")";
    if (!c.member.empty()) text += "." + c.member;
    return text;
}

Reply execute(const Field& c, Context& context) {
    if (auto no = lacks(context, host::Facet::Fields)) return *no;
    Variant value;
    const HRESULT hr = context.stage.session().field(c.name, c.index, c.member, &value);
    if (hr == kestrone::DISP_E_UNKNOWNNAME)
        return Reply::fail("the component has no field " + format(c).substr(6));
    if (kestrone::failed(hr)) return Reply::error(hr);
    return Reply::ok(console::format_value(value));
}

// NAME, NAME(I) or NAME(I).MEMBER: a member belongs to an element of a record array.
Parsed parse_field(const CommandLine& line) {
    if (line.words.size() != 2)
        return refused("field takes one name: field NAME, NAME(I) or NAME(I).MEMBER");
    const auto path = console::parse_name_path(line.words[1]);
    if (!path || (!path->has_index && !path->member.empty()))
        return refused("not a field: " + line.words[1]);
    return parsed(Field{path->name, console::index_of(*path), path->member});
}

std::string format(const Operation& c) {
    std::string text = c.name;
    for (std::size_t i = 0; i < c.args.size(); ++i) {
        if (c.write && i + 1 == c.args.size()) text += " =";
        text += " " + console::format_value(c.args[i]);
    }
    return text;
}

Reply execute(const Operation& c, Context& context) {
    const auto member = host::ComponentSession::find_operation(c.name, c.write);
    if (!member) return Reply::fail("unknown command or operation: " + c.name);
    if (c.args.size() != member->info->param_count)
        return Reply::fail(c.name + " takes " +
                           std::to_string(member->info->param_count - (c.write ? 1 : 0)) +
                           " argument(s)" + (c.write ? " and a value" : ""));
    if (auto no = lacks(context, host::Facet::Calls)) return *no;
    std::vector<Variant> args = c.args;
    Variant result;
    const HRESULT hr = context.stage.session().call(*member, args, &result);
    if (kestrone::failed(hr)) return Reply::error(hr);
    std::string answer;
    if (member->info->result != kestrone::VarType::Empty) answer = console::format_value(result);
    for (std::size_t i = 0; i < member->info->param_count; ++i) {
        const auto& p = member->info->params[i];
        if (!p.by_ref) continue;
        if (!answer.empty()) answer += ' ';
        answer += std::string(p.name) + "=" + console::format_value(args[i]);
    }
    return Reply::ok(answer);
}

Parsed parse_operation(const CommandLine& line) {
    const std::string& name = line.words.front();
    const bool write = line.equals.has_value();
    if (write && *line.equals + 2 != line.words.size()) return refused("one value must follow '='");
    const auto member = host::ComponentSession::find_operation(name, write);
    if (!member) {
        if (host::ComponentSession::has_operation(name))
            return refused(name + (write ? " can't be written"
                                         : " can only be written: " + name + " ... = VALUE"));
        return refused("unknown command or operation: " + name);
    }
    // The arguments, then the written value.
    std::vector<std::string> texts(line.words.begin() + 1, line.words.end());
    if (write) texts.erase(texts.begin() + static_cast<std::ptrdiff_t>(*line.equals - 1));
    if (texts.size() != member->info->param_count)
        return refused(name + " takes " +
                       std::to_string(member->info->param_count - (write ? 1 : 0)) +
                       " argument(s)" + (write ? " and a value" : ""));
    Operation c{name, write, {}};
    for (const std::string& t : texts) {
        std::string error;
        auto v = console::parse_value(t, &error);
        if (!v) return refused(console::unreadable(t, error));
        c.args.push_back(std::move(*v));
    }
    return parsed(std::move(c));
}

}  // namespace commands
