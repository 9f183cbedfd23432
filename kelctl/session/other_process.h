// Commands between two processes: one shows results, the other has the node and carries the commands out. What is said
// between them is remote/.
//
//     the session that shows:   answer answered = elsewhere->carry_out(asked, {output_page(), tracing});
//     the session of the node:  answer given = session.answer_to(asked, whom);
// Here are only the types that both sides share, so that the session needs to know nothing of sockets.
#pragma once

#include "kelctl/language/command.h"
#include "kelctl/library/trace_entry.h"
#include "kelctl/results/fields_view.h"
#include "kelctl/results/result.h"

#include <vector>

namespace kelctl
{

// Who asks, and shows the result.
struct asker {
    page shown_on;       // where its texts are shown
    bool traces = false; // wants every trace record of the command
};

// A part of a long command's result, as it came up.
struct result_part {
    result part;
    origin from;
};

// All that the process of the node says of one command.
struct answer {
    result done;
    std::vector<result_part> parts = {}; // in their order; `done` has all of them
    std::vector<trace_entry> trace = {};
    bool tracer_installed = false; // where the node is
};

// A node in another process.
class other_process
{
public:
    virtual ~other_process() = default;

    // Throws std::runtime_error when it does not answer.
    virtual answer carry_out(const invocation &asked, const asker &whom) = 0;

    // Asks something else of it (remote/messages.h). Throws the same.
    virtual fields ask(const fields &question) = 0;
};

} // namespace kelctl
