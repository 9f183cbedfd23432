// Held nodes, each watched by a thread of its own while somebody wants to know.
//
//     watched_nodes nodes({}); // all that there are
//     for (const known_node &one : nodes.known())
//         show(one);
#pragma once

#include "kel-exporter/nodes/known_node.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace kel_exporter
{

// A node is looked at four times for each time that it is asked for, but not more and not less often than this; and not
// at all when nobody has asked for a while.
struct pace {
    std::chrono::milliseconds shortest = std::chrono::milliseconds(200);
    std::chrono::milliseconds longest = std::chrono::seconds(1);
    std::chrono::milliseconds until = std::chrono::minutes(5);        // after it was asked for last
    std::chrono::milliseconds first = std::chrono::milliseconds(500); // at most, that an answer waits for first looks
    std::chrono::milliseconds remembered =
        std::chrono::hours(1); // a node that is gone; one that --node names, for ever
};

// The threads of the nodes are this object's own, and end with it.
class watched_nodes
{
public:
    // No names: all that there are, which are looked up each time.
    explicit watched_nodes(std::vector<std::string> names, const pace &kept = {});
    ~watched_nodes();
    watched_nodes(const watched_nodes &) = delete;
    watched_nodes &operator=(const watched_nodes &) = delete;

    // What is known of them, in the order of their names. Waits for no node, but when nobody has asked for a while:
    // then for the first looks, no longer than `first`.
    std::vector<known_node> known();

private:
    struct watched {
        known_node seen;
        watch_clock::time_point begun = {}; // the latest look
        watch_clock::time_point done = {};
        watch_clock::time_point there = {}; // its socket was
        std::jthread thread;
    };

    using node_map = std::map<std::string, watched>;

    void ask_for_looks();
    void find_nodes();
    std::vector<node_map::node_type> forgotten();
    void watch(const std::stop_token &over, watched &node);
    bool wait_until_due(std::unique_lock<std::mutex> &lock, const std::stop_token &over, const watched &node);
    bool wanted() const;

    const std::vector<std::string> names_;
    const pace kept_;
    std::mutex mutex_; // guards what follows
    std::condition_variable_any asked_;
    std::condition_variable looked_;
    watch_clock::time_point asked_at_ = {};
    watch_clock::time_point begun_at_ = {}; // asking, after a while in which nobody did
    watch_clock::duration gap_ = {};        // between the latest two
    node_map nodes_;
};

} // namespace kel_exporter
