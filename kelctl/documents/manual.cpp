// What of the program is told in which section.
#include "kelctl/documents/manual.h"

#include "kelctl/documents/roff.h"
#include "kelctl/language/help.h"
#include "kelctl/terminal/text.h"

#include <fmt/core.h>

#include <span>

namespace kelctl
{
namespace
{

constexpr std::string_view description =
    R"(kelctl configures the IC side of a node's packet accelerator. It brings whole nodes up from a file, node.toml(5),
and has a command for every function of the library.

A command is carried out on a node of its own, which ends with the process. Commands that are to work on one node are
lines of a script, for "kelctl run", or of a shell, "kelctl shell".)";

constexpr std::string_view scripts =
    R"(A script has a command in each line, without the word kelctl. Words are separated by blanks. Quotes of either kind
keep blanks and # in a word; a backslash does so for the character after it, but not within single quotes. # begins a
comment. Options may stand anywhere after the command, their values in the next word or behind a "="; after "--" there
are none.

)";

constexpr std::string_view editrc =
    R"(The keys of the shell, as editrc(5) describes them; lines that begin with "kelctl:" are for it alone. It takes
the place of .inputrc. The environment variable EDITRC names another file.)";

void add_arguments(roff_page &page, const std::vector<argument> &arguments)
{
    for (const argument &one : arguments)
        page.item(with_value(one), argument_text(one));
}

// Empty for what can be asked for everywhere.
std::string_view told_places(const command &row)
{
    if (row.sources == std::vector{source::program})
        return "Not in scripts and the shell.";
    if (row.sources == std::vector{source::shell})
        return "Only in the shell.";
    return row.allowed_in(source::program) ? "" : "Only in scripts and the shell.";
}

void add_command(roff_page &page, const command &row)
{
    page.subsection(joined(usage_of(row), " "));
    page.text(fmt::format("{}.", row.help));
    if (row.needs_accelerator)
        page.text("Only on the software accelerator.");
    if (const std::string_view places = told_places(row); !places.empty())
        page.text(places);
    add_arguments(page, row.arguments);
    if (!row.details.empty())
        page.text(fmt::format("\n{}", row.details));
    for (const variant &one : row.variants)
        if (!one.function.empty())
            page.item(fmt::format("{}()", one.function),
                      one.word.empty() ? "The library's function." : fmt::format("With --variant {}.", one.word));
}

void add_meanings(roff_page &page, std::span<const meaning> meanings)
{
    for (const auto &[what, means] : meanings)
        page.item(what, means);
}

} // namespace

std::string program_manual(const command_table &table, std::string_view version)
{
    roff_page page("kelctl", 1, version, "control process of a node's packet accelerator");
    page.section("SYNOPSIS");
    page.text("kelctl COMMAND [ARGUMENT]...");
    page.section("DESCRIPTION");
    page.text(description);
    page.section("OPTIONS");
    page.text("Every command has these:");
    add_arguments(page, shared_options());
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
    page.item("~/.editrc", editrc);
    page.section("EXAMPLES");
    for (const command &row : table.rows())
        if (row.sources == std::vector{source::program})
            page.example(fmt::format("kelctl {}", row.example));
    page.section("SEE ALSO");
    page.text("node.toml(5), kel_core_ic_ebcom(3), kel_core_ic_pcep(3)");
    return page.written();
}

} // namespace kelctl
