// Keeping paths as they come and go.
#include "kelctl/session/asked_paths.h"

#include <algorithm>
#include <iterator>

namespace kelctl
{

void asked_paths::add(const kel_ebcom_path_config &path)
{
    paths_.push_back(path);
}

void asked_paths::remove(const kel_ebcom_path_config &path)
{
    const auto same = [&path](const kel_ebcom_path_config &one) {
        return one.iell_port == path.iell_port && std::ranges::equal(one.dst_mac, path.dst_mac);
    };
    const auto last = std::find_if(paths_.rbegin(), paths_.rend(), same);
    if (last != paths_.rend())
        paths_.erase(std::next(last).base());
}

void asked_paths::clear()
{
    paths_.clear();
}

} // namespace kelctl
