// The sections, in the order that man-pages(7) gives them.
#include "options/documents/manual.h"

#include "options/documents/roff.h"

#include <fmt/core.h>

#include <cstdio>

namespace options
{
namespace
{

void add_options(roff_page &page, const program &of, std::string_view only)
{
    for (const option &row : of.options)
        if (row.only == only)
            page.item(row.value.empty() ? std::string(row.name) : fmt::format("{} {}", row.name, row.value),
                      fmt::format("{}.", row.help));
}

void add_meanings(roff_page &page, std::string_view heading, std::span<const meaning> meanings)
{
    page.section(heading);
    for (const auto &[what, means] : meanings)
        page.item(what, means);
}

} // namespace

int print_manual(const program &of, const manual &texts)
{
    roff_page page(of.name, 1, of.name, KEL_VERSION, texts.about);
    page.section("SYNOPSIS");
    page.text(fmt::format("{} {}", of.name, of.usage));
    page.section("DESCRIPTION");
    page.text(texts.description);
    if (!of.commands.empty())
        page.section("COMMANDS");
    for (size_t i = 0; i < of.commands.size(); i++) {
        const auto &[name, help] = of.commands[i];
        page.subsection(name);
        page.text(fmt::format("{} {}: {}.\n\n{}", of.name, name, help, texts.notes[i]));
        add_options(page, of, name);
    }
    page.section("OPTIONS");
    add_options(page, of, "");
    add_meanings(page, "EXIT STATUS", of.exit_statuses);
    add_meanings(page, "ENVIRONMENT", texts.environment);
    page.section("EXAMPLES");
    page.example(texts.example);
    page.section("SEE ALSO");
    page.text(texts.see_also);
    return std::fputs(page.written().c_str(), stdout) < 0 || std::fflush(stdout) != 0;
}

} // namespace options
