// Pictures drawn by Graphviz's program `dot`, where it is installed.
#pragma once

#include "kelctl/accelerator/drawing_program.h"

namespace kelctl
{

// `format` is one of the program's own: "svg", "png".
drawing drawn_by_graphviz(const std::string &dot, const std::string &format);

} // namespace kelctl
