// The sections of kelctl(1). Texts about single commands are in their rows (kelctl/commands), so that help shows the
// same; only what belongs to no command is written here.
#include "kelctl/documents/manual.h"

#include "kelctl/language/help.h"
#include "options/documents/roff.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <span>

namespace kelctl
{
namespace
{

constexpr std::string_view description =
    R"(kelctl configures the IC side of a node's packet accelerator. It brings a whole node up from a file, node.toml(5),
and has a command for every function of the library.

Each process has its own node, which ends with the process. To run several commands on the same node, use a script,
"kelctl run", or the shell, "kelctl shell".)";

constexpr std::string_view scripts =
    R"(A script has one command per line, without the word kelctl. Blanks separate words. Single or double quotes keep blanks
and # in a word; so does a backslash for the next character, except within single quotes. # begins a comment. Options can
be anywhere after the command, their values in the next word or after "="; "--" ends the options. "expect CODE" before a
command makes it fail unless it returns this code.

)";

constexpr meaning files[] = {
    {"/usr/share/doc/kelctl/examples/node.toml", "A node file with every table and key."},
    {"/usr/share/doc/kelctl/examples/node.kel", "A script that brings a small node up and down."},
    {"/usr/share/doc/kelctl/examples/whole-node.kel",
     "A script with every operation that changes something, for sweep."},
    {"/run/kelctl/NAME.sock, $XDG_RUNTIME_DIR/kelctl/NAME.sock",
     "Where commands reach the node that a process holds under this name: the first is that of root and of services."},
    {"/etc/kelctl/NAME.toml", "The node file of the service kelctl@NAME."},
    {"~/.local/state/kelctl/history", "The lines of the shell; in $XDG_STATE_HOME/kelctl if that variable is set."},
    {"~/.editrc", "The keys of the shell, as editrc(5) describes them; lines that begin with \"kelctl:\" apply to "
                  "kelctl only. It takes "
                  "the place of .inputrc. The environment variable EDITRC names another file."},
    {"/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME", "The output of \"ebcom qos dump\"."},
};

// The example files where the package installs them.
std::string on_an_installed_machine(std::string example)
{
    constexpr std::string_view in_the_tree = " examples/";
    if (const size_t at = example.find(in_the_tree); at != std::string::npos)
        example.replace(at, in_the_tree.size(), " /usr/share/doc/kelctl/examples/");
    return example;
}

void add_arguments(options::roff_page &page, const std::vector<argument> &arguments)
{
    for (const argument &one : arguments)
        page.item(with_value(one), argument_text(one));
}

// Empty for a command that is allowed everywhere.
std::string_view restriction_of(const command &row)
{
    if (row.sources == std::vector{source::program})
        return "Not available in scripts and the shell.";
    if (row.sources == std::vector{source::shell})
        return "Available in the shell only.";
    return row.allowed_in(source::program) ? "" : "Available in scripts and the shell only.";
}

void add_command(options::roff_page &page, const command &row)
{
    page.subsection(text::joined(usage_of(row), " "));
    page.text(fmt::format("{}.", row.help));
    if (row.needs_accelerator)
        page.text("Requires the software accelerator.");
    if (const std::string_view restriction = restriction_of(row); !restriction.empty())
        page.text(restriction);
    add_arguments(page, row.arguments);
    if (!row.details.empty())
        page.text(fmt::format("\n{}", row.details));
    for (const variant &one : row.variants)
        if (!one.function.empty())
            page.item(fmt::format("{}()", one.function),
                      one.word.empty() ? "The library's function." : fmt::format("With --variant {}.", one.word));
}

void add_meanings(options::roff_page &page, std::span<const meaning> meanings)
{
    for (const auto &[what, means] : meanings)
        page.item(what, means);
}

} // namespace

// The sections in the order of man-pages(7).
std::string program_manual(const command_table &table, std::string_view version)
{
    options::roff_page page("kelctl", 1, "kelctl", version, "control process of a node's packet accelerator");
    page.section("SYNOPSIS");
    page.text("kelctl [--node NAME | --softnode PATH] COMMAND [ARGUMENT]...");
    page.section("DESCRIPTION");
    page.text(description);
    page.section("OPTIONS");
    page.text("Every command takes these options:");
    add_arguments(page, shared_options());
    page.text("\nBefore a command:");
    add_meanings(page, options_before_command());
    page.text("\nInstead of a command:");
    add_meanings(page, options_without_command());
    page.section("COMMANDS");
    for (const command &row : table.rows())
        add_command(page, row);
    page.section("SCRIPTS");
    page.text(fmt::format("{}{}", scripts, value_notations()));
    page.section("EXIT STATUS");
    add_meanings(page, exit_statuses());
    page.section("ENVIRONMENT");
    add_meanings(page, environment_variables());
    page.section("FILES");
    add_meanings(page, files);
    page.section("EXAMPLES");
    for (const command &row : table.rows())
        if (row.sources == std::vector{source::program})
            page.example(fmt::format("kelctl {}", on_an_installed_machine(std::string(row.example))));
    page.section("SEE ALSO");
    page.text("node.toml(5), kel-trace(1), kel-record(1), kel_core_ic_ebcom(3), kel_core_ic_pcep(3)");
    return page.written();
}

} // namespace kelctl
