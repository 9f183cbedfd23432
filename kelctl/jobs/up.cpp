// What happens between bring-up and take-down: objects, live view, counters; holding the node is hold.cpp.
#include "kelctl/jobs/up.h"

#include "kelctl/input/interruption.h"
#include "kelctl/jobs/bring_up.h"
#include "kelctl/jobs/hold.h"
#include "kelctl/jobs/watch.h"
#include "kelctl/node/load_node_file.h"
#include "kelctl/node/read_back.h"
#include "kelctl/node/statistics.h"
#include "kelctl/views/counter_tables.h"
#include "kelctl/views/node_view.h"

#include <chrono>
#include <utility>

namespace kelctl
{
namespace
{

result objects(std::optional<fields> document, const std::optional<snapshot> &node, const port_knowledge &ports,
               const session &session)
{
    const size_t paths = session.paths.size();
    result shown;
    shown.text = node ? node_view(*node, ports, paths, session.output_page())
                      : line_on(session.output_page(), "This platform cannot show the objects of the node.");
    shown.shown = {{"paths_added", paths}};
    if (session.json()) // it is large
        shown.shown["node"] = document ? *std::move(document) : fields(nullptr);
    return shown;
}

result counters(const port_knowledge &ports, session &session)
{
    result shown = read_statistics(queues_now(), ports, session);
    shown.text = fields_text(statistics_tables(shown.shown), session.output_page()) + "\n";
    shown.shown = fields{{"statistics", std::move(shown.shown)}};
    shown.stage = "reading of counters";
    return shown;
}

// True when all of it could be read. The snapshot is settled first: the timestamp thread writes its offset at any time
// after the start.
bool show_node(bring_up &node, const arguments &given, session &session)
{
    auto document = settled_document();
    const auto held = document ? std::optional(read_snapshot(*document)) : std::nullopt;
    const port_knowledge ports = ports_of(held.value_or(snapshot{}), session.paths);
    node.show(objects(std::move(document), held, ports, session));
    const bool watched = !given.has("--watch") || node.show(watch(node_here(ports, counted_in(given), session),
                                                                  watch_options_in(given), session));
    return node.show(counters(ports, session)) && watched;
}

} // namespace

// All that can be refused is refused before the first command: the options, the file, and a name that another process
// serves. The holder is made before the node for this reason, and is finished after the take-down, so that whoever
// asked for it gets the answer.
result up(const invocation &asked, session &session)
{
    if (auto wrong = wrong_watch(asked.given))
        return refused(*std::move(wrong));
    const std::string &name = asked.given.text("FILE");
    auto [lines, errors, warnings] = load_node_file(name, session.table);
    if (!errors.empty())
        return wrong_input(name, std::move(errors), "nothing was started");

    const bool held = asked.given.has("--hold");
    const interruption_watch interruptions(held && !has_controlling_terminal() ? hangup::asks_for_reload
                                                                               : hangup::ends);
    bring_up node(std::move(lines), name, session);
    std::optional<held_node> holder;
    if (held)
        holder.emplace(asked.given, node, session);
    node.show({.text = "", .warnings = std::move(warnings)});
    const bool is_up = node.up();
    const bool kept = !is_up && asked.given.has("--keep") && node.keep();
    const bool shown = is_up && show_node(node, asked.given, session);
    if (holder && (is_up || kept))
        holder->hold();
    else if (holder)
        holder->give_up();
    const bool clean = node.down();
    if (holder)
        holder->finish();
    return node.take_result(shown && clean);
}

} // namespace kelctl
