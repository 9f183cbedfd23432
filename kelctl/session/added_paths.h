// The paths and shapers that the session added and that still exist. The accelerator knows queues by handles only, so
// this is what shows which port a queue belongs to (node/read_back.h). What it keeps grows and shrinks with each path:
// nothing here takes longer the more of them there are, up to logarithms.
//
//     paths.add(config);          // after kel_core_ic_ebcom_path_add()
//     for (const int32_t port : paths.ports())
//         show(port, paths.first_on(port).shaping_rate);
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/values/mac_address.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace kelctl
{

class added_paths
{
public:
    // Call it after the library has added a path or a shaper.
    void add(const kel_ebcom_path_config &path);

    // Removes one to this destination through this port; nothing if the session added none.
    void remove(const kel_ebcom_path_config &path);

    // Call it when the library has forgotten all of them.
    void clear();
    size_t size() const;

    // Those with paths, in the order in which they got their first, with which the library makes a port's queue.
    const std::vector<int32_t> &ports() const;

    // The first path of a port that has some, whose shaping is that of the queue. It may be removed meanwhile.
    const kel_ebcom_path_config &first_on(int32_t port) const;

    // The destinations that lie on the same ports, by these ports.
    const std::map<std::set<int32_t>, std::set<mac_address>> &destinations() const;

private:
    using counts = std::map<int32_t, size_t>; // of paths, by ports

    void regroup(const mac_address &destination, const counts &before, const counts &now);

    size_t size_ = 0;
    counts on_port_;
    std::map<int32_t, kel_ebcom_path_config> first_on_;
    std::map<mac_address, counts> to_;
    std::vector<int32_t> ports_;
    std::map<std::set<int32_t>, std::set<mac_address>> destinations_;
};

} // namespace kelctl
