// What exists beside what a node file wants. What these commands do is in kelctl/change; here are their files and their
// output.
#include "kelctl/change/apply.h"
#include "kelctl/change/export.h"
#include "kelctl/commands/commands.h"
#include "kelctl/node/load_node_file.h"
#include "kelctl/session/session.h"
#include "kelctl/values/file_text.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelctl
{
namespace
{

const argument node_file_argument = {.name = "FILE", .kind = kind::file(), .help = "node file (TOML)"};

constexpr std::string_view export_details =
    R"(Written is what this process set up and has not removed, without streams of
traffic. On the software accelerator it is compared with what the accelerator
holds, and every difference is a warning.

A node file has parameters, an interface and the EBCOM service, and cannot say
everything that single commands can: what it cannot say is an error, and nothing
is written. A script says all of it.)";

constexpr std::string_view diff_details =
    R"(Objects are named in a fixed order. A file that does not name an MP id leaves the
one of the process, and streams of traffic are not compared. On the software
accelerator what this process set up is compared with what the accelerator holds,
too, and every difference there is a warning; elsewhere the comparison is with
what this process did.

The exit status is 0 when nothing differs, 1 when something does, and 2 when the
file is wrong.)";

constexpr std::string_view apply_details =
    R"(Only what differs is touched. Paths are added before others are removed, so that
queues keep their counters. A queue cannot be given another shaping: all its
paths are removed and added again, and the report says whose traffic that
interrupts. So it does of a PCEP that changes.

When a step fails, or after Ctrl-C, the old node is restored; what is not as it
was is listed. The MP id cannot change while the process lives.)";

// A file is written only if the node file says all that there is: half of a node would be taken for the whole.
result export_node(const invocation &asked, session &session)
{
    const bool as_script = asked.given.has("--script");
    exported made = exported_node(as_script, session);
    result done = {.warnings = std::move(made.warnings)};
    if (!made.errors.empty()) {
        done.status = exit_operation_failed;
        done.errors = std::move(made.errors);
        done.remark = "nothing was written; --script writes a script";
        return done;
    }
    done.shown["format"] = as_script ? "script" : "node file";
    if (!asked.given.has("--output")) {
        done.shown["text"] = made.text;
        done.text = std::move(made.text);
        return done;
    }
    const std::string &file = asked.given.text("--output");
    if (auto why = write_file(file, made.text))
        return refused(std::move(*why), file);
    done.shown["file"] = file;
    return done;
}

// What `carry_out` makes of the file's lines, with its warnings; wrong input of a wrong file.
template <typename CarryOut>
result with_file(const invocation &asked, const session &session, std::string_view consequence, CarryOut carry_out)
{
    const std::string &name = asked.given.text("FILE");
    auto [lines, errors, warnings] = load_node_file(name, session.table);
    if (!errors.empty())
        return wrong_input(name, std::move(errors), consequence);
    result done = carry_out(lines);
    std::ranges::move(done.warnings, std::back_inserter(warnings));
    done.warnings = std::move(warnings);
    return done;
}

result compare(const invocation &asked, session &session)
{
    return with_file(asked, session, "nothing was compared",
                     [&](const std::vector<invocation> &lines) { return difference_from(lines, session); });
}

result apply_file(const invocation &asked, session &session)
{
    return with_file(asked, session, "nothing was changed", [&](const std::vector<invocation> &lines) {
        return apply(lines, asked.given.has("--dry-run"), session);
    });
}

} // namespace

std::vector<command> change_commands()
{
    return {
        {.name = "export",
         .variants = {{.run = export_node}},
         .help = "Write what exists as a node file or a script",
         .details = export_details,
         .arguments = {{.name = "--script", .kind = kind::flag(), .help = "a script, which run carries out"},
                       {.name = "--output", .kind = kind::new_file(), .help = "write it there", .required = false}},
         .example = "export --script --output node.kel"},
        {.name = "diff",
         .variants = {{.run = compare}},
         .help = "Show what differs from a node file",
         .details = diff_details,
         .arguments = {node_file_argument},
         .example = "diff examples/node.toml"},
        {.name = "apply",
         .variants = {{.run = apply_file}},
         .help = "Make what exists what a node file says",
         .details = apply_details,
         .arguments = {node_file_argument,
                       {.name = "--dry-run", .kind = kind::flag(), .help = "show the steps and do nothing"}},
         .example = "apply examples/node.toml"},
    };
}

} // namespace kelctl
