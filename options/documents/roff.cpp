// Escapes text and writes requests of the man macros. Knows no command and no key.
#include "options/documents/roff.h"

#include <fmt/core.h>

#include <algorithm>
#include <cctype>

namespace options
{
namespace
{

// An unescaped hyphen prints as a typographic one, which cannot be pasted into a shell; backslashes and quotes would
// begin requests.
std::string escaped(std::string_view text)
{
    std::string made;
    for (const char c : text)
        made += c == '\\' ? "\\e" : c == '-' ? "\\-" : c == '"' ? "\\(dq" : std::string(1, c);
    return made;
}

// A line that begins with a dot or an apostrophe would be a request; \& before it prints nothing.
std::string line_of(std::string_view text)
{
    const bool request = text.starts_with('.') || text.starts_with('\'');
    return fmt::format("{}{}\n", request ? "\\&" : "", escaped(text));
}

std::string in_capitals(std::string_view text)
{
    std::string made(text);
    std::ranges::transform(made, made.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return made;
}

} // namespace

roff_page::roff_page(std::string_view name, int section_number, std::string_view program, std::string_view version,
                     std::string_view about)
    : written_(fmt::format(".TH \"{0}\" {1} \"\" \"{2} {3}\" \"{2}\"\n", in_capitals(name), section_number,
                           escaped(program), version))
{
    section("NAME");
    written_ += fmt::format("{} \\- {}\n", escaped(name), escaped(about));
}

void roff_page::section(std::string_view heading)
{
    written_ += fmt::format(".SH \"{}\"\n", escaped(heading));
}

void roff_page::subsection(std::string_view heading)
{
    written_ += fmt::format(".SS \"{}\"\n", escaped(heading));
}

void roff_page::text(std::string_view text)
{
    lines(text, ".PP\n");
}

void roff_page::item(std::string_view tag, std::string_view meaning)
{
    written_ += fmt::format(".TP\n\\fB{}\\fR\n", escaped(tag));
    lines(meaning, ".IP\n");
}

void roff_page::example(std::string_view text)
{
    written_ += ".PP\n.RS 4\n.EX\n";
    lines(text, "\n");
    written_ += ".EE\n.RE\n";
}

void roff_page::lines(std::string_view text, std::string_view for_an_empty_one)
{
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        written_ += line.empty() ? std::string(for_an_empty_one) : line_of(line);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

} // namespace options
