// Waiting for signals and for other processes. How requests are answered is remote/node_server.cpp, what is written
// to the service manager socket/service_manager.cpp.
#include "kelctl/jobs/hold.h"

#include "kelctl/input/interruption.h"
#include "kelctl/remote/node_names.h"
#include "kelctl/results/failure_report.h"
#include "kelctl/results/result_document.h"
#include "kelctl/results/result_view.h"
#include "terminal/terminal.h"
#include "text/printable.h"

#include <fmt/core.h>

#include <chrono>
#include <optional>
#include <utility>

namespace kelctl
{
namespace
{

constexpr std::chrono::hours longest_wait(1); // at a time: poll() takes milliseconds as an int

std::optional<std::string> group_in(const arguments &given)
{
    return given.has("--group") ? std::optional(given.text("--group")) : std::nullopt;
}

// The first thing that went wrong, and what came of it.
std::string problem_of(const result &done)
{
    if (!done.errors.empty())
        return fmt::format("{}\n{}", text_of(done.errors.front()), done.remark);
    if (!done.failures.empty())
        return fmt::format("{}{}", report_of(done.failures.front(), {.paint = terminal::painter(false)}), done.remark);
    return done.remark;
}

} // namespace

std::string name_of_node(const arguments &given)
{
    return given.has("--name") ? given.text("--name") : node_name_for(given.text("FILE"));
}

held_node::held_node(const arguments &given, bring_up &node, session &session)
    : name_(name_of_node(given)), file_(given.text("FILE")), node_(node), session_(session),
      served_(address_for(name_, group_in(given)), file_, session, [this] { return take_down(); })
{
}

// The last words for a person who asks the service manager: why there is no node.
void held_node::give_up()
{
    manager_.status(problem_of(node_.shown()));
}

// The manager hears that the process is alive after each operation and after each wait, so that a long request does
// not look like a hang.
void held_node::hold()
{
    session_.on_made = [this] { manager_.alive(); };
    manager_.ready(node_.kept() ? problem_of(node_.shown()) : "the node is up");
    if (session_.json())
        session_.stream({{"holding", {{"paths_added", session_.paths.size()}, {"name", name_}}}});
    else
        node_.show({.text = fmt::format("Others reach the node with kelctl --node {}\n"
                                        "The node is up until Ctrl-C.",
                                        text::without_controls(name_))});
    while (!session_.finished && !unwanted_within(manager_.rest_within(longest_wait), served_.number())) {
        manager_.alive();
        served_.serve();
        if (take_reload())
            reload();
    }
    manager_.stopping();
}

void held_node::finish()
{
    served_.finish();
}

// Asked by another process. Parts have been shown here and go to the asking process as well, so nothing is left to
// show.
result held_node::take_down()
{
    if (node_.kept())
        return refused("the node is kept as it is: nothing takes down what was made before the failure");
    const bool clean = node_.down();
    return {.status = clean ? exit_done : exit_operation_failed, .shown_already = true};
}

// The node's own file as it is now. Whatever comes of it, the node goes on. "apply" puts the old node back when it
// fails.
void held_node::reload()
{
    manager_.reloading(fmt::format("applying {}", file_));
    const command *row = session_.table.find("apply");
    invocation apply = invocation_of(*row);
    apply.given.set("FILE", file_);
    set_defaults(*row, apply.given);
    result done = session_.perform(apply);
    session_.stream(document_of(done, apply, {}, session_.tracer_installed()));
    manager_.ready(done.status == exit_done ? fmt::format("the node is that of {}", file_)
                                            : fmt::format("not applied: {}", problem_of(done)));
    node_.show(std::move(done));
}

} // namespace kelctl
