#include "console_session.h"

#include <algorithm>
#include <istream>
#include <ostream>

#include "console_interrupt.h"
#include "error_text.h"
#include "value_syntax.h"

namespace console {

using kestrone::HRESULT;
using kestrone::Variant;

void Output::notice(const std::string& line) {
    out_ << line << '\n' << std::flush;
}

void Output::final_line(const std::string& line) {
    if (capture_)
        *capture_ = line;
    else
        out_ << line << '\n' << std::flush;
}

void Output::ok(const std::string& rest) {
    final_line(rest.empty() ? "ok" : "ok " + rest);
}

void Output::error(HRESULT status) {
    const int number = kestrone::basic_error_number(status);
    if (number != 0)
        final_line("error " + std::to_string(number) + " " + error_text(number));
    else
        fail("the component answered with status " + status_text(status));
}

void Output::fail(const std::string& why) {
    final_line("fail " + escape_text(why));
}

void ConsoleServices::ShowMessage(const std::string& text) noexcept {
    out_.notice("message " + quote(text));
}

void ConsoleServices::PlayTone(std::int32_t hertz, std::int32_t milliseconds) noexcept {
    out_.notice("tone " + std::to_string(hertz) + " " + std::to_string(milliseconds));
}

ConsoleSession::ConsoleSession(std::ostream& out, host::ProjectCodec codec,
                               kestrone::IHostServices* services)
    : out_(out), services_(out_), session_(services ? *services : services_, std::move(codec)) {
    session_.on_clock_step(world::kStepMs, [this](std::int64_t) { world_driver_.step(); });
}

const std::map<std::string_view, ConsoleSession::Handler>& ConsoleSession::commands() {
    static const std::map<std::string_view, Handler> table{
        {"new", &ConsoleSession::cmd_new},
        {"quit", &ConsoleSession::cmd_quit},
        {"field", &ConsoleSession::cmd_field},
        {"store", &ConsoleSession::cmd_store},
        {"writeprops", &ConsoleSession::cmd_writeprops},
        {"readprops", &ConsoleSession::cmd_readprops},
        {"page", &ConsoleSession::cmd_page},
        {"get", &ConsoleSession::cmd_get},
        {"put", &ConsoleSession::cmd_put},
        {"click", &ConsoleSession::cmd_click},
        {"arrow", &ConsoleSession::cmd_arrow},
        {"mouse", &ConsoleSession::cmd_mouse},
        {"event", &ConsoleSession::cmd_event},
        {"tick", &ConsoleSession::cmd_tick},
        {"advance", &ConsoleSession::cmd_advance},
        {"snapshot", &ConsoleSession::cmd_snapshot},
        {"run", &ConsoleSession::cmd_run},
        {"var", &ConsoleSession::cmd_var},
        {"expect", &ConsoleSession::cmd_expect},
        {"help", &ConsoleSession::cmd_help},
        {"world", &ConsoleSession::cmd_world},
    };
    return table;
}

void ConsoleSession::create_object() {
    if (!session_.module_loaded()) {
        session_.release_object();
        return out_.fail(session_.load_error());
    }
    const HRESULT hr = session_.create_object();
    if (kestrone::failed(hr)) return out_.error(hr);
    out_.ok();
}

void ConsoleSession::start() {
    create_object();
}

bool ConsoleSession::have_object() {
    if (session_.has_object()) return true;
    out_.fail(session_.module_loaded() ? "there is no object: its creation failed (try new)"
                                       : session_.load_error());
    return false;
}

bool ConsoleSession::execute(std::string_view line) {
    if (is_skipped_line(line)) return true;
    std::string error;
    const auto command = split_command(line, &error);
    if (!command) {
        out_.fail(error);
        return true;
    }
    const auto& table = commands();
    const auto it = table.find(command->words.front());
    take_interrupt();  // one made while nothing ran stops nothing
    command_word_ = command->words.front();
    command_started_ = std::chrono::steady_clock::now();
    if (it != table.end())
        (this->*(it->second))(*command);
    else
        cmd_operation(*command);
    if (progress_shown_) *progress_ << "\r\033[K" << std::flush;
    progress_shown_ = false;
    return !quit_;
}

std::string progress_text(std::string_view command, std::int64_t done, std::int64_t total) {
    // In floating point: a count of milliseconds times 100 may not fit.
    const auto percent = static_cast<int>(100.0 * static_cast<double>(done) /
                                          static_cast<double>(std::max<std::int64_t>(total, 1)));
    return std::string(command) + ": " + std::to_string(done) + " of " + std::to_string(total) +
           " ms on the clock (" + std::to_string(percent) + "%), Ctrl-C stops";
}

void ConsoleSession::watch_long_work(std::ostream& progress) {
    progress_ = &progress;
    session_.set_progress_check([this](std::int64_t done, std::int64_t total) {
        if (take_interrupt()) return false;
        if (std::chrono::steady_clock::now() - command_started_ > std::chrono::seconds(1)) {
            *progress_ << "\r" << progress_text(command_word_, done, total) << std::flush;
            progress_shown_ = true;
        }
        return true;
    });
}

void ConsoleSession::run(std::istream& in) {
    std::string line;
    while (!quit_ && std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        execute(line);
    }
}

void ConsoleSession::cmd_new(const CommandLine& c) {
    if (c.words.size() != 1) return out_.fail("new takes no arguments");
    create_object();
}

void ConsoleSession::cmd_quit(const CommandLine& c) {
    if (c.words.size() != 1) return out_.fail("quit takes no arguments");
    quit_ = true;
}

namespace {
// NAME, NAME(I) or NAME(I).MEMBER: a member belongs to an element of a record array.
std::optional<NamePath> parse_field_path(std::string_view text) {
    auto path = parse_name_path(text);
    if (path && !path->has_index && !path->member.empty()) return std::nullopt;
    return path;
}
}  // namespace

void ConsoleSession::cmd_field(const CommandLine& c) {
    if (c.words.size() != 2)
        return out_.fail("field takes one name: field NAME, NAME(I) or NAME(I).MEMBER");
    const auto path = parse_field_path(c.words[1]);
    if (!path) return out_.fail("not a field: " + c.words[1]);
    if (!have_object()) return;
    if (!session_.offers(host::Facet::Fields))
        return out_.fail("the component offers no inspection");
    Variant value;
    const HRESULT hr = session_.field(path->name, index_of(*path), path->member, &value);
    if (hr == kestrone::DISP_E_UNKNOWNNAME)
        return out_.fail("the component has no field " + c.words[1]);
    if (kestrone::failed(hr)) return out_.error(hr);
    out_.ok(format_value(value));
}

void ConsoleSession::cmd_operation(const CommandLine& c) {
    const std::string& name = c.words.front();
    const bool write = c.equals.has_value();
    if (write && *c.equals + 2 != c.words.size()) return out_.fail("one value must follow '='");
    const auto member = host::ComponentSession::find_operation(name, write);
    if (!member) {
        if (host::ComponentSession::has_operation(name))
            return out_.fail(name + (write ? " can't be written"
                                           : " can only be written: " + name + " ... = VALUE"));
        return out_.fail("unknown command or operation: " + name);
    }
    // The arguments, then the written value.
    std::vector<std::string> texts(c.words.begin() + 1, c.words.end());
    if (write) texts.erase(texts.begin() + static_cast<std::ptrdiff_t>(*c.equals - 1));
    if (texts.size() != member->info->param_count)
        return out_.fail(name + " takes " +
                         std::to_string(member->info->param_count - (write ? 1 : 0)) +
                         " argument(s)" + (write ? " and a value" : ""));
    std::vector<Variant> args;
    for (const std::string& t : texts) {
        std::string error;
        auto v = parse_value(t, &error);
        if (!v) return out_.fail(unreadable(t, error));
        args.push_back(std::move(*v));
    }
    if (!have_object()) return;
    if (!session_.offers(host::Facet::Calls))
        return out_.fail("the component offers no calls by name");
    Variant result;
    const HRESULT hr = session_.call(*member, args, &result);
    if (kestrone::failed(hr)) return out_.error(hr);
    std::string answer;
    if (member->info->result != kestrone::VarType::Empty) answer = format_value(result);
    for (std::size_t i = 0; i < member->info->param_count; ++i) {
        const auto& p = member->info->params[i];
        if (!p.by_ref) continue;
        if (!answer.empty()) answer += ' ';
        answer += std::string(p.name) + "=" + format_value(args[i]);
    }
    out_.ok(answer);
}

}  // namespace console
