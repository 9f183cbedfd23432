// One call into the library, and what is known of it when it fails.
#pragma once

#include "kelctl/trace_log.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kelctl
{

// What it references must outlive it.
struct operation {
    std::function<std::string()> text; // the call with its arguments
    std::function<uint32_t()> call;    // null: nothing to do
};

struct failure {
    std::string operation;
    uint32_t code = 0;
    std::vector<trace_entry> records;
};

// The failure comes with the records that the operation fired.
std::optional<failure> run(const operation &operation, trace_log &log);

} // namespace kelctl
