// Rows of the exported tracing functions: the message formatter, the empty trace point, the restart request. Recordings
// are kel-trace's. These functions return no code, so each is called as one that returns 0.
#include "kel/kel_trace.h"
#include "kelctl/commands/commands.h"
#include "kelctl/session/session.h"
#include "kelctl/values/limits.h"

#include <cstdarg>

namespace kelctl
{
namespace
{

constexpr const char *prefix_format = "%s(): ";

// kel_trace_internal_vformat_str takes a va_list, which only a variadic function can make.
[[gnu::format(printf, 3, 4)]] char *format_list(const char *before, const char *prefix, const char *body, ...)
{
    va_list values;
    va_start(values, body);
    char *const message = kel_trace_internal_vformat_str(before, prefix, body, values);
    va_end(values);
    return message;
}

// The text is an argument of "%s", so that percent signs in it are text.
template <char *(*Function)(const char *, const char *, const char *, ...)>
result format_message(const invocation &asked, session &session)
{
    const char *body = asked.given.has("TEXT") ? asked.given.text("TEXT").c_str() : nullptr;
    const char *body_format = body ? "%s" : nullptr;
    const char *prefix = asked.given.has("--prefix") ? asked.given.text("--prefix").c_str() : nullptr;
    std::string message;
    result done = session.call(asked, [&] {
        message = Function(prefix_format, prefix, body_format, body);
        return 0u;
    });
    done.text = message;
    done.shown = fields{{"message", message}};
    return done;
}

result pass_trace_point(const invocation &asked, session &session)
{
    return session.call(asked, [] {
        kel_tracepoint();
        return 0u;
    });
}

result abort_node(const invocation &asked, session &session)
{
    const auto line = asked.given.number<uint32_t>("--line");
    const char *const file = asked.given.text("--file").c_str();
    const char *const reason = asked.given.text("REASON").c_str();
    return session.call(asked, [=] {
        kel_abort_internal_abort(line, file, "%s", reason);
        return 0u;
    });
}

} // namespace

std::vector<command> trace_commands()
{
    return {
        {.name = "trace message",
         .variants = {{"kel_trace_internal_format_str", format_message<kel_trace_internal_format_str>, "values"},
                      {"kel_trace_internal_vformat_str", format_message<format_list>, "list"}},
         .help = "Format a message like those of trace records",
         .arguments =
             {{.name = "TEXT",
               .kind = kind::text(),
               .help = "text of the message; cut at 1023 characters",
               .required = false},
              {.name = "--prefix", .kind = kind::text(), .help = "function name to put in front", .required = false}},
         .example = "trace message 'port=6' --prefix bring_up"},
        {.name = "trace point",
         .variants = {{"kel_tracepoint", pass_trace_point}},
         .help = "Call the trace point, which does nothing"},
        {.name = "abort",
         .variants = {{"kel_abort_internal_abort", abort_node}},
         .help = "Ask the node's restart service for a restart",
         .details = "The service decides whether to restart; the command returns at once.",
         .arguments =
             {{.name = "REASON", .kind = kind::text(), .help = "reason; cut at 127 characters"},
              {.name = "--file", .kind = kind::text(), .help = "source file of the request", .otherwise = "kelctl"},
              {.name = "--line",
               .kind = kind::number(dword_range),
               .help = "source line of the request",
               .otherwise = "0"}},
         .example = "abort 'out of memory' --file main.c --line 12",
         .carried_out = executor::nobody},
    };
}

} // namespace kelctl
