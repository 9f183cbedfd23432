// Carrying commands out, one after the other.
#include "kelctl/session/session.h"

#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/library/trace_log.h"
#include "kelctl/session/result_document.h"
#include "kelctl/session/result_view.h"
#include "kelctl/terminal/terminal.h"
#include "kelctl/values/mp_id.h"

#include <fmt/core.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace kelctl
{
namespace
{

bool applies(const invocation &asked)
{
    return !asked.row->needs_accelerator || on_software_accelerator();
}

} // namespace

session::session(const command_table &commands, source here, bool json, bool trace)
    : table(commands), where(here), json_by_default_(json), trace_by_default_(trace), json_(json)
{
}

session::~session() = default;

result session::carry_out(const invocation &asked, const std::string &file)
{
    show_as(asked.json, asked.trace);
    result done = perform(asked);
    remember(asked);
    show_as(asked.json, asked.trace); // the command may have carried out others meanwhile
    const origin from = {file, asked.line};
    if (json_)
        write(stdout, line_of(document_of(done, asked, from, tracer_installed())));
    else
        show(done, from, tracer_installed());
    show_as(false, false);
    return done;
}

void session::show_part(result &whole, result part, const origin &from)
{
    if (!json_)
        show(part, from, tracer_installed());
    whole.shown_already = true;
    whole.status = std::max(whole.status, part.status);
    for (auto &[name, value] : part.shown.members())
        whole.shown[name] = std::move(value);
    std::ranges::move(part.failures, std::back_inserter(whole.failures));
    std::ranges::move(part.errors, std::back_inserter(whole.errors));
}

result session::called(const std::function<std::string()> &text, const std::function<uint32_t()> &call)
{
    log().start_operation();
    result done;
    done.code = call();
    keep_mp_id(); // the library may have read it now
    if (done.code == 0) {
        done.complaints = log().operation_failures();
        return done;
    }
    done.status = exit_operation_failed;
    done.failures.push_back({text(), *done.code, log().operation_records()});
    return done;
}

void session::note(const invocation &asked, const result &done)
{
    if (done.code == 0)
        made.note(asked);
    else if (asked.row->failure_leaves_something)
        made.note_failed(asked);
    if (on_made && done.code == 0)
        on_made();
}

result session::perform(const invocation &asked)
{
    if (!applies(asked))
        return refused(
            fmt::format("\"{}\" does not apply: this platform is not the software accelerator", asked.row->name));
    if (auto wrong = asked.row->offline ? std::nullopt : switch_on_accelerator())
        return wrong_use(std::move(*wrong));
    try {
        return asked.chosen->run(asked, *this);
    } catch (const std::exception &error) {
        return refused(error.what());
    }
}

bool session::tracer_installed() const
{
    return log_ && log_->installed();
}

trace_log &session::log()
{
    if (!log_) {
        log_ = std::make_unique<trace_log>(nullptr);
        direct_trace();
    }
    return *log_;
}

void session::stream(const fields &document) const
{
    if (json_)
        write(stdout, line_of(document));
}

// What the program was asked for counts for every command.
void session::show_as(bool json, bool trace)
{
    json_ = json || json_by_default_;
    tracing_ = trace || trace_by_default_;
    if (log_)
        direct_trace();
}

void session::direct_trace()
{
    log_->print_to(tracing_ ? stderr : nullptr, json_ ? json_line : text_line);
    if (tracing_ && !tracer_installed() && !std::exchange(missing_tracer_told_, true))
        write(stderr, "no trace: the tracer is not installed on this machine\n");
}

void session::remember(const invocation &asked)
{
    for (const argument &one : asked.row->arguments)
        if (const argument_value *used = asked.given.find(one.name); used && one.kind.remember)
            one.kind.remember(*used, known);
}

} // namespace kelctl
