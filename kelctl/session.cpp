// Carrying commands out, one after the other.
#include "kelctl/session.h"

#include "kelctl/result_document.h"
#include "kelctl/result_view.h"
#include "kelctl/terminal.h"

#include <fmt/format.h>

#include <utility>

namespace kelctl
{
namespace
{

template <typename... Readers> struct overloaded : Readers... {
    using Readers::operator()...;
};
template <typename... Readers> overloaded(Readers...) -> overloaded<Readers...>;

} // namespace

session::session(place here, bool json, bool trace)
    : where(here), log_(nullptr), json_by_default_(json), trace_by_default_(trace), json_(json)
{
}

result session::carry_out(const invocation &asked, const origin &from)
{
    show_as(asked.json, asked.trace);
    result done = asked.chosen->run(asked, *this);
    remember(asked.given);
    show_as(asked.json, asked.trace); // the command may have carried out others meanwhile
    if (json_)
        write(stdout, line_of(document_of(done, asked, from, log_.installed())));
    else
        show(done, from, log_.installed());
    show_as(false, false);
    return done;
}

result session::call(const invocation &asked, const std::string &parameters, const std::function<uint32_t()> &function)
{
    const auto text = [&] { return fmt::format("{}({})", asked.chosen->function, parameters); };
    auto failed = kelctl::run({text, function}, log_);
    result done;
    done.code = failed ? failed->code : 0;
    if (failed) {
        done.status = exit_operation_failed;
        done.failures.push_back(std::move(*failed));
    }
    return done;
}

void session::tell(std::FILE *stream, std::string_view text) const
{
    if (!json_)
        write(stream, text);
}

// What the program was asked for counts for every command.
void session::show_as(bool json, bool trace)
{
    json_ = json || json_by_default_;
    tracing_ = trace || trace_by_default_;
    log_.print_to(tracing_ ? stderr : nullptr, json_ ? json_line : text_line);
    if (tracing_ && !log_.installed() && !std::exchange(missing_tracer_told_, true))
        write(stderr, "no trace: the tracer is not installed on this machine\n");
}

void session::remember(const arguments &used)
{
    const overloaded keep = {[this](const mac_address &mac) { known.macs.insert(mac); },
                             [this](pcep_id id) { known.ids.insert(id.value); }, [](const auto &) {}};
    for (const auto &[name, value] : used.all())
        std::visit(keep, value);
}

} // namespace kelctl
