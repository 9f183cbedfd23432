// kelctl: the command line. Commands live in files of their own, here is only how they are asked for.
#include "kelctl/exit_status.h"
#include "kelctl/terminal.h"
#include "kelctl/up.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <csignal>
#include <cstdio>
#include <exception>

namespace
{

constexpr const char *about = "Control process of a node: configures the IC side of its packet accelerator.";

constexpr const char *footer = R"(Exit status:
  0  done
  1  an operation failed; standard error tells which and why
  2  the command line or the node file is wrong; nothing was started

Environment:
  MPID                  own MP id, unless the node file gives one
  NO_COLOR              when not empty: no colours on a terminal
  KEL_SOFTNODE_FAULTS   calls that the software accelerator shall let fail,
                        such as "ork_ebcom_pcep_path_create:3=-4")";

constexpr const char *up_footer = R"(The whole file is checked first. Every problem is printed as
file:line:column: message, and then nothing is started.

A failing operation is printed with its arguments, its code and its trace
records; what stands by then is taken down again. --trace prints every record
on standard error, one line each: event, domain, message, location.

Example:
  kelctl up examples/node.toml)";

void add_up(CLI::App &app, kelctl::up_options &options)
{
    CLI::App *up = app.add_subcommand("up", "Bring a node up, show what stands, take it down again");
    up->add_option("FILE", options.file, "Node file (TOML)")->required();
    up->add_flag("--trace", options.trace, "Print the library's trace records as they are fired");
    up->footer(up_footer);
}

int run(int argc, char **argv)
{
    CLI::App app(about, "kelctl");
    app.set_version_flag("--version", "kelctl " KELCTL_VERSION, "Print the version and exit");
    app.require_subcommand(0, 1); // none is told below, once there is nothing else to complain about
    app.footer(footer);
    app.get_formatter()->column_width(24);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.get_formatter()->label("Subcommands", "Commands");
    kelctl::up_options options;
    add_up(app, options);
    try {
        app.parse(argc, argv);
        if (app.get_subcommands().empty())
            throw CLI::RequiredError("A command");
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? kelctl::exit_done : kelctl::exit_wrong_input;
    }
    return kelctl::up(options);
}

} // namespace

int main(int argc, char **argv)
{
    // A node must not be left half way up because nobody reads the output any more.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        const int status = run(argc, argv);
        if (std::ferror(stdout) == 0)
            return status;
        kelctl::write(stderr, "kelctl: standard output cannot be written\n");
    } catch (const std::exception &error) {
        kelctl::write(stderr, fmt::format("kelctl: {}\n", error.what()));
    }
    return kelctl::exit_operation_failed;
}
