// The manual page of a small program, made from its table.
#pragma once

#include "options/program.h"

#include <span>
#include <string_view>

namespace options
{

struct manual {
    std::string_view about; // "explains recordings of libkel-core-ic"
    std::string_view description;
    std::span<const std::string_view> notes = {}; // on each command, which may be empty
    std::span<const meaning> environment = {};
    std::string_view example;
    std::string_view see_also; // "kelctl(1), lttng(1)"
};

// To standard output; returns the exit status.
int print_manual(const program &of, const manual &texts);

} // namespace options
