// Random nodes that a node file could have, as commands in the order of a bring-up. The objects of two of them overlap.
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace kelctl
{

class random_node
{
public:
    explicit random_node(uint32_t seed) : chance_(seed)
    {
    }

    std::vector<std::string> lines()
    {
        std::vector<std::string> all = {
            fmt::format("ebcom params set --mtu {} --ether-type 0x88b5 --settings 1,2", any_of<int>({1500, 9000})),
            "ebcom interface create", "ebcom start"};
        for (const std::string &path : paths())
            all.push_back("ebcom path add " + path);
        std::vector<int> pceps;
        std::vector<int> groups;
        for (int id = 1; id <= 6; ++id)
            switch (below(3)) {
            case 0:
                pceps.push_back(id);
                break;
            case 1:
                groups.push_back(id);
            }
        if (!pceps.empty() || !groups.empty())
            all.emplace_back("pcep start");
        for (const int id : pceps)
            all.push_back(fmt::format("pcep add {} --remote-id 9 --local 02:00:00:{}:00:01 --remote 02:00:00:02:00:01 "
                                      "--vlan {} --priority {}",
                                      id, any_of<const char *>({"03", "02"}), 100 + below(2), below(2)));
        for (const int group : groups)
            all.push_back(fmt::format("group add {}", group));
        for (const int group : groups)
            for (const int id : pceps)
                if (below(2) == 0)
                    all.push_back(fmt::format("group member add {} {}", group, id));
        return all;
    }

    // Less than this.
    size_t below(size_t limit)
    {
        return chance_() % limit;
    }

private:
    template <typename Value> Value any_of(std::initializer_list<Value> values)
    {
        return *(values.begin() + below(values.size()));
    }

    // Few destinations, so that many have paths from several ports.
    std::vector<std::string> paths()
    {
        std::vector<std::string> all;
        for (const int port : {0, 6, 7, 19, 31, 42}) {
            if (below(3) == 0)
                continue;
            const std::string shaping =
                any_of<const char *>({"", "", " --rate 1000 --burst 2000", " --rate 1000 --burst 2000 --threshold 512",
                                      " --rate 5000 --burst 3000"});
            for (size_t paths = 1 + below(4); paths > 0; --paths)
                all.push_back(fmt::format("02:00:00:02:00:{:02x} --port {}{}", 1 + below(6), port, shaping));
        }
        std::ranges::shuffle(all, chance_);
        return all;
    }

    std::mt19937 chance_;
};

} // namespace kelctl
