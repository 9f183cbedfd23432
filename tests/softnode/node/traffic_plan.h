/*
 * traffic_plan.h - nodes and loads to test properties with, drawn at random.
 */
#ifndef TESTS_SOFTNODE_TRAFFIC_PLAN_H
#define TESTS_SOFTNODE_TRAFFIC_PLAN_H

#include "traffic.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/* How to put a node together. What is a number there is taken modulo how many there are. */
struct NodePlan {
    struct PlannedScheduler {
        ork_qos_scheduler_params params{};
        std::size_t parent = 0; /* one before it, or the root */
    };
    struct PlannedQueue {
        std::size_t scheduler = 0;
        Shaping shaping;
    };

    std::vector<PlannedScheduler> schedulers;
    std::vector<PlannedQueue> queues;
    std::vector<std::size_t> paths; /* a queue for each address */
};

/* Something to do with a node. */
struct Step {
    enum Kind { offer, send, pass, remove_queue, lay_path } kind = pass;
    std::size_t which = 0; /* address, PCEP or group, queue */
    softnode::Frames frames{};
    std::uint64_t nanoseconds = 0;
};

/* Trees of up to eight levels. */
NodePlan draw_node();
std::vector<Step> draw_load();

/*
 * A node by a plan, with twelve PCEPs and two groups of three members. Not every address that they send to has a path or
 * a PCEP, and one of the members is no more.
 */
class PlannedNode
{
public:
    explicit PlannedNode(const NodePlan &plan);

    /* Time passes in pieces of so many nanoseconds at most; 0: as a whole. */
    void take(const Step &step, std::uint64_t piece = 0);

    /* One of the queues that are there, by a number. */
    softnode::Handle standing_queue(std::size_t number) const;

    LoadedNode node;

private:
    void pass(std::uint64_t nanoseconds, std::uint64_t piece);
};

#endif
