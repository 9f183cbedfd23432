/*
 * counters.h - frames and octets, counted by what became of them. Counters are 64 bits wide here, and wrap around,
 * so that sums of them hold however much was counted; what a record makes of them: closed/statistics.h.
 */
#ifndef SOFTNODE_COUNTERS_H
#define SOFTNODE_COUNTERS_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace softnode
{

/* What became of a frame at an object: it came in, it went out, it was thrown away. */
enum class Fate : std::uint8_t { received, sent, dropped };

/* Why a frame was thrown away: it is longer than the MTU allows; its queue had no room; nothing leads to its
   destination; the queue of its path was removed, maybe while it waited there. */
enum class Drop : std::uint8_t { too_long, no_room, no_way, no_queue };
inline constexpr std::size_t drop_reasons = static_cast<std::size_t>(Drop::no_queue) + 1;

/* Frames of one length. */
struct Frames {
    std::uint64_t count = 0;
    std::uint32_t length = 0;   /* octets of each */
    std::uint64_t identity = 0; /* by which who offers them knows each of them again; 0: need not */
};

struct Tally {
    std::uint64_t frames = 0;
    std::uint64_t octets = 0;

    Tally &operator+=(const Tally &more);
    Tally &operator+=(const Frames &more);
};

/* What came in and has not left. */
struct Waiting {
    std::uint64_t frames = 0;
    std::uint64_t octets = 0;
    std::uint64_t blocks = 0; /* memory it takes, in blocks of facts::block_octets */
};

/** The larger one of each. */
Waiting most_of(const Waiting &left, const Waiting &right);

class Counters
{
public:
    void account(Fate fate, const Frames &frames);
    void add(Fate fate, const Tally &frames);

    const Tally &operator[](Fate fate) const;

private:
    std::array<Tally, static_cast<std::size_t>(Fate::dropped) + 1> tallies_{};
};

} // namespace softnode

#endif
