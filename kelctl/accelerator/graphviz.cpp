// How `dot` is asked.
#include "kelctl/accelerator/graphviz.h"

namespace kelctl
{

drawing drawn_by_graphviz(const std::string &dot, const std::string &format)
{
    return drawn_by({"Graphviz's \"dot\"", "dot", "; --format dot needs no Graphviz"}, "-T" + format, dot);
}

} // namespace kelctl
