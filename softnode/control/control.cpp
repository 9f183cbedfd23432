/*
 * control.cpp - the control interface of the software accelerator, over the process-wide node: the timing unit, looking
 * in, switching off and on. Making it fail is in control_faults.cpp, traffic and time in control_traffic.cpp.
 */
#include "softnode/softnode.h"

#include "softnode/common/facts.h"
#include "softnode/common/json_text.h"
#include "softnode/instance/instance.h"
#include "softnode/views/graph.h"
#include "softnode/views/snapshot.h"

#include <chrono>
#include <cstring>
#include <string>

using namespace softnode;

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
    const std::string document = with_instance([](Instance &here) { return snapshot(here.node, here.faults); });
    return strdup(document.c_str());
}

char *softnode_queues_json()
{
    const std::string list = with_node([](Node &node) { return queue_list(node); });
    return strdup(list.c_str());
}

char *softnode_limits_json()
{
    const Json limits = {{"schedulers", facts::most_schedulers},
                         {"queues", facts::most_queues},
                         {"paths", facts::most_paths},
                         {"groups", facts::most_groups},
                         {"members", facts::most_members}};
    return strdup(written(limits).c_str());
}

char *softnode_graph_dot()
{
    const std::string picture = with_node([](Node &node) { return graph(node); });
    return strdup(picture.c_str());
}

void softnode_reset()
{
    with_instance([](Instance &here) { here.reset(); });
    instance().event_posted.notify_all();
    instance().released.notify_all();
}
