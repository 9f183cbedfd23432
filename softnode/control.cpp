/*
 * control.cpp - the control interface of the software accelerator, over the process-wide node.
 */
#include "softnode/softnode.h"

#include "softnode/instance.h"
#include "softnode/snapshot.h"

#include <chrono>
#include <cstring>
#include <string>

using namespace softnode;

char *softnode_faults_add(const char *rules)
{
    if (!rules)
        return strdup("no rules: the pointer is null");
    const std::string problem = with_node([&](Node &node) { return node.faults.add(rules); });
    return problem.empty() ? nullptr : strdup(problem.c_str());
}

void softnode_faults_clear()
{
    with_node([](Node &node) { node.faults.clear(); });
}

void softnode_timing_reading_set(int64_t cycles, uint32_t frequency)
{
    with_node([&](Node &node) { node.timing.set_reading({cycles, frequency}); });
}

void softnode_timing_event_post(uint32_t type, int32_t domain)
{
    with_node([&](Node &node) { node.timing.post({type, 0, domain}); });
    instance().event_posted.notify_all();
}

int softnode_timing_settle(uint32_t milliseconds)
{
    Instance &here = instance();
    return with_node([&](Node &node) {
        return here.user_moved.wait_for(here.mutex, std::chrono::milliseconds(milliseconds),
                                        [&] { return node.timing.settled(); })
                   ? 1
                   : 0;
    });
}

char *softnode_snapshot_json()
{
    const std::string document = with_node([](Node &node) { return snapshot(node); });
    return strdup(document.c_str());
}

void softnode_reset()
{
    with_node([](Node &node) { node.reset(); });
    instance().event_posted.notify_all();
}
