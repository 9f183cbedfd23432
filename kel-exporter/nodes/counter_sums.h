// Counters of 32 bits, which wrap around, as sums of 64 bits, which do not.
//
//     counter_sums sums;
//     sums.carry_on(state); // of each look at a node
//
// One object for each node: it remembers the node's last answer.
//
// Of 4,294,967,290 frames and, at the next look, 4, the sum is 4,294,967,300.
#pragma once

#include "notation/document.h"

#include <cstdint>
#include <map>
#include <string_view>
#include <utility>

namespace kel_exporter
{

class counter_sums
{
public:
    // Puts the sums in the place of the counters of `state`, which a node answers to {"ask":"state"}. They begin with
    // the counters themselves, and begin anew with those of an object that was made anew, and of a node that began
    // anew.
    void carry_on(notation::document &state);

private:
    using object = std::pair<std::string_view, uint64_t>; // of which list, and its number there

    uint64_t since_ = 0;                           // when the node began
    std::map<object, notation::document> objects_; // as they were last, with their sums
};

} // namespace kel_exporter
