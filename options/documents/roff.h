// A manual page as it is built up: text in, requests of the man macros out.
#pragma once

#include <string>
#include <string_view>

namespace options
{

class roff_page
{
public:
    // `program` is whose page it is, `about` the line of NAME: "control process of a node".
    roff_page(std::string_view name, int section, std::string_view program, std::string_view version,
              std::string_view about);

    // Headings: .SH and .SS. What follows belongs to the latest one.
    void section(std::string_view heading);
    void subsection(std::string_view heading);

    // Text whose lines are filled; an empty line begins a paragraph.
    void text(std::string_view text);

    // A word or a form, and what it means, indented.
    void item(std::string_view tag, std::string_view meaning);

    // Lines as they are.
    void example(std::string_view lines);

    const std::string &written() const
    {
        return written_;
    }

private:
    void lines(std::string_view text, std::string_view for_an_empty_one);

    std::string written_;
};

} // namespace options
