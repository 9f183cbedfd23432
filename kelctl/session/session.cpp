// Carrying commands out, one after the other. What a command does is in its handler (commands/); here is what is done
// around every one.
#include "kelctl/session/session.h"

#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/language/help.h"
#include "kelctl/library/trace_log.h"
#include "kelctl/results/result_document.h"
#include "kelctl/results/result_view.h"
#include "kelctl/values/mp_id.h"
#include "notation/json.h"
#include "platform/kei_util.h"
#include "terminal/terminal.h"

#include <fmt/core.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace kelctl
{
namespace
{

// Whether the command can be carried out on the software accelerator of another process: the library is in that
// process, and only what the accelerator itself offers is reached through its socket.
bool uses_accelerator_only(const command &row)
{
    return row.offline || row.carries_out_others || (row.needs_accelerator && row.carried_out == executor::node);
}

// Why the command cannot be carried out; empty: it can.
std::string obstacle_to(const command &row)
{
    if (row.needs_accelerator && !on_software_accelerator())
        return fmt::format("\"{}\" requires the software accelerator", row.name);
    if (accelerator_elsewhere() && !uses_accelerator_only(row))
        return fmt::format("\"{}\" requires more than the software accelerator of another process", row.name);
    return "";
}

std::vector<input_error> mp_id_warnings()
{
    std::string wrong = wrong_mp_id();
    return wrong.empty() ? std::vector<input_error>() : std::vector{input_error{std::move(wrong)}};
}

// Of rules that no call has met up to now.
std::vector<input_error> unmatched_faults()
{
    std::vector<input_error> warnings;
    for (const fields &rule : on_software_accelerator() ? accelerator_faults() : fields::array())
        if (rule.at("hits").number<uint64_t>() == 0)
            warnings.push_back({fmt::format("no call matched the fault rule {}", rule.at("rule").text())});
    return warnings;
}

std::string line_on_terminal(const trace_entry &entry)
{
    return line_on(page_for(stderr), to_text(entry));
}

std::string code_text(uint32_t code)
{
    return fmt::format("{} ({})", code, kei_util_init_rc_str_get(code));
}

// A line that expects a code is done when that code comes, that of a failure as well.
void compare(const invocation &asked, result &done)
{
    if (!asked.expected || !done.code)
        return;
    if (*done.code == *asked.expected) {
        done.status = exit_done;
        done.failures.clear();
        return;
    }
    done.status = exit_operation_failed;
    done.errors.push_back({fmt::format("expected code {}, got {}", code_text(*asked.expected), code_text(*done.code))});
}

// Words of the command that do not go together: of a file, its own position says more than the command's help.
bool is_wrong_use(const result &done)
{
    return done.status == exit_wrong_input && !done.shown_already && !done.errors.empty() &&
           done.errors.front().file.empty();
}

} // namespace

session::session(const command_table &commands, source here, const manner &shown)
    : table(commands), where(here), shown_by_default_(shown), shown_(shown)
{
}

session::~session() = default;

// Warnings about the surroundings (MPID, fault rules) come once for the program's own command, not for each line that
// it carries out. The result as JSON is one document, so it is written after all of them.
result session::carry_out(const invocation &asked, const std::string &file)
{
    const source here = where;
    show_as(asked.shown);
    result around = {.text = ""}; // warnings of what surrounds the program's command
    const bool program = here == source::program && !elsewhere && !accelerator_elsewhere();
    if (program)
        show_part(around, {.text = "", .warnings = mp_id_warnings()}, {});
    result done = perform(asked);
    compare(asked, done);
    remember(asked);
    show_as(asked.shown); // the command may have carried out others meanwhile
    if (!shown_.json)
        show(done, {file, asked.line}, shown_, tracer_installed());
    if (program && !asked.row->offline && done.status != exit_wrong_input)
        show_part(around, {.text = "", .warnings = unmatched_faults()}, {});
    std::ranges::move(around.warnings, std::back_inserter(done.warnings));
    if (shown_.json && (!shown_.quiet || done.status != exit_done))
        terminal::write(stdout, line_of(document_of(done, asked, {file, asked.line}, tracer_installed())));
    if (!shown_.json && is_wrong_use(done) && file.empty())
        terminal::write(stderr, lines_on(page_for(stderr), help_hint(asked.row->name, here)));
    show_as({});
    return done;
}

void session::show_part(result &whole, result part, const origin &from)
{
    if (on_part)
        on_part(part, from);
    if (!shown_.json)
        show(part, from, shown_, tracer_installed());
    add_part(whole, std::move(part));
}

// The text of the call is made only when it fails: 10,000 paths are 10,000 calls.
result session::called(std::string_view name, const std::function<std::string()> &text,
                       const std::function<uint32_t()> &call)
{
    log().start_operation();
    result done;
    done.code = call();
    ++operations[{name, *done.code}];
    keep_mp_id(); // the library may have read it now
    if (done.code == 0) {
        done.complaints = log().operation_failures();
        return done;
    }
    done.status = exit_operation_failed;
    done.failures.push_back({text(), *done.code, log().operation_records()});
    return done;
}

void session::note(const invocation &asked, result &done)
{
    if (!done.failures.empty())
        done.failures.back().hint = missing_service(*asked.row);
    if (done.code == 0)
        made.note(asked);
    else if (asked.row->failure_leaves_something)
        made.note_failed(asked);
    if (on_made && done.code == 0)
        on_made();
}

// What to do about a service that the command needs, and that nothing has started; empty: nothing.
std::string session::missing_service(const command &row) const
{
    const auto starts_it = [&row](const command &other) { return other.starts == row.service; };
    const auto started = [&](const made_command &one) { return !one.failed && starts_it(*one.asked.row); };
    if (row.service.empty() || std::ranges::any_of(made.all(), started))
        return "";
    const auto start = std::ranges::find_if(table.rows(), starts_it);
    return fmt::format(
        "the {} is not started in this process: \"{}\" starts it{}", row.service, start->name,
        where != source::program ? "" : "; run such commands in one process, with \"kelctl run\" or \"kelctl shell\"");
}

// The only function where an exception of a handler ends, so a command that throws is reported as any other that fails.
result session::perform(const invocation &asked)
{
    try {
        return elsewhere && asked.row->carried_out != executor::asker ? perform_elsewhere(asked) : perform_here(asked);
    } catch (const std::exception &error) {
        return refused(error.what());
    }
}

result session::perform_here(const invocation &asked)
{
    if (std::string why = obstacle_to(*asked.row); !why.empty())
        return refused(std::move(why));
    if (auto wrong = asked.row->offline || elsewhere ? std::nullopt : switch_on_accelerator())
        return wrong_use(std::move(*wrong));
    return asked.chosen->run(asked, *this);
}

result session::perform_elsewhere(const invocation &asked)
{
    if (asked.row->carried_out == executor::nobody)
        return refused(fmt::format("\"{}\" cannot be asked of the node of another process", asked.row->name));
    invocation sent = asked;
    sent.expected.reset(); // the code is compared here
    answer answered = elsewhere->carry_out(sent, {output_page(), shown_.trace});
    tracer_elsewhere_ = answered.tracer_installed;
    if (shown_.trace)
        report_missing_tracer();
    for (const trace_entry &entry : answered.trace)
        show_record(entry);
    for (const auto &[part, from] : answered.parts)
        if (!shown_.json)
            show(part, from, shown_, tracer_installed());
    return std::move(answered.done);
}

// As JSON, no part is shown by itself; quiet, nothing is drawn meanwhile either. Commands come as from a shell: the
// process goes on after them, so no hint suggests to run several of them in one process.
answer session::answer_to(const invocation &asked, const asker &whom)
{
    const manner own = std::exchange(shown_, {.json = true, .quiet = true});
    const source here = std::exchange(where, source::shell);
    std::vector<trace_entry> trace;
    page_of_asker_ = whom.shown_on;
    log().pass_to(whom.traces ? [&trace](const trace_entry &entry) { trace.push_back(entry); }
                              : std::function<void(const trace_entry &)>());
    answer given = observed([&] { return perform(asked); });
    remember(asked);
    page_of_asker_.reset();
    where = here;
    shown_ = own;
    direct_trace();
    given.trace = std::move(trace);
    return given;
}

answer session::observed(const std::function<result()> &work)
{
    answer given;
    on_part = [&given](const result &part, const origin &from) { given.parts.push_back({part, from}); };
    given.done = work();
    on_part = nullptr;
    given.tracer_installed = tracer_installed();
    return given;
}

page session::output_page() const
{
    if (page_of_asker_)
        return *page_of_asker_;
    page page = page_for(stdout);
    if (shown_.all)
        page.most_rows.reset();
    return page;
}

bool session::tracer_installed() const
{
    return elsewhere ? tracer_elsewhere_ : log_ && log_->installed();
}

trace_log &session::log()
{
    if (!log_) {
        log_ = std::make_unique<trace_log>();
        direct_trace();
    }
    return *log_;
}

void session::stream(const fields &document) const
{
    if (shown_.json && !shown_.quiet)
        terminal::write(stdout, line_of(document));
}

// What the program was asked for counts for every command.
void session::show_as(const manner &asked)
{
    const auto &usual = shown_by_default_;
    shown_ = {.json = asked.json || usual.json,
              .trace = asked.trace || usual.trace,
              .brief = asked.brief || usual.brief,
              .quiet = asked.quiet || usual.quiet,
              .all = asked.all || usual.all};
    if (log_)
        direct_trace();
}

void session::direct_trace()
{
    if (!shown_.trace)
        return log_->pass_to(nullptr);
    log_->pass_to([this](const trace_entry &entry) { show_record(entry); });
    report_missing_tracer();
}

void session::show_record(const trace_entry &entry) const
{
    terminal::write(stderr, shown_.json ? json_line(entry) : line_on_terminal(entry));
}

void session::report_missing_tracer()
{
    if (!tracer_installed() && !std::exchange(missing_tracer_told_, true))
        terminal::write(stderr, line_on(page_for(stderr), "no trace: the tracer is not installed on this machine"));
}

void session::remember(const invocation &asked)
{
    for (const argument &one : asked.row->arguments)
        if (const argument_value *used = asked.given.find(one.name); used && one.kind.remember)
            one.kind.remember(*used, known);
}

} // namespace kelctl
