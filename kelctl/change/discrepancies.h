// What the software accelerator really holds, compared with what this process set up. Differences between this process
// and a node file are difference.h.
#pragma once

#include "kelctl/change/node_model.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// What is said of one object that the accelerator holds in another way, or not, or alone.
struct discrepancy {
    object_kind kind;
    std::string object; // its name
    std::string what;   // "the accelerator does not hold it"

    bool operator==(const discrepancy &) const = default;
};

// In the order of the kinds. None where the platform cannot be read back. `model` is that of the session.
std::optional<std::vector<discrepancy>> discrepancies(const node_model &model, const session &session);

// "path to 02:00:00:02:00:01 on RLU1P (6): the accelerator does not hold it"
std::string text_of(const discrepancy &one);

// How a comparison that does without reading back is marked.
inline constexpr std::string_view not_read_back =
    "compared with what this process did: this platform cannot be read back";

} // namespace kelctl
