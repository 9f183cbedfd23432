// Pictures drawn by Graphviz's program `dot`, where it is installed.
#pragma once

#include <string>

namespace kelctl
{

struct drawing {
    std::string picture;
    std::string refused; // why there is none; empty when there is one
};

// `format` is one of the program's own: "svg", "png".
drawing drawn_by_graphviz(const std::string &dot, const std::string &format);

} // namespace kelctl
