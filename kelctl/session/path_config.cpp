// Units of the arguments into those of the record.
#include "kelctl/session/path_config.h"

#include "kelctl/values/limits.h"

#include <algorithm>

namespace kelctl
{

// "--configured" is the shaping of a removal, which the library only traces. A path with a rate is shaped, unless
// --shaping says otherwise.
kel_ebcom_path_config path_of(const arguments &given)
{
    kel_ebcom_path_config path{};
    std::ranges::copy(given.mac("MAC").octets, path.dst_mac);
    path.iell_port = given.number<int32_t>("--port");
    if (given.has("--configured")) {
        const auto &numbers = given.get<std::vector<uint32_t>>("--configured");
        path.shaping_enabled = static_cast<uint8_t>(numbers[0]);
        path.shaping_rate = numbers[1];
        path.buffer_threshold = numbers[2];
        path.burst_size = numbers[3];
    }
    if (!given.has("--rate"))
        return path;
    path.shaping_enabled = given.has("--shaping") ? given.number<uint8_t>("--shaping") : uint8_t{1};
    path.shaping_rate = given.number<uint32_t>("--rate");
    path.burst_size = given.number<uint32_t>("--burst");
    path.buffer_threshold = given.number<uint32_t>("--threshold") / threshold_block;
    return path;
}

} // namespace kelctl
