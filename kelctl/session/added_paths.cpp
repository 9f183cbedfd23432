// Counts of paths, and what follows from a port or a destination getting its first or losing its last.
#include "kelctl/session/added_paths.h"

namespace kelctl
{
namespace
{

// True when it was the last.
template <typename Key> bool drop_one(std::map<Key, size_t> &counts, const Key &key)
{
    const auto found = counts.find(key);
    if (--found->second != 0)
        return false;
    counts.erase(found);
    return true;
}

std::set<int32_t> ports_in(const std::map<int32_t, size_t> &counts)
{
    std::set<int32_t> ports;
    for (const auto &[port, count] : counts)
        ports.insert(port);
    return ports;
}

} // namespace

// A destination's group changes only with the first path on a port, and in remove() with the last.
void added_paths::add(const kel_ebcom_path_config &path)
{
    const mac_address destination = mac_address_at(path.dst_mac);
    const int32_t port = path.iell_port;
    ++size_;
    if (on_port_[port]++ == 0) {
        ports_.push_back(port);
        first_on_[port] = path;
    }
    counts &to = to_[destination];
    const counts before = to;
    if (to[port]++ == 0)
        regroup(destination, before, to);
}

// A path that the session did not add is none of its paths, though the library has removed it.
void added_paths::remove(const kel_ebcom_path_config &path)
{
    const mac_address destination = mac_address_at(path.dst_mac);
    const int32_t port = path.iell_port;
    const auto to = to_.find(destination);
    if (to == to_.end() || !to->second.contains(port))
        return;
    --size_;
    if (drop_one(on_port_, port)) {
        std::erase(ports_, port);
        first_on_.erase(port);
    }
    const counts before = to->second;
    if (drop_one(to->second, port))
        regroup(destination, before, to->second);
    if (to->second.empty())
        to_.erase(to);
}

void added_paths::clear()
{
    *this = {};
}

size_t added_paths::size() const
{
    return size_;
}

const std::vector<int32_t> &added_paths::ports() const
{
    return ports_;
}

const std::map<std::set<int32_t>, std::set<mac_address>> &added_paths::destinations() const
{
    return destinations_;
}

const kel_ebcom_path_config &added_paths::first_on(int32_t port) const
{
    return first_on_.at(port);
}

void added_paths::regroup(const mac_address &destination, const counts &before, const counts &now)
{
    if (const auto group = destinations_.find(ports_in(before)); group != destinations_.end()) {
        group->second.erase(destination);
        if (group->second.empty())
            destinations_.erase(group);
    }
    if (!now.empty())
        destinations_[ports_in(now)].insert(destination);
}

} // namespace kelctl
