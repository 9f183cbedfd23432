// What lasts from one command to the next: the trace log, how results are shown, and the words that were used.
#pragma once

#include "kelctl/command.h"
#include "kelctl/known_words.h"
#include "kelctl/trace_log.h"

#include <cstdint>
#include <functional>
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
    session(place where, bool json, bool trace);

    // Carries the command out, remembers the words it used, and shows its result. What it returns has been shown.
    result carry_out(const invocation &asked, const origin &from = {});

    // Calls the function that the command stands for; `parameters` is how a report names them: "pcep_id=7".
    result call(const invocation &asked, const std::string &parameters, const std::function<uint32_t()> &function);

    // Text for people, as it comes up: nothing when results are shown as JSON, which tells it in the result.
    void tell(std::FILE *stream, std::string_view text) const;

    trace_log &log()
    {
        return log_;
    }

    bool json() const
    {
        return json_;
    }

    bool tracing() const
    {
        return tracing_;
    }

    place where; // commands come from
    known_words known;
    bool finished = false; // no further command is wanted

private:
    void show_as(bool json, bool trace);
    void remember(const arguments &used);

    trace_log log_;
    const bool json_by_default_;
    const bool trace_by_default_;
    bool json_;
    bool tracing_ = false;
    bool missing_tracer_told_ = false;
};

// The handler of a function without parameters.
template <uint32_t (*Function)()> result call_plainly(const invocation &asked, session &session)
{
    return session.call(asked, "", Function);
}

} // namespace kelctl
