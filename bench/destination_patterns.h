// Paths whose destinations follow a pattern, for measuring what a table of them costs.
#pragma once

#include "kel/kel_core_ic_ebcom.h"

#include <cstdint>
#include <span>

struct destination_pattern {
    const char *name;
    kel_ebcom_path_config (*path)(uint32_t number);
    uint32_t most; // paths that exist together
};

std::span<const destination_pattern> destination_patterns();

// A path from the same port as the pattern's first one, to a destination that no pattern has.
kel_ebcom_path_config stranger(uint32_t number);
