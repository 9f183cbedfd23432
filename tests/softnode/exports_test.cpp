/*
 * exports_test.cpp - what the shared library offers, read from the file itself.
 */
#include "command.h"

#include "softnode/faults/closed_functions.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

namespace
{

/* The closed functions that answer with a text instead of a code. */
const std::set<std::string> text_functions{"kei_util_init_rc_str_get", "macAddr2str", "ork_sys_status_get"};

/* What softnode.h declares. */
const std::set<std::string> control_functions{"softnode_fault_functions_json",
                                              "softnode_fault_sweep",
                                              "softnode_fault_sweep_watched",
                                              "softnode_faults_add",
                                              "softnode_faults_add_file",
                                              "softnode_faults_add_text",
                                              "softnode_faults_clear",
                                              "softnode_faults_json",
                                              "softnode_faults_release",
                                              "softnode_graph_dot",
                                              "softnode_limits_json",
                                              "softnode_queues_json",
                                              "softnode_reset",
                                              "softnode_snapshot_json",
                                              "softnode_switch_on",
                                              "softnode_time",
                                              "softnode_time_advance",
                                              "softnode_timing_event_post",
                                              "softnode_timing_reading_set",
                                              "softnode_timing_settle",
                                              "softnode_traffic_dropped",
                                              "softnode_traffic_offer",
                                              "softnode_traffic_offer_one",
                                              "softnode_traffic_send",
                                              "softnode_traffic_watch"};

std::set<std::string> exported()
{
    const Outcome outcome = run("nm --dynamic --defined-only --format=just-symbols '" SOFTNODE_LIBRARY "'");
    EXPECT_EQ(outcome.status, 0);
    std::istringstream lines(outcome.output);
    std::set<std::string> names;
    for (std::string name; std::getline(lines, name);)
        names.insert(name);
    return names;
}

} // namespace

TEST(Exports, AreTheClosedFunctionsAndTheControlInterfaceAndNothingElse)
{
    std::set<std::string> expected(softnode::closed_functions.begin(), softnode::closed_functions.end());
    expected.insert(text_functions.begin(), text_functions.end());
    expected.insert(control_functions.begin(), control_functions.end());
    EXPECT_EQ(exported(), expected);
}

TEST(Exports, LibraryCarriesItsSoname)
{
    const Outcome outcome = run("readelf -d '" SOFTNODE_LIBRARY "'");
    EXPECT_NE(outcome.output.find("Library soname: [libkel-softnode.so.1]"), std::string::npos);
}
