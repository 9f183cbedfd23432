// What a caller hands over to be written: records and text buffers that are full of something before, so that it shows
// what an operation clears, what it writes and what it leaves alone.
//
//     auto stats = soiled<ebcom_queue_stats>();
//     EXPECT_EQ(kel_core_ic_ebcom_queue_stats_get(peer.data(), &stats), 4U);
//     EXPECT_EQ(octets_of(stats), zeros<ebcom_queue_stats>());
#pragma once

#include "scripted_platform.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

using scripted::octets;

template <typename Record> Record soiled()
{
    static_assert(std::is_trivially_copyable_v<Record>);
    Record record;
    memset(&record, 0xFF, sizeof record);
    return record;
}

// All of a record, padding included.
template <typename Record> octets octets_of(const Record &record)
{
    static_assert(std::is_trivially_copyable_v<Record>);
    octets result(sizeof record);
    memcpy(result.data(), &record, sizeof record);
    return result;
}

template <typename Record> octets zeros()
{
    return octets(sizeof(Record));
}

struct text_buffer {
    static constexpr uint32_t size = 512;
    char text[size];

    text_buffer()
    {
        std::ranges::fill(text, 'x');
    }

    // The first character is a terminator and nothing else was written.
    bool was_only_emptied() const
    {
        return text[0] == '\0' && untouched_from(1);
    }

    bool untouched_from(uint32_t offset) const
    {
        return std::all_of(text + offset, text + size, [](char each) { return each == 'x'; });
    }
};
