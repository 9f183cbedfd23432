// The counters of a queue: copied from the companion library's record to the one of kel_core_ic_ebcom.h, and the lines
// of their texts. Nothing here traces.
#pragma once

#include "kel/kel_core_ic_ebcom.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace kel
{

// A line of text: a counter's label, and its offset in ebcom_queue_stats in octets. Of a 64-bit counter the low half is
// printed.
struct text_line {
    const char *label;
    size_t offset;
};

struct text_layout {
    const char *title;
    std::span<const text_line> lines;
};

extern const text_layout queue_layout;
extern const text_layout queue_layout_2;

// The number that a line prints.
uint32_t low_word(const ebcom_queue_stats &stats, const text_line &line);

// Writes the counters that the companion library has; the others of `to` stay unchanged.
void copy_counters(const qos_queue_stats &from, ebcom_queue_stats &to);

} // namespace kel
