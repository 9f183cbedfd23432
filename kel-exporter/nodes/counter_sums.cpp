// Which counters have 32 bits, and how an object that was made anew differs from one whose counters wrapped around.
// Which metric shows a counter is metrics/families.cpp.
#include "kel-exporter/nodes/counter_sums.h"

#include <algorithm>
#include <span>
#include <utility>

namespace kel_exporter
{
namespace
{

using notation::document;

constexpr std::string_view queue_words[] = {"pkts_dropped", "pkts_tx", "pkts_rx"};
constexpr std::string_view queue_levels[] = {"mem_blks_in_use", "pkts_out_standing", "max_burst_size",
                                             "current_burst_size"};
constexpr std::string_view pcep_words[] = {"frames_dropped"};

// A kind of objects. All counters but the words have 64 bits, and only grow; levels do not.
constexpr struct counted {
    std::string_view list;
    std::string_view key;
    std::span<const std::string_view> words;
    std::span<const std::string_view> levels;
} kinds[] = {
    {"queues", "port", queue_words, queue_levels},
    {"pceps", "id", pcep_words, {}},
};

bool among(std::string_view name, std::span<const std::string_view> names)
{
    return std::ranges::find(names, name) != names.end();
}

// Does this with each counter that both have, in blocks or not.
template <typename Document, typename Work> void each_of_both(const document &before, Document &now, const Work &work)
{
    for (auto &[name, value] : now.members()) {
        const document *last = before.find(name);
        if (last && value.is_object())
            each_of_both(*last, value, work);
        else if (last && last->holds() == notation::kind::natural && value.holds() == notation::kind::natural)
            work(name, *last, value);
    }
}

// A platform may use the name of an object again, which then has counted less. An object that the session made again
// has another number, whatever it has counted.
bool is_same(const document &before, const document &now, const counted &kind)
{
    bool same = before.at("made") == now.at("made");
    each_of_both(before.at("counters"), now.at("counters"),
                 [&](std::string_view name, const document &last, const document &value) {
                     if (!among(name, kind.words) && !among(name, kind.levels) &&
                         value.number<uint64_t>() < last.number<uint64_t>())
                         same = false;
                 });
    return same;
}

// The difference in 32 bits is right after a wrap-around, too, if there was no more than one since the last look: a
// node is looked at at least once a second while somebody wants to know.
void add_up(const document &before, document &now, const counted &kind)
{
    each_of_both(before.at("counters"), now["counters"],
                 [&](std::string_view name, const document &last, document &value) {
                     if (!among(name, kind.words))
                         return;
                     const auto sum = last.number<uint64_t>();
                     value = sum + static_cast<uint32_t>(value.number<uint64_t>() - sum);
                 });
}

} // namespace

// A node that began anew has another `since`, and nothing of the one before counts.
void counter_sums::carry_on(document &state)
{
    if (const auto since = state.at("since").number<uint64_t>(); since != std::exchange(since_, since))
        objects_.clear();
    for (const counted &kind : kinds)
        for (size_t i = 0; i < state.at(kind.list).size(); ++i) {
            document &one = state[kind.list][i];
            if (!one.at("counters").is_object())
                continue;
            document &before = objects_[{kind.list, one.at(kind.key).number<uint64_t>()}];
            if (before.is_object() && is_same(before, one, kind))
                add_up(before, one, kind);
            before = one;
        }
}

} // namespace kel_exporter
