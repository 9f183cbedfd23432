// When each node is looked at, and which nodes there are. How one is asked is node_link.cpp.
#include "kel-exporter/nodes/watched_nodes.h"

#include "kel-exporter/nodes/node_link.h"
#include "kelctl/remote/node_names.h"

#include <algorithm>
#include <poll.h>
#include <set>
#include <utility>

namespace kel_exporter
{
namespace
{

// Each has a thread. Sockets of any number may lie in the folders.
constexpr size_t most_nodes = 64;
constexpr int pause = 100; // milliseconds, after which a wait for an answer looks whether it is over

// For a client's wait: gives up when the thread is to end.
bool readable(int descriptor, const std::stop_token &over)
{
    pollfd wanted = {.fd = descriptor, .events = POLLIN, .revents = 0};
    while (!over.stop_requested())
        if (poll(&wanted, 1, pause) != 0)
            return true;
    return false;
}

std::set<std::string> nodes_there_are()
{
    std::set<std::string> names;
    for (kelctl::node_socket &one : kelctl::node_sockets())
        names.insert(std::move(one.name));
    return names;
}

} // namespace

watched_nodes::watched_nodes(std::vector<std::string> names, const pace &kept) : names_(std::move(names)), kept_(kept)
{
}

watched_nodes::~watched_nodes()
{
    for (auto &[name, node] : nodes_)
        node.thread.request_stop(); // all of them, before the first is waited for
}

// Called by the thread that serves HTTP: it must not wait for nodes. Only the first question after a while waits, so
// that whoever asks seldom does not get values of long ago.
std::vector<known_node> watched_nodes::known()
{
    std::vector<node_map::node_type> gone; // their threads need the lock to end
    std::unique_lock lock(mutex_);
    ask_for_looks();
    find_nodes();
    gone = forgotten();
    asked_.notify_all();
    looked_.wait_until(lock, begun_at_ + kept_.first, [this] {
        return std::ranges::all_of(nodes_, [this](const auto &one) { return one.second.done >= begun_at_; });
    });
    std::vector<known_node> all;
    for (const auto &[name, node] : nodes_)
        all.push_back(node.seen);
    return all;
}

// The time between the latest two questions is that at which looks pay.
void watched_nodes::ask_for_looks()
{
    const auto now = watch_clock::now();
    if (!wanted())
        begun_at_ = now;
    gap_ = now - std::exchange(asked_at_, now);
}

bool watched_nodes::wanted() const
{
    return asked_at_ != watch_clock::time_point() && watch_clock::now() < asked_at_ + kept_.until;
}

// References to nodes_ stay valid while others come and go, and each thread has one to its node.
void watched_nodes::find_nodes()
{
    const auto now = watch_clock::now();
    for (const std::string &name : names_.empty() ? nodes_there_are() : std::set(names_.begin(), names_.end())) {
        const auto found = nodes_.find(name);
        if (found != nodes_.end()) {
            found->second.there = now;
        } else if (nodes_.size() < most_nodes) {
            watched &node = nodes_[name];
            node.seen = {.name = name, .why = "it has not answered yet"};
            node.there = now;
            try {
                node.thread = std::jthread([this, &node](const std::stop_token &over) { watch(over, node); });
            } catch (const std::exception &) {
                nodes_.erase(name); // found again by the next question
                throw;
            }
        }
    }
}

// Taken out of the map but not destroyed under the lock: a destroyed thread is waited for.
std::vector<watched_nodes::node_map::node_type> watched_nodes::forgotten()
{
    std::vector<node_map::node_type> gone;
    const auto oldest = watch_clock::now() - kept_.remembered;
    for (auto one = nodes_.begin(); one != nodes_.end();)
        if (const auto next = std::next(one); one->second.there < oldest)
            gone.push_back(nodes_.extract(std::exchange(one, next)));
        else
            one = next;
    return gone;
}

// What was read last stays when a node does not answer: it is shown with its age.
void watched_nodes::watch(const std::stop_token &over, watched &node)
{
    node_link link(node.seen.name);
    std::unique_lock lock(mutex_);
    while (wait_until_due(lock, over, node)) {
        node.begun = watch_clock::now();
        lock.unlock();
        known_node seen = link.look([&over](int descriptor) { return readable(descriptor, over); });
        lock.lock();
        node.done = watch_clock::now();
        if (seen.up) {
            node.seen = std::move(seen);
        } else {
            node.seen.up = false;
            node.seen.why = std::move(seen.why);
        }
        looked_.notify_all();
    }
}

// False when it is over.
bool watched_nodes::wait_until_due(std::unique_lock<std::mutex> &lock, const std::stop_token &over, const watched &node)
{
    while (!over.stop_requested()) {
        const auto gap = std::max(gap_, node.begun - asked_at_); // it grows while nobody asks
        const auto next = node.begun + std::clamp<watch_clock::duration>(gap / 4, kept_.shortest, kept_.longest);
        if (!wanted())
            asked_.wait(lock, over, [this] { return wanted(); });
        else if (watch_clock::now() >= next)
            return true;
        else
            asked_.wait_until(lock, over, next, [] { return false; });
    }
    return false;
}

} // namespace kel_exporter
