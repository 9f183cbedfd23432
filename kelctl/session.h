// What lasts from one command to the next: the trace log, how results are shown, and the words that were used.
#pragma once

#include "kelctl/asked_paths.h"
#include "kelctl/command.h"
#include "kelctl/known_words.h"
#include "kelctl/library_call.h"
#include "kelctl/trace_log.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

// Where a command stands in a file. Without a file: on the command line or in the shell.
struct origin {
    std::string file;
    uint32_t line = 0;
};

class session
{
public:
    // The table has to outlive it, as every command that it carries out comes from there.
    session(const command_table &commands, place where, bool json, bool trace);

    // Carries the command out, remembers the words it used, and shows its result. What it returns has been shown.
    result carry_out(const invocation &asked, const origin &from = {});

    // The same without showing it.
    result perform(const invocation &asked);

    // Calls the library's function that the command stands for, with these parameters (library_call.h).
    template <typename Function, typename... Parameters>
    result call(const invocation &asked, Function function, const Parameters &...parameters)
    {
        return result_of(operation_of(asked.chosen->function, function, parameters...));
    }

    // Text for people, as it comes up: nothing when results are shown as JSON, which tells it in the result.
    void tell(std::FILE *stream, std::string_view text) const;

    // A line of a stream, where results are shown as JSON: nothing elsewhere.
    void stream(const fields &document) const;

    // Listens from the first time that it is asked for: before that, nothing is going on beside the commands.
    trace_log &log();

    bool tracer_installed() const
    {
        return log_ && log_->installed();
    }

    bool json() const
    {
        return json_;
    }

    bool tracing() const
    {
        return tracing_;
    }

    const command_table &table;
    place where; // commands come from
    known_words known;
    asked_paths paths;
    bool timed = false;    // a timestamp thread was started, whose first offset may have to be waited for
    bool finished = false; // no further command is wanted

private:
    void show_as(bool json, bool trace);
    void direct_trace();
    void remember(const invocation &asked);
    result result_of(const operation &made);

    std::optional<trace_log> log_;
    const bool json_by_default_;
    const bool trace_by_default_;
    bool json_;
    bool tracing_ = false;
    bool missing_tracer_told_ = false;
};

// The handler of a function without parameters.
template <uint32_t (*Function)()> result call_plainly(const invocation &asked, session &session)
{
    return session.call(asked, Function);
}

} // namespace kelctl
