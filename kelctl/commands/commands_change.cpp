// What exists beside what a node file wants.
#include "kelctl/change/export.h"
#include "kelctl/commands/commands.h"
#include "kelctl/session/session.h"
#include "kelctl/values/file_text.h"

#include <utility>

namespace kelctl
{
namespace
{

constexpr std::string_view export_details =
    R"(Written is what this process set up and has not removed, without streams of
traffic. On the software accelerator it is compared with what the accelerator
holds, and every difference is a warning.

A node file has parameters, an interface and the EBCOM service, and cannot say
everything that single commands can: what it cannot say is an error, and nothing
is written. A script says all of it.)";

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

} // namespace

std::vector<command> change_commands()
{
    return {
        {.name = "export",
         .variants = {{.run = export_node}},
         .help = "Write what exists as a node file or a script",
         .details = export_details,
         .arguments = {{.name = "--script", .kind = kind::flag(), .help = "a script, which run carries out"},
                       {.name = "--output", .kind = kind::file(), .help = "write it there", .required = false}},
         .example = "export --script --output node.kel"},
    };
}

} // namespace kelctl
