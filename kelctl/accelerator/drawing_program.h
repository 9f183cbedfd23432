// Pictures drawn by another program, where it is installed. Whoever needs a picture names the program and its argument.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

struct drawing {
    std::string picture;
    std::string refused; // why there is none; empty when there is one
};

// A program that reads from standard input and draws on standard output. Its texts must outlive it.
struct drawing_program {
    std::string_view title; // its name in messages: "Graphviz's \"dot\""
    const char *name;
    std::string_view instead = {}; // what to do without it: "; --format dot needs no Graphviz"
};

// That it is not installed; none: it is. For what takes long: ask before, not after.
std::optional<std::string> missing(const drawing_program &program);

// What the program writes on standard output, with this one argument, of what it reads on standard input. Waits for its
// end.
drawing drawn_by(const drawing_program &program, const std::string &argument, const std::string &input);

} // namespace kelctl
