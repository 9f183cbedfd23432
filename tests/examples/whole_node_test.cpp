// examples/whole_node.c, with each of its calls failing once: what it leaves is only what no operation can remove.
#include "softnode/softnode.h"
#include "tests/notation/print.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <string>

extern "C" int whole_node_main(void);

namespace
{

using json = notation::document;

uint32_t run_quietly(void * /*context*/)
{
    return std::freopen("/dev/null", "w", stdout) ? static_cast<uint32_t>(whole_node_main()) : 100;
}

json sweep_report()
{
    softnode_scenario scenario{};
    scenario.run = run_quietly;
    scenario.time_limit = 4000; // a timestamp thread that ends before it uses the timing unit is waited for in vain
    char *const text = softnode_fault_sweep(&scenario);
    const json report = notation::read_json(text);
    std::free(text);
    return report;
}

// The timestamp thread lives as long as the process.
std::set<std::string> kinds_left(const json &run)
{
    std::set<std::string> kinds;
    for (const json &object : run.at("left"))
        if (object.at("kind") != "timing connection")
            kinds.insert(object.at("kind").text());
    return kinds;
}

// "function: kinds" of all runs of which something is left; `down` chooses those that fail on the way down.
std::set<std::string> leaving(const json &report, bool down)
{
    std::map<std::string, uint32_t> calls_up; // of each function
    for (const json &call : report.at("calls")) {
        if (call.at("thread") == 0)
            ++calls_up[call.at("function").text()];
        if (call.at("function") == "ork_ebcom_multicast_member_add")
            break;
    }
    std::set<std::string> found;
    for (const json &run : report.at("runs")) {
        const bool on_the_way_down =
            run.at("thread") == 0 && run.at("call").number<uint32_t>() > calls_up[run.at("function").text()];
        if (run.at("persistent").boolean() || on_the_way_down != down)
            continue;
        for (const std::string &kind : kinds_left(run))
            found.insert(run.at("function").text() + ": " + kind);
    }
    return found;
}

} // namespace

TEST(WholeNodeExample, LeavesOnlyWhatNoOperationCanRemove)
{
    const json report = sweep_report();
    ASSERT_EQ(report.at("undisturbed").at("result"), 0);
    ASSERT_THAT(kinds_left(report.at("undisturbed")), testing::IsEmpty());
    for (const json &run : report.at("runs"))
        EXPECT_EQ(run.at("outcome"), "returned") << to_json(run);

    EXPECT_THAT(leaving(report, false), testing::UnorderedElementsAre("ork_bind: pcep"));
    EXPECT_THAT(leaving(report, true),
                testing::UnorderedElementsAre("kel_init_attach: scheduler", "ork_qos_scheduler_delete: scheduler",
                                              "ork_unbind: binding", "ork_unbind: pcep", "ork_ebcom_pcep_delete: pcep",
                                              "ork_ebcom_multicast_group_delete: group"));
}
