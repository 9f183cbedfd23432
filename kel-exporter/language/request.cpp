// The table of options. What such a table can say is options/program.h.
#include "kel-exporter/language/request.h"

#include "kelctl/remote/node_names.h"

#include <fmt/core.h>

namespace kel_exporter
{
namespace
{

// A wrong name is a wrong command line, and not a node that never answers.
void add_node(options::request &asked, std::string_view name)
{
    if (const auto wrong = kelctl::wrong_node_name(std::string(name)))
        throw options::wrong_request(*wrong);
    static_cast<request &>(asked).nodes.emplace_back(name);
}

constexpr options::option rows[] = {
    {"--listen", "ADDRESS", "serve HTTP on ADDRESS:PORT or unix:PATH (default: 127.0.0.1:9477)",
     options::into<&request::listen>},
    {"--node", "NAME", "show this node, and further ones with further options (default: all that there are)", add_node},
    options::help_option,
    options::version_option,
};

constexpr options::meaning statuses[] = {
    {"0", "ended by SIGTERM or SIGINT"},
    {"1", "nobody can listen there"},
    {"2", "the command line is wrong"},
};

} // namespace

constinit const options::program program = {
    .name = "kel-exporter",
    .usage = "[OPTION]...",
    .about = "Shows the nodes that \"kelctl up --hold\" holds: as metrics for Prometheus, and as a page.",
    .options = rows,
    .exit_statuses = statuses,
};

request parse_request(std::span<const std::string> words)
{
    request asked;
    const std::vector<std::string> others = options::parse(program, words, asked);
    if (!asked.answer && !others.empty())
        throw options::wrong_request(fmt::format("\"{}\" is no option", others.front()));
    return asked;
}

} // namespace kel_exporter
