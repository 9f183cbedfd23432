// Rows of the fault group: rules that make closed calls fail, delay them or block them. The syntax of a rule belongs to
// the software accelerator; this file passes rules on as text.
#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/commands/commands.h"
#include "kelctl/node/load_node_file.h"
#include "kelctl/results/result.h"
#include "kelctl/values/file_text.h"
#include "text/wording.h"

#include <utility>

namespace kelctl
{
namespace
{

constexpr std::string_view add_details =
    R"(A rule is FUNCTION[:CALL[*TIMES]]=EFFECT[,EFFECT]. CALL counts the function's
calls from now on. EFFECT is a code to return, "latency:250us" of virtual time,
or "block" (timing unit only) until "fault release". With "own-thread" beside an
effect, calls of the library's own thread do not count. If several rules match a
call, the first one added applies.

A file has one rule per line; # begins a comment. If one rule is wrong, none is
added.)";

// All rules of the file or none. Problems have their line and column, as those of a script.
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

// Several rules are added as one text, so that all of them are added or none.
result add_faults(const invocation &asked, session &)
{
    const auto &rules = asked.given.get<std::vector<std::string>>("RULE");
    const bool from_file = asked.given.has("--file");
    if (rules.empty() != from_file)
        return wrong_use(from_file ? "RULE and --file cannot be used together" : "a RULE or --file is required");
    if (from_file)
        return add_file(asked.given.text("--file"));
    if (auto wrong = add_accelerator_faults(text::joined(rules, ";")))
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
         .help = "Make calls of the closed libraries fail",
         .details = add_details,
         .arguments =
             {{.name = "--file", .kind = kind::file(), .help = "read the rules from this file", .required = false},
              {.name = "RULE",
               .kind = kind::text(),
               .help = "which calls fail, and how",
               .required = false,
               .repeated = true}},
         .example = "fault add ork_ebcom_pcep_path_create:3=-4 kel_init_attach:2*3=10",
         .needs_accelerator = true},
        {.name = "fault list",
         .variants = {{.run = list_faults}},
         .help = "List the rules and how many calls matched each",
         .needs_accelerator = true},
        {.name = "fault clear",
         .variants = {{.run = clear_faults}},
         .help = "Remove all rules and release blocked calls",
         .needs_accelerator = true},
        {.name = "fault release",
         .variants = {{.run = release_calls}},
         .help = "Release the calls that rules block now",
         .needs_accelerator = true},
        {.name = "fault functions",
         .variants = {{.run = list_functions}},
         .help = "List the functions that rules can name, and the codes that a sweep tries",
         .needs_accelerator = true,
         .offline = true},
    };
}

} // namespace kelctl
