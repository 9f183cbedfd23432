// The loop: let time pass, take a sample, show the difference. Samples and rates are made in node/, so that this
// process and another one are watched in the same way.
#include "kelctl/jobs/watch.h"

#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/input/interruption.h"
#include "kelctl/node/rates.h"
#include "kelctl/node/read_back.h"
#include "kelctl/remote/messages.h"
#include "kelctl/remote/result_message.h"
#include "kelctl/results/fields_view.h"
#include "kelctl/views/counter_tables.h"
#include "kelctl/views/queue_history.h"
#include "terminal/redrawn_block.h"
#include "terminal/terminal.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kelctl
{
namespace
{

using std::chrono::milliseconds;

// In milliseconds, as waits are; none is cut short.
milliseconds rounded_up(uint64_t time)
{
    return std::chrono::ceil<milliseconds>(std::chrono::nanoseconds(time));
}

// The samples of one watch.
class live_view
{
public:
    live_view(const watched_node &node, const watch_options &options, session &session)
        : node_(node), options_(options), session_(session)
    {
    }

    // Ends as watch() says. The first sample shows whether there is anything to watch, and all times count from it.
    void run()
    {
        if (!take())
            return;
        if (last_.shown.at("queues").empty() && last_.shown.at("pceps").empty()) {
            last_ = refused("nothing to watch: no such queue or PCEP");
            return;
        }
        first_ = last_.shown;
        history_.add(0, first_);
        while (elapsed_ < options_.end && !unwanted_within(wait()) && pass()) {
            const fields before = std::move(last_.shown);
            if (!take())
                break;
            elapsed_ = time_between(first_, last_.shown, base_);
            history_.add(elapsed_, last_.shown);
            show(sorted_rates(rates_between(first_, before, last_.shown), options_.sorted_by));
        }
        block_.leave();
    }

    // How the watch ended, and the picture of it.
    result outcome()
    {
        last_.text = "";
        last_.shown = fields{{"watched", {{"nanoseconds", elapsed_}}}};
        last_.stage = "watch";
        return std::move(last_);
    }

    std::string plot() const
    {
        return queue_plot(history_.steps(), {base_ == time_base::virtual_time ? "virtual time" : "time", "mean delay"});
    }

private:
    bool take()
    {
        last_ = node_.sample();
        return last_.status == exit_done;
    }

    // Real time does not pass beyond the end while nobody looks.
    milliseconds wait() const
    {
        const bool is_virtual = base_ == time_base::virtual_time;
        return rounded_up(is_virtual ? options_.interval : std::min(options_.interval, options_.end - elapsed_));
    }

    // No step goes beyond the end, so that as much time passes as was asked for.
    bool pass() const
    {
        return !node_.pass || node_.pass(std::min(options_.step, options_.end - elapsed_));
    }

    void show(const fields &rates)
    {
        if (session_.json())
            session_.stream({{"watch", rates}});
        else if (!session_.quiet())
            block_.draw(fields_text(rates_tables(rates), session_.output_page()));
    }

    const watched_node &node_;
    const watch_options &options_;
    session &session_;
    const time_base base_ = node_.pass ? time_base::virtual_time : time_base::real_time;
    terminal::redrawn_block block_{stdout, terminal::is_terminal(stdout) && !session_.tracing()};
    queue_history history_;
    fields first_ = {};
    result last_ = {};
    uint64_t elapsed_ = 0; // nanoseconds
};

} // namespace

watched_node node_here(const port_knowledge &ports, const counted &which, session &session)
{
    watched_node here = {
        .sample = [&ports, which, &session] { return take_sample(queues_now(), ports, which, session); }};
    if (on_software_accelerator())
        here.pass = [&session](uint64_t time) { return session.traffic.pass(time) != 0; };
    return here;
}

watched_node node_elsewhere(const counted &which, session &session)
{
    watched_node there = {
        .sample = [which, &session] { return result_of(session.elsewhere->ask(question_of(which)).at("result")); }};
    const result first = there.sample();
    if (const fields *passed = first.shown.find("virtual"); passed && !passed->is_null())
        there.pass = [&session](uint64_t time) {
            invocation advance = invocation_of(*session.table.find("time advance"));
            advance.given.set("TIME", static_cast<int64_t>(time));
            return session.elsewhere->carry_out(advance, {session.output_page()}).done.status == exit_done;
        };
    return there;
}

watch_options watch_options_in(const arguments &given)
{
    watch_options options;
    if (given.has("--interval"))
        options.interval = given.number<uint64_t>("--interval");
    if (given.has("--step"))
        options.step = given.number<uint64_t>("--step");
    if (given.has("--for"))
        options.end = given.number<uint64_t>("--for");
    if (given.has("--sort"))
        options.sorted_by = given.text("--sort");
    if (given.has("--plot"))
        options.plot = given.text("--plot");
    return options;
}

counted counted_in(const arguments &given)
{
    counted which;
    if (given.has("--queue"))
        which.port = given.number<int32_t>("--queue");
    if (given.has("--pcep"))
        which.pcep = given.id("--pcep");
    return which;
}

std::optional<std::string> wrong_watch(const arguments &given)
{
    if (given.has("--step") && !on_software_accelerator())
        return "--step requires the software accelerator";
    return given.has("--plot") ? no_plots() : std::nullopt;
}

result watch(const watched_node &node, const watch_options &options, session &session)
{
    live_view view(node, options, session);
    view.run();
    result done = view.outcome();
    if (options.plot.empty() || done.status != exit_done)
        return done;
    result drawn = draw_plot(options.plot, view.plot());
    drawn.shown = std::move(done.shown);
    return drawn;
}

result watch_session(const invocation &asked, session &session)
{
    if (auto wrong = wrong_watch(asked.given))
        return refused(*std::move(wrong));
    if (session.elsewhere)
        return watch(node_elsewhere(counted_in(asked.given), session), watch_options_in(asked.given), session);
    const port_knowledge ports = ports_of(queues_now(), session.paths);
    return watch(node_here(ports, counted_in(asked.given), session), watch_options_in(asked.given), session);
}

} // namespace kelctl
