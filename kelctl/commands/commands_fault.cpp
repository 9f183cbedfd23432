// Fault rules of the software accelerator: which closed calls fail, take their time or block.
#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/commands/commands.h"
#include "kelctl/node/load_node_file.h"
#include "kelctl/session/result.h"
#include "kelctl/terminal/text.h"
#include "kelctl/values/file_text.h"

#include <utility>

namespace kelctl
{
namespace
{

constexpr std::string_view add_details =
    R"(A rule is FUNCTION[:CALL[*TIMES]]=EFFECT[,EFFECT]. CALL counts the function's
calls from now on. Effects are a code to return, "latency:250us" of virtual
time, and "block", for functions of the timing unit, until "fault release". Of
the rules that one call meets, the one added first counts.

A file has rules in lines; # begins a comment. When one rule is wrong, none is
added.)";

result add_file(const std::string &file)
{
    problem_list problems;
    const std::string text = text_of_file(file, problems);
    if (problems.empty())
        if (auto wrong = add_accelerator_faults_of(text))
            problems.push_back(std::move(*wrong));
    if (!problems.empty())
        return wrong_input(file, errors_of(file, std::move(problems)), "no rule was added");
    return {};
}

result add_faults(const invocation &asked, session &)
{
    const auto &rules = asked.given.get<std::vector<std::string>>("RULE");
    const bool from_file = asked.given.has("--file");
    if (rules.empty() != from_file)
        return wrong_use(from_file ? "rules come from the command or from --file, not from both"
                                   : "a RULE or --file is required");
    if (from_file)
        return add_file(asked.given.text("--file"));
    if (auto wrong = add_accelerator_faults(joined(rules, ";")))
        return wrong_use(std::move(*wrong));
    return {};
}

result list_faults(const invocation &, session &)
{
    return {.shown = {{"rules", accelerator_faults()}}};
}

result clear_faults(const invocation &, session &)
{
    clear_accelerator_faults();
    return {};
}

result release_calls(const invocation &, session &)
{
    return {.shown = {{"released", release_accelerator_faults()}}};
}

result list_functions(const invocation &, session &)
{
    return {.shown = {{"functions", accelerator_fault_functions()}}};
}

} // namespace

std::vector<command> fault_commands()
{
    return {
        {.name = "fault add",
         .variants = {{.run = add_faults}},
         .help = "Let calls of the driver kit and its companions fail",
         .details = add_details,
         .arguments = {{.name = "--file", .kind = kind::file(), .help = "rules from a file instead", .required = false},
                       {.name = "RULE",
                        .kind = kind::text(),
                        .help = "which calls, and what becomes of them",
                        .required = false,
                        .repeated = true}},
         .example = "fault add ork_ebcom_pcep_path_create:3=-4 kel_init_attach:2*3=10",
         .needs_accelerator = true},
        {.name = "fault list",
         .variants = {{.run = list_faults}},
         .help = "Show the rules, and how many calls met each",
         .needs_accelerator = true},
        {.name = "fault clear",
         .variants = {{.run = clear_faults}},
         .help = "Forget all rules, and let blocked calls go on",
         .needs_accelerator = true},
        {.name = "fault release",
         .variants = {{.run = release_calls}},
         .help = "Let the calls go on that a rule blocks at this moment",
         .needs_accelerator = true},
        {.name = "fault functions",
         .variants = {{.run = list_functions}},
         .help = "List what a rule may name, and the codes of a sweep",
         .needs_accelerator = true,
         .offline = true},
    };
}

} // namespace kelctl
