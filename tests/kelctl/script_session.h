// Commands of a script, one after the other in this process, shown to nobody.
#pragma once

#include "kelctl/commands/commands.h"
#include "kelctl/language/command_line.h"
#include "kelctl/results/result.h"
#include "kelctl/session/session.h"

#include <string>
#include <vector>

namespace kelctl
{

inline invocation asked(const std::string &line)
{
    return parse(commands(), words_of(line), source::script);
}

inline std::vector<invocation> all_asked(const std::vector<std::string> &lines)
{
    std::vector<invocation> all;
    for (const std::string &line : lines)
        all.push_back(asked(line));
    return all;
}

// JSON, so that nothing is shown before the end of a command.
struct script_session : session {
    script_session() : session(commands(), source::script, {.json = true})
    {
    }

    result run(const std::string &line)
    {
        return perform(asked(line));
    }
};

} // namespace kelctl
