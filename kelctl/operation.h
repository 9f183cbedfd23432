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

class c_program;

// What it references must outlive it.
struct operation {
    std::function<std::string()> text; // the call with its arguments
    std::function<uint32_t()> call;    // null: nothing to do
    // Adds the call, and the code that it returned, to a program; null: what is no call of the library's.
    std::function<void(c_program &, uint32_t)> write = {};
};

struct failure {
    std::string operation;
    uint32_t code = 0;
    std::vector<trace_entry> records;
};

// Who takes down what an operation does: its trace records, and, when there is a program, the call.
struct call_record {
    trace_log &log;
    c_program *program;

    call_record(trace_log &its_log, c_program *its_program = nullptr) : log(its_log), program(its_program)
    {
    }
};

// The failure comes with the records that the operation fired.
std::optional<failure> run(const operation &operation, const call_record &record);

} // namespace kelctl
