// The paths and shapers that were asked for and stand, in the order of their adding: the accelerator knows handles, and
// only who asked knows which ports they serve.
#pragma once

#include "kel/kel_core_ic_ebcom.h"

#include <vector>

namespace kelctl
{

class asked_paths
{
public:
    void add(const kel_ebcom_path_config &path);

    // Takes back the last one to this destination through this port; none that was never asked for.
    void remove(const kel_ebcom_path_config &path);

    // The service keeps none over its stop.
    void clear();

    const std::vector<kel_ebcom_path_config> &all() const
    {
        return paths_;
    }

private:
    std::vector<kel_ebcom_path_config> paths_;
};

} // namespace kelctl
