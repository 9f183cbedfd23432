// Commands of a script, one after the other in this process, shown to nobody.
#pragma once

#include "kelctl/commands/commands.h"
#include "kelctl/language/command_line.h"
#include "kelctl/session/result.h"
#include "kelctl/session/session.h"

#include <string>

namespace kelctl
{

inline invocation asked(const std::string &line)
{
    return parse(commands(), words_of(line), source::script);
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
