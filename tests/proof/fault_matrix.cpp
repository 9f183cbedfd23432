// Every exported operation, in every state that changes its way, with every outside call that it makes there failing in
// every way that call can fail: what happens, and what the operations afterwards still see. The states and the
// operations are the table below; the calls are those that the model says it makes.
#include "explained.h"
#include "faults.h"
#include "model.h"
#include "requests.h"
#include "transcript.h"
#include "trial.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <ostream>

namespace proof
{
namespace
{

struct state {
    const char *name;
    script before;
    bool needs_own_process = false; // as it begins where the library cannot be taken back to
};

script groups(uint32_t first, uint32_t last)
{
    script result;
    for (uint32_t id = first; id <= last; ++id)
        result.push_back(about(operation::group_add, id));
    return result;
}

// An MTU and an EtherType of more than 16 bits, and settings of more than 4.
step global_params()
{
    step result = about(operation::global_param_set, 70'000, 0x1'88B5);
    result.format = 0x23'1A;
    return result;
}

const step pcep_start = plain(operation::pcep_start);
const step add_shaper = path(operation::add_shaper, on_ob, 6);

// ---- The states of the EBCOM service ----

const state nothing = {"nothing started", {}};
const state never_started = {"never started", {}, true};
const state started = {"started", {ebcom_start()}};
const state started_twice = {"started twice", {ebcom_start(), ebcom_start()}};
const state thread_over = {"thread over", {failing_on_thread(ebcom_start(), "vorn_tu_init", -1)}};
const state half_started = {"third level missing", {failing(ebcom_start(), "ork_qos_scheduler_create", -1, 3)}};
const state without_table = {"no memory for the table", {failing(ebcom_start(), "g_hash_table_new_full", 1)}, true};
const state only_schedulers = {"schedulers without a start", {plain(operation::init_qos)}, true};
const state path_once = {"path once", {ebcom_start(), add(on_ob, 6)}};
const state path_twice = {"path twice", {ebcom_start(), add(on_ob, 6), add(on_ob, 6)}};
const state path_on_two_ports = {"path on two ports", {ebcom_start(), add(on_ob, 12), add(on_ob, 6)}};
const state shared = {"shared queue", {ebcom_start(), add(also_on_ob, 6), add(on_ob, 6)}};
const state mismatching = {"mismatching queue", {ebcom_start(), add(on_ob, 6), queue_record(9, 0, 3)}};
const state stopped = {"stopped", {ebcom_start(), add(on_ob, 6), plain(operation::ebcom_stop)}};
const state restarted = {"started again", {ebcom_start(), add(on_ob, 6), plain(operation::ebcom_stop), ebcom_start()}};
const state rolled_back = {"queue rolled back", {ebcom_start(), failing(add(on_ob, 6), "malloc", 1)}};
const state shaper_only = {"shaper without path", {plain(operation::init_qos), add_shaper}};
const state every_port = {
    "queues on five groups",
    {ebcom_start(), add(on_ob, 0), add(on_ob, 42), add(on_ob, 36), add(on_ob, 30), add(on_ob, 24), add(on_ob, 6)}};
const state own_paths = {"paths to every location", {ebcom_start(), add(on_eioa, 7), add(on_cpu, 7), add(on_hsfp, 7)}};

// ---- The states of the PCEP service ----

const state pcep_nothing = {"nothing started", {}};
const state pcep_up = {"started", {pcep_start}};
const state unicast = {"a unicast PCEP", {pcep_start, pcep(7, on_ob)}};
const state bound = {"a bound PCEP", {pcep_start, pcep(7, on_hsfp)}};
const state half_bound = {"a PCEP whose binding failed", {pcep_start, failing(pcep(7, on_hsfp), "ork_bind", -1)}};
const state group = {"a group", {pcep_start, about(operation::group_add, 7)}};
const state unicast_and_group = {"a PCEP and a group", {pcep_start, pcep(7, on_ob), about(operation::group_add, 9)}};
const script one_member = {pcep_start, pcep(7, on_ob), about(operation::group_add, 9),
                           about(operation::member_add, 9, 7)};
const state members = {"a group with a member", one_member};
const state full_group = {"a group with 16 members", one_member + times(15, about(operation::member_add, 9, 7))};
const state most_groups = {"29 groups", script{pcep_start} + groups(101, 129)};
const state all_groups = {"30 groups", script{pcep_start} + groups(101, 130)};
const state wrapped = {"group counter wrapped", {pcep_start, about(operation::group_rem, 7)}};
const state pcep_stopped = {"stopped", {pcep_start, pcep(7, on_hsfp), plain(operation::pcep_stop)}};
const state pcep_restarted = {"started again", {pcep_start, about(operation::group_add, 9), pcep_start}};
const state mp_known = {"own MP known", {mpid("7"), text(operation::classify, on_mp_7), mpid("8")}, true};
const state mp_set = {"own MP to be read", {mpid("263")}, true};

struct row {
    step tried;
    std::vector<state> states;
};

const std::vector<state> ebcom_up = {started,     path_once, path_twice, path_on_two_ports, shared,
                                     mismatching, stopped,   restarted,  rolled_back,       half_started};
const std::vector<state> some_ebcom = {nothing, started};
const std::vector<state> pcep_states = {pcep_nothing, pcep_up,           unicast,      bound,         half_bound,
                                        group,        unicast_and_group, members,      full_group,    most_groups,
                                        all_groups,   wrapped,           pcep_stopped, pcep_restarted};

const std::vector<row> matrix = {
    {ebcom_start(),
     {never_started, nothing, started, started_twice, thread_over, half_started, without_table, path_once, stopped}},
    {plain(operation::ebcom_stop),
     {nothing, started, without_table, half_started, path_once, shared, stopped, rolled_back, every_port}},
    {event(operation::timing_event, 6), {started}},
    {event(operation::timing_event, 5), {started}},
    {event(operation::timing_event, 6, 1), {started}},
    {event(operation::timing_failure, static_cast<uint32_t>(-4)), {started}},
    {event(operation::timing_failure, 3), {started}},
    {event(operation::timing_failure, 0), {started}},
    {reading(operation::convert_cycles, 10, 300'000), some_ebcom},
    {reading(operation::convert_cycles, 10, 0), some_ebcom},
    {global_params(), some_ebcom},
    {plain(operation::capabilities_get), some_ebcom},
    {plain(operation::interface_create), some_ebcom},
    {plain(operation::interface_delete), some_ebcom},
    {path(operation::queue_handle_get, on_ob, 6), {nothing, path_once, path_on_two_ports, stopped, rolled_back}},
    {path(operation::scheduler_handle_get, on_ob, 6), {nothing, path_once, path_on_two_ports, stopped, rolled_back}},
    {plain(operation::init_qos), {nothing, started, half_started, path_once}},
    {plain(operation::deinit_qos), {nothing, started, half_started, path_once, rolled_back, every_port}},
    {add_shaper, {nothing, started, path_once, shared, mismatching, shaper_only, rolled_back}},
    {failing(add_shaper, "malloc", 1), {nothing, started, path_once}},
    {failing(failing(add_shaper, "malloc", 1), "kel_init_qos_queue_rem", 3, 1, 3), {started}},
    {path(operation::add_shaper, on_ob, 12, 1000, 64, 0x0100'0001), {started, path_once}},
    {path(operation::add_shaper, on_ob, 14), {started}},
    {path(operation::add_shaper, on_ob, -1), {started}},
    {path(operation::remove_shaper, on_ob, 6), {nothing, path_once, path_twice, shared, shaper_only, rolled_back}},
    {path(operation::remove_shaper, on_ob, 43), {path_once}},
    {add(on_ob, 6), ebcom_up},
    {add(on_ob, 6), {never_started, only_schedulers, without_table}},
    {failing(add(on_ob, 6), "malloc", 1), {started, path_once}},
    {add(on_eioa, 6), {started, own_paths}},
    {add(on_eioa, 0), {started}},
    {add(on_cpu, 13), {started, own_paths}},
    {add(on_hsfp, 25), {started}},
    {add(on_ob, 14), {started, path_once}},
    {add(on_ob, 6),
     {{"location 0", {ebcom_start(), classify_all_as(0)}},
      {"location 5", {ebcom_start(), classify_all_as(5)}},
      {"location 6", {ebcom_start(), classify_all_as(6)}}}},
    {remove(on_ob, 6), ebcom_up},
    {remove(on_ob, 6), {never_started, only_schedulers, without_table}},
    {remove(on_eioa, 7), {own_paths}},
    {remove(on_cpu, 7), {own_paths}},
    {remove(on_ob, 7), {path_once, path_on_two_ports}},
    {remove(on_ob, 14), {path_once}},
    {remove(on_ob, 6), {{"location 5", path_once.before + script{classify_all_as(5)}}}},
    {path(operation::port_to_mac_chan, on_ob, 0), {nothing}},
    {path(operation::port_to_mac_chan, on_ob, 6), {nothing}},
    {plain(operation::qos_handle_dump), {nothing, started, every_port}},
    {plain(operation::global_stats), some_ebcom},
    {text(operation::global_text, on_ob), some_ebcom},
    {text(operation::global_text, on_ob, 3, 5), some_ebcom},
    {text(operation::global_text_second_name, on_ob, 0x1FF), some_ebcom},
    {text(operation::queue_stats, on_ob), {nothing, path_once, path_on_two_ports, stopped}},
    {text(operation::queue_text, on_ob), {nothing, path_once}},
    {text(operation::queue_text_2, on_ob), {nothing, path_once}},
    {text(operation::queue_text_second_name, on_ob, 0x1FF), {nothing, path_once}},
    {plain(operation::set_burst_stats), some_ebcom},
    {text(operation::classify, on_ob), {nothing}},
    {text(operation::classify, on_hsfp), {nothing}},
    {text(operation::classify, on_eioa), {nothing}},
    {text(operation::classify, on_cpu), {nothing, mp_set}},
    {text(operation::classify, on_mp_7), {nothing, mp_set, mp_known}},
    {text(operation::classify, on_mp_0), {nothing, mp_set}},
    {pcep_start, pcep_states},
    {plain(operation::pcep_stop), pcep_states},
    {plain(operation::pcep_dump), pcep_states},
    {plain(operation::multicast_hook), {pcep_nothing, pcep_up}},
    {pcep(7, on_ob), pcep_states},
    {pcep(7, on_hsfp, on_mp_7), {pcep_nothing, pcep_up, half_bound, pcep_stopped, mp_set}},
    {pcep(7, on_mp_7, on_cpu), {pcep_up, mp_known}},
    {pcep(511, on_eioa), {pcep_up, {"location 6", {pcep_start, classify_all_as(6)}}}},
    {pcep(0, on_ob), {pcep_up}},
    {pcep(512, on_ob), {pcep_up}},
    {about(operation::pcep_rem, 7), pcep_states},
    {about(operation::pcep_rem, 0), {pcep_up}},
    {about(operation::pcep_rem, 512), {pcep_up}},
    {about(operation::group_add, 9), pcep_states},
    {about(operation::group_add, 0), {pcep_up}},
    {about(operation::group_add, 512), {pcep_up}},
    {about(operation::group_rem, 9), pcep_states},
    {about(operation::group_rem, 7), pcep_states},
    {about(operation::group_rem, 0), {pcep_up}},
    {about(operation::group_rem, 512), {pcep_up}},
    {about(operation::member_add, 9, 7), pcep_states},
    {about(operation::member_add, 7, 9), {unicast_and_group, members}},
    {about(operation::member_add, 9, 9), {unicast_and_group}},
    {about(operation::member_add, 9, 512), {unicast_and_group}},
    {about(operation::member_add, 512, 7), {unicast_and_group}},
    {about(operation::member_rem, 9, 7), pcep_states},
    {about(operation::member_rem, 7, 7), {unicast_and_group}},
    {about(operation::member_rem, 9, 8), {unicast_and_group}},
    {about(operation::pcep_driver_kit_stats, 7), pcep_states},
    {about(operation::pcep_driver_kit_stats, 512), {pcep_up}},
    {about(operation::pcep_stats, 7), pcep_states},
    {about(operation::pcep_stats_second_name, 7), {unicast, group}},
    {text(operation::pcep_text, on_ob), pcep_states},
    {text(operation::pcep_text_second_name, on_ob, 0x1FF), {unicast, group}},
    {plain(operation::tracepoint), {nothing}},
    {about(operation::abort, 100, 42), {nothing}},
    {about(operation::abort, 150, 42), {nothing}},
};

// ---- What the operations afterwards still see ----

// Everything that can be read; how often each path is counted; what is left to be released.
const script ebcom_aftermath = {classify_all_as(std::nullopt),
                                path(operation::queue_handle_get, on_ob, 6),
                                path(operation::scheduler_handle_get, on_ob, 6),
                                path(operation::queue_handle_get, also_on_ob, 6),
                                path(operation::queue_handle_get, on_eioa, 6),
                                plain(operation::qos_handle_dump),
                                remove(on_ob, 6),
                                remove(on_ob, 6),
                                remove(on_ob, 6),
                                remove(on_eioa, 6),
                                plain(operation::deinit_qos),
                                plain(operation::qos_handle_dump)};

// The table; whether the service is attached; the members; how many groups there is room for.
const script pcep_aftermath = script{plain(operation::pcep_dump), about(operation::member_rem, 9, 7),
                                     about(operation::group_rem, 9), about(operation::pcep_rem, 7), pcep(7, on_hsfp)} +
                              groups(401, 431) + script{plain(operation::pcep_dump)};

const script &aftermath_of(operation what)
{
    const bool of_pceps = what >= operation::pcep_start && what <= operation::pcep_text_second_name;
    return of_pceps ? pcep_aftermath : ebcom_aftermath;
}

// ---- The combinations ----

size_t combinations;

// The step as it is, and with each of the outside calls that it makes in this state failing in each way.
std::vector<step> ways(const script &before, const step &tried)
{
    model model(false);
    for (const step &each : before)
        model.perform(each);
    if (!model.allows(tried))
        return {};
    model.perform(tried);
    std::vector<step> result = {tried};
    for (const made_call &call : model.calls())
        for (const int64_t code : codes_of(call.function))
            result.push_back(failing(tried, call.function, code, call.call));
    for (const made_call &call : model.thread_calls())
        for (const int64_t code : codes_of(call.function))
            result.push_back(failing_on_thread(tried, call.function, code, call.call));
    return result;
}

// KEL_TEST_SAMPLE: one fault in so many is tried, through all operations and states, other ones traced than not. Without it
// all are.
std::vector<step> sampled(std::vector<step> all)
{
    const char *const wanted = getenv("KEL_TEST_SAMPLE");
    const size_t one_in = wanted ? std::stoul(wanted) : 1;
    static size_t seen = transcript::traced() ? 0 : one_in / 2;
    const step *const undisturbed = all.data();
    std::erase_if(all, [&](const step &each) { return &each != undisturbed && seen++ % one_in != 0; });
    return all;
}

std::string context(const script &before, const step &tried)
{
    return "after:\n" + text_of(before) + "tried:\n    " + text_of(tried) + "\n";
}

// What happens, and what is seen afterwards.
std::string difference(trial &trial, const script &before, const step &tried)
{
    const std::string found = trial.difference(before + script{tried} + aftermath_of(tried.what));
    return found.empty() ? "" : context(before, tried) + found;
}

// One after the other in one process, which is taken back each time.
std::string difference_in_any_way(const script &before, const std::vector<step> &all)
{
    trial trial;
    for (const step &each : all) {
        std::string found = difference(trial, before, each);
        if (found.empty() && !(found = trial.difference_on_way_back()).empty())
            found = context(before, each) + "on the way back: " + found;
        if (!found.empty())
            return found;
    }
    return "";
}

void try_all(const state &state, const step &tried)
{
    const std::vector<step> all = sampled(ways(state.before, tried));
    combinations += all.size();
    if (!state.needs_own_process) {
        EXPECT_EQ(found_in_own_process([&] { return difference_in_any_way(state.before, all); }), "");
        return;
    }
    for (const step &each : all) {
        const auto work = [&] {
            trial trial;
            return difference(trial, state.before, each);
        };
        const std::string found = found_in_own_process(work);
        EXPECT_EQ(found, "");
        if (!found.empty())
            return;
    }
}

class FaultMatrix : public testing::TestWithParam<size_t>
{
};

INSTANTIATE_TEST_SUITE_P(Row, FaultMatrix, testing::Range(size_t{0}, matrix.size()));

TEST_P(FaultMatrix, ModelAndLibraryAgree)
{
    const row &row = matrix[GetParam()];
    for (const state &state : row.states) {
        SCOPED_TRACE(state.name);
        try_all(state, row.tried);
        if (HasFailure())
            return; // one difference tells enough
    }
}

size_t named_faults;

// The records are those of the library, as the test above shows: they name what failed, and kel-trace reads it.
TEST_P(FaultMatrix, RecordedFailureIsExplained)
{
    const row &row = matrix[GetParam()];
    for (const state &state : row.states) {
        SCOPED_TRACE(state.name);
        for (const step &each : sampled(ways(state.before, row.tried))) {
            model model(true);
            for (const step &before : state.before)
                model.perform(before);
            ASSERT_EQ(unexplained(model.perform(each), each, named_faults), "") << context(state.before, each);
        }
    }
}

// A matrix that leaves an operation out would prove nothing about it.
TEST(FaultMatrixItself, HasARowForEveryExportedOperation)
{
    for (size_t n = 0; n <= static_cast<size_t>(operation::last_exported); ++n) {
        const auto what = static_cast<operation>(n);
        EXPECT_TRUE(std::ranges::any_of(matrix, [what](const row &row) { return row.tried.what == what; }))
            << text_of(plain(what));
    }
}

// A comparison that cannot fail would prove nothing at all.
TEST(FaultMatrixItself, NoticesWhatTheModelDoesNotKnowOf)
{
    const std::string found = found_in_own_process([] {
        trial trial;
        setenv("MPID", "7", 1);
        return trial.difference({text(operation::classify, on_mp_7)});
    });
    EXPECT_NE(found.find("outputs expected:\n0400000000000000\noutputs found:\n0100000001000000\n"), std::string::npos)
        << found;
}

} // namespace
} // namespace proof

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    transcript::begin();
    const int failed = RUN_ALL_TESTS();
    printf("fault matrix: %zu combinations, tracing %s; %zu faults that records name\n", proof::combinations,
           transcript::traced() ? "on" : "off", proof::named_faults);
    return failed;
}
