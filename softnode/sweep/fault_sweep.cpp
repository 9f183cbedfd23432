/*
 * fault_sweep.cpp - the runs of a sweep, each in a child process, and the report.
 *
 * A child sends its parent, as JSON, the scenario's result and note, the calls it made, and what is left in the node.
 */
#include "softnode/sweep/fault_sweep.h"

#include "softnode/common/json_text.h"
#include "softnode/faults/fault_codes.h"
#include "softnode/instance/instance.h"
#include "softnode/instance/timing_user.h"
#include "softnode/sweep/child_process.h"
#include "softnode/views/inventory.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <thread>
#include <utility>

namespace softnode
{

namespace
{

using Milliseconds = std::chrono::milliseconds;
using MaybeFault = std::optional<TrialFault>;

Milliseconds time_limit(const softnode_scenario &scenario)
{
    constexpr std::uint32_t usual = 10'000;
    return Milliseconds(scenario.time_limit != 0 ? scenario.time_limit : usual);
}

/* ---- In the child ---- */

std::size_t threads_of_this_process()
{
    std::error_code unreadable;
    const std::filesystem::directory_iterator tasks("/proc/self/task", unreadable);
    return unreadable ? 1 : static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

/*
 * Waits until every thread that the scenario started has ended or rests in the timing unit, so that what the run did
 * is all done. Asking the system for threads also finds those that have not called anything yet. A thread that does
 * neither holds this up until the limit.
 */
void wait_for_rest(std::size_t threads_before, Milliseconds limit)
{
    constexpr Milliseconds between_looks{1}; /* no event reports the end of a thread */
    Instance &here = instance();
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::unique_lock alone(here.mutex);
    while (threads_of_this_process() > threads_before + here.node.timing.users_at_rest() &&
           std::chrono::steady_clock::now() < deadline)
        here.user_moved.wait_for(alone, between_looks);
}

Json list_of(const std::vector<TrialCall> &calls)
{
    Json list = Json::array();
    for (const TrialCall &call : calls)
        list.push_back({{"thread", call.thread}, {"function", call.function}, {"call", call.call}});
    return list;
}

Json list_of(const Inventory &items)
{
    Json list = Json::array();
    for (const Item &item : items)
        list.push_back({{"kind", item.kind}, {"name", item.name}});
    return list;
}

/* The node is the child's own from the start; the fault is over when the scenario has run. */
std::string perform(const softnode_scenario &scenario, const MaybeFault &fault)
{
    start_over();
    Instance &here = instance();
    here.trial.emplace(this_thread(), fault);
    std::thread([] {}).join(); /* a tool that watches the process may add a thread of its own to the first one */
    const std::size_t threads = threads_of_this_process();
    const Milliseconds patience = time_limit(scenario) / 4;

    const std::uint32_t result = scenario.run(scenario.context);
    wait_for_rest(threads, patience);
    with_node([&](Node &) { here.trial->stop(); });
    if (scenario.clean_up)
        scenario.clean_up(scenario.context);
    wait_for_rest(threads, patience);
    const char *note = scenario.describe ? scenario.describe(scenario.context) : nullptr;

    return with_node([&](Node &node) {
        return written({{"result", result},
                        {"note", note ? Json(note) : Json(nullptr)},
                        {"calls", list_of(here.trial->calls())},
                        {"items", list_of(inventory_of(node))}});
    });
}

/* ---- In the parent ---- */

struct Run {
    ChildEnd end = ChildEnd::crashed;
    Json result; /* and the note: null unless it returned */
    Json note;
    std::vector<TrialCall> calls;
    Inventory items;
};

Run read_run(const ChildOutcome &outcome)
{
    Run run{outcome.end, nullptr, nullptr, {}, {}};
    if (outcome.end != ChildEnd::returned)
        return run;
    const Json sent = notation::read_json(outcome.text);
    run.result = sent.at("result");
    run.note = sent.at("note");
    for (const Json &call : sent.at("calls"))
        run.calls.push_back({call.at("thread").number<std::size_t>(), call.at("function").number<std::size_t>(),
                             call.at("call").number<std::uint64_t>()});
    for (const Json &item : sent.at("items"))
        run.items.push_back({item.at("kind").text(), item.at("name").text()});
    return run;
}

std::optional<Run> run_once(const softnode_scenario &scenario, const MaybeFault &fault)
{
    const auto outcome = run_in_child([&] { return perform(scenario, fault); }, time_limit(scenario));
    if (!outcome)
        return std::nullopt;
    return read_run(*outcome);
}

/* Indexed by ChildEnd. */
constexpr std::array<const char *, 3> outcomes{"returned", "crashed", "hung"};
static_assert(outcomes.size() == static_cast<std::size_t>(ChildEnd::hung) + 1);

Json fault_of(const MaybeFault &fault)
{
    if (!fault)
        return {
            {"thread", nullptr}, {"function", nullptr}, {"call", nullptr}, {"code", nullptr}, {"persistent", nullptr}};
    return {{"thread", fault->call.thread},
            {"function", closed_functions[fault->call.function]},
            {"call", fault->call.call},
            {"code", fault->code},
            {"persistent", fault->persistent}};
}

/* A note that is an object is a part of the report, not a string with a document of its own. */
Json read_note(const Json &sent)
{
    if (!sent.is_null())
        if (auto object = notation::try_read_json(sent.text()); object && object->is_object())
            return *std::move(object);
    return sent;
}

/* A run that did not return has left nothing that could be looked at. */
Json report_of(const MaybeFault &fault, const Run &run, const Inventory &expected)
{
    const bool returned = run.end == ChildEnd::returned;
    Json report = fault_of(fault);
    report["outcome"] = outcomes[static_cast<std::size_t>(run.end)];
    report["result"] = run.result;
    report["note"] = read_note(run.note);
    report["left"] = returned ? list_of(items_beyond(expected, run.items)) : Json(nullptr);
    report["missing"] = returned ? list_of(items_beyond(run.items, expected)) : Json(nullptr);
    return report;
}

Json report_of(const std::vector<TrialCall> &calls)
{
    Json list = Json::array();
    for (const TrialCall &call : calls)
        list.push_back({{"thread", call.thread}, {"function", closed_functions[call.function]}, {"call", call.call}});
    return list;
}

std::vector<TrialFault> faults_for(const std::vector<TrialCall> &calls)
{
    std::vector<TrialFault> faults;
    for (const TrialCall &call : calls)
        for (const std::int64_t code : fault_codes(call.function))
            for (const bool persistent : {false, true})
                faults.push_back({call, code, persistent});
    return faults;
}

} // namespace

std::optional<std::string> fault_sweep(const softnode_scenario &scenario, softnode_sweep_watcher *watcher)
{
    const auto undisturbed = run_once(scenario, std::nullopt);
    if (!undisturbed)
        return std::nullopt;

    const std::vector<TrialFault> faults = faults_for(undisturbed->calls);
    Json runs = Json::array();
    for (const TrialFault &fault : faults) {
        if (watcher && !watcher(scenario.context, runs.size(), faults.size()))
            break;
        const auto run = run_once(scenario, fault);
        if (!run)
            return std::nullopt;
        runs.push_back(report_of(fault, *run, undisturbed->items));
    }
    return written({{"calls", report_of(undisturbed->calls)},
                    {"undisturbed", report_of(std::nullopt, *undisturbed, {})},
                    {"planned", faults.size()},
                    {"runs", std::move(runs)}});
}

} // namespace softnode
