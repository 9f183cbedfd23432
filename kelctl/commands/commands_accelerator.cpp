// Looking into the software accelerator, and switching it off and on.
#include "kelctl/accelerator/graphviz.h"
#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/commands/commands.h"
#include "kelctl/node/standing.h"
#include "kelctl/session/session.h"
#include "kelctl/values/file_text.h"
#include "kelctl/values/ic_port.h"
#include "kelctl/views/node_view.h"

#include <fmt/core.h>

#include <utility>

namespace kelctl
{
namespace
{

constexpr std::string_view reset_details =
    R"(The accelerator is empty afterwards, its time 0 and its fault rules gone. What
the library keeps it still has: its handles are stale, counts of paths stay.)";

// What a start set off belongs to what is shown.
void settle_if_started(const session &session)
{
    if (session.timed)
        settle();
}

result show_snapshot(const invocation &, session &session)
{
    settle_if_started(session);
    fields document = accelerator_snapshot().value_or(fields::object());
    const snapshot node = read_snapshot(document);
    const port_knowledge ports = ports_of(node, session.paths);
    return {.shown = std::move(document), .text = node_view(node, ports, std::nullopt, session.output_page())};
}

result reset_node(const invocation &, session &session)
{
    reset_accelerator();
    session.paths.clear();
    session.made.take_all();
    session.traffic = {};
    session.timed = false;
    return {};
}

// PNG is not text, and has no place among what is shown.
result shown_picture(const std::string &format, const std::string &picture)
{
    return {.shown = {{"format", format}, {"graph", picture}}, .text = picture};
}

result written_picture(const std::string &format, const std::string &file, const std::string &picture)
{
    if (auto why = write_file(file, picture))
        return refused(std::move(*why), file);
    return {.shown = {{"format", format}, {"file", file}}};
}

// The accelerator writes a handle beside each queue and scheduler; who asked for them knows what they serve.
void add_name(handle of, const std::string &name, std::string &graph)
{
    const std::string shown = fmt::format(">0x{:x}<", of);
    for (size_t at = 0; (at = graph.find(shown, at)) != std::string::npos; at += shown.size())
        graph.insert(at + 1, name + " ");
}

std::string with_names(std::string graph, const session &session)
{
    const port_knowledge ports = ports_of(current_snapshot().value_or(snapshot{}), session.paths);
    for (const auto &[queue, port] : ports.port_of_queue)
        add_name(queue, port_text(port), graph);
    for (const auto &[scheduler, unit] : ports.unit_of_scheduler)
        add_name(scheduler, unit, graph);
    return graph;
}

result draw(const invocation &asked, session &session)
{
    const std::string &format = asked.given.text("--format");
    const bool to_file = asked.given.has("--output");
    if (format == "png" && !to_file)
        return wrong_use("--format png needs --output as well");
    settle_if_started(session);
    auto dot = accelerator_graph();
    if (!dot)
        return refused("this software accelerator draws no graph");
    dot = with_names(*std::move(dot), session);
    const drawing drawn = format == "dot" ? drawing{*dot, ""} : drawn_by_graphviz(*dot, format);
    if (!drawn.refused.empty())
        return refused(drawn.refused);
    return to_file ? written_picture(format, asked.given.text("--output"), drawn.picture)
                   : shown_picture(format, drawn.picture);
}

} // namespace

std::vector<command> accelerator_commands()
{
    return {
        {.name = "snapshot",
         .variants = {{.run = show_snapshot}},
         .help = "Show everything that the accelerator holds",
         .details = "With --json: its own document, with counters, the timing unit and faults.",
         .needs_accelerator = true},
        {.name = "graph",
         .variants = {{.run = draw}},
         .help = "Draw schedulers, queues, end points and groups",
         .details = "SVG and PNG are drawn by Graphviz's \"dot\", which has to be installed.",
         .arguments = {{.name = "--format",
                        .kind = kind::choice({"dot", "svg", "png"}),
                        .help = "of the picture",
                        .otherwise = "dot"},
                       {.name = "--output",
                        .kind = kind::file(),
                        .help = "write the picture there; PNG has to be",
                        .required = false}},
         .example = "graph --format svg --output node.svg",
         .needs_accelerator = true},
        {.name = "node reset",
         .variants = {{.run = reset_node}},
         .help = "Switch the accelerator off and on",
         .details = reset_details,
         .needs_accelerator = true},
    };
}

} // namespace kelctl
