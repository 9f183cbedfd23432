// The counters of a queue: from the companion library's record to ours, and their layouts as text. Nothing here traces.
#pragma once

#include "kel/kel_core_ic_ebcom.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace kel
{

// A line of text: a counter's label and its place in the record. Of a 64-bit counter the low half is printed.
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

// What is printed of a line's counter.
uint32_t low_word(const ebcom_queue_stats &stats, const text_line &line);

// The companion library's counters in our order.
void copy_counters(const qos_queue_stats &from, ebcom_queue_stats &to);

} // namespace kel
