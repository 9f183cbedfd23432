// Commands that show the software accelerator as a whole, snapshot and graph, and reset it. Its faults are in
// commands_fault.cpp, its time and traffic in commands_time.cpp and commands_traffic.cpp.
#include "kelctl/accelerator/drawing_program.h"
#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/commands/commands.h"
#include "kelctl/node/read_back.h"
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
    R"(Deletes all objects and fault rules of the accelerator and sets its time to 0.
The library keeps its own state: its handles are stale, its counts of paths stay.)";

constexpr drawing_program graphviz = {"Graphviz's \"dot\"", "dot", "; --format dot needs no Graphviz"};

// The timestamp thread of a start runs beside the script. Waiting for it makes every output the same.
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

// The session forgets what it made, too: nothing is left to undo.
result reset_node(const invocation &, session &session)
{
    reset_accelerator();
    session.paths.clear();
    session.made.take_all();
    session.traffic = {};
    session.timed = false;
    return {};
}

// The picture itself is the result, also in JSON, so its format has to be text: draw() refuses PNG without a file.
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

// The accelerator labels queues and schedulers with handles only; the session knows their ports and units. A handle is
// a whole label in the graph, between the marks of Graphviz's own markup.
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

// Options are checked first, and the timestamp thread is waited for: two pictures of one node are the same.
result draw(const invocation &asked, session &session)
{
    const std::string &format = asked.given.text("--format");
    const bool to_file = asked.given.has("--output");
    if (format == "png" && !to_file)
        return wrong_use("--format png requires --output");
    settle_if_started(session);
    auto dot = accelerator_graph();
    if (!dot)
        return refused("this software accelerator cannot draw a graph");
    dot = with_names(*std::move(dot), session);
    const drawing drawn = format == "dot" ? drawing{*dot, ""} : drawn_by(graphviz, "-T" + format, *dot);
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
         .help = "Show all objects of the accelerator",
         .details = "With --json: its own document, with counters, the timing unit and faults.",
         .needs_accelerator = true},
        {.name = "graph",
         .variants = {{.run = draw}},
         .help = "Draw schedulers, queues, end points and groups",
         .details = "SVG and PNG require Graphviz's \"dot\".",
         .arguments = {{.name = "--format",
                        .kind = kind::choice({"dot", "svg", "png"}),
                        .help = "format of the picture",
                        .otherwise = "dot"},
                       {.name = "--output",
                        .kind = kind::new_file(),
                        .help = "write the picture to this file; required for PNG",
                        .required = false}},
         .example = "graph --format svg --output node.svg",
         .needs_accelerator = true},
        {.name = "node reset",
         .variants = {{.run = reset_node}},
         .help = "Power-cycle the accelerator",
         .details = reset_details,
         .needs_accelerator = true},
    };
}

} // namespace kelctl
