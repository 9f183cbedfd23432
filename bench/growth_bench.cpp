// How a cost grows with the paths that exist: "growth/OPERATION/PATTERN/N" with N of them. The counter "ratio" is the time over that of a fixed piece of work, so that figures with different N can be
// compared; "octets" is the heap memory that each of the N takes.
//
// Adding and removing are timed in small batches, so that the one can be undone untimed after the other. "count
// table" is the part of a path's cost that the count of its destination takes, the same with or without a library
// around it.
#include "bare.h"
#include "benchmarks.h"
#include "destination_patterns.h"
#include "turns.h"

#include "platform/kei_util.h"

#include <benchmark/benchmark.h>
#include <glib.h>
#include <malloc.h>

#include <random>
#include <span>
#include <string>

namespace
{

constexpr size_t most_at_a_time = 64;
constexpr uint32_t smaller_counts[] = {1, 100, 10000}; // and a pattern's most

// What is added and removed.
struct subject {
    void (*set_up)();
    void (*add)(const kel_ebcom_path_config &path);
    void (*remove)(const kel_ebcom_path_config &path);
    void (*take_down)();
};

constexpr subject paths = {
    [] { kel_ic_ebcom_init_qos(); },
    [](const kel_ebcom_path_config &path) { kel_core_ic_ebcom_path_add(&path); },
    [](const kel_ebcom_path_config &path) { kel_core_ic_ebcom_path_rem(&path); },
    [] { kel_ic_ebcom_deinit_qos(); },
};

GHashTable *counts;

struct mac_text {
    explicit mac_text(const kel_ebcom_path_config &path)
    {
        macAddr2str(text, path.dst_mac);
    }

    char text[18] = {};
};

constexpr subject count_table = {
    [] { counts = g_hash_table_new_full(g_str_hash, g_str_equal, g_free, nullptr); },
    [](const kel_ebcom_path_config &path) {
        const mac_text mac(path);
        const guint count = GPOINTER_TO_UINT(g_hash_table_lookup(counts, mac.text));
        g_hash_table_insert(counts, g_strdup(mac.text), GUINT_TO_POINTER(count + 1));
    },
    [](const kel_ebcom_path_config &path) {
        const mac_text mac(path);
        if (g_hash_table_lookup(counts, mac.text))
            g_hash_table_remove(counts, mac.text);
    },
    [] { g_hash_table_destroy(counts); },
};

size_t heap_in_use()
{
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

// Those that exist, in the order of adding; they follow one another round and round.
class crowd
{
public:
    crowd(const subject &what, const destination_pattern &pattern, uint32_t size) : what_(what)
    {
        for (uint32_t i = 0; i < size + most_at_a_time; ++i)
            ring_.push_back(pattern.path(i));
        what_.set_up();
        const size_t before = heap_in_use();
        while (end_ < size)
            add();
        octets_ = heap_in_use() - before;
        shuffled_.assign(ring_.begin(), ring_.begin() + static_cast<ptrdiff_t>(size));
        std::ranges::shuffle(shuffled_, std::mt19937(1));
    }

    ~crowd()
    {
        while (begin_ < end_)
            remove_oldest();
        what_.take_down();
    }

    crowd(const crowd &) = delete;
    crowd &operator=(const crowd &) = delete;

    void add()
    {
        what_.add(ring_[end_++ % ring_.size()]);
    }

    void remove_newest()
    {
        what_.remove(ring_[--end_ % ring_.size()]);
    }

    void remove_oldest()
    {
        what_.remove(ring_[begin_++ % ring_.size()]);
    }

    void add_stranger()
    {
        what_.add(stranger(strangers_++));
    }

    void remove_stranger()
    {
        what_.remove(stranger(--strangers_));
    }

    // Of heap memory, for each that exists.
    double octets_each() const
    {
        return static_cast<double>(octets_) / static_cast<double>(end_ - begin_);
    }

    // One after the other in the order of adding, or of no pattern.
    const uint8_t *next()
    {
        return ring_[cursor_++ % shuffled_.size()].dst_mac;
    }

    const uint8_t *any()
    {
        return shuffled_[cursor_++ % shuffled_.size()].dst_mac;
    }

    kel_ebcom_path_config absent()
    {
        return stranger(static_cast<uint32_t>(cursor_++ % most_at_a_time));
    }

private:
    const subject &what_;
    std::vector<kel_ebcom_path_config> ring_;
    std::vector<kel_ebcom_path_config> shuffled_;
    size_t begin_ = 0;
    size_t end_ = 0;
    size_t cursor_ = 0;
    uint32_t strangers_ = 0;
    size_t octets_ = 0;
};

// ---- What is timed ----

void add(crowd &crowd)
{
    crowd.add();
}

void remove_newest(crowd &crowd)
{
    crowd.remove_newest();
}

void remove_oldest(crowd &crowd)
{
    crowd.remove_oldest();
}

void add_stranger(crowd &crowd)
{
    crowd.add_stranger();
}

void remove_stranger(crowd &crowd)
{
    crowd.remove_stranger();
}

void look_up(const uint8_t *mac)
{
    void *queue = nullptr;
    kel_ic_ebcom_queue_handle_get(mac, &queue);
}

void read_statistics(const uint8_t *mac)
{
    ebcom_queue_stats stats;
    kel_core_ic_ebcom_queue_stats_get(mac, &stats);
}

using step = void (*)(crowd &);
constexpr step nothing = nullptr;

struct growing {
    const char *name;
    size_t batch; // small where the number of existing paths changes with it
    const subject &what;
    step before; // untimed
    step timed;
    step after; // untimed
};

constexpr growing operations[] = {
    {"path add", 4, paths, nothing, add, remove_newest},
    {"path remove, newest first", 4, paths, add, remove_newest, nothing},
    {"path remove, oldest first", 4, paths, add, remove_oldest, nothing},
    {"path add, another", 4, paths, nothing, add_stranger, remove_stranger},
    {"path remove, another", 4, paths, add_stranger, remove_stranger, nothing},
    {"count table add", 4, count_table, nothing, add, remove_newest},
    {"count table remove, newest first", 4, count_table, add, remove_newest, nothing},
    {"count table remove, oldest first", 4, count_table, add, remove_oldest, nothing},
    {"queue handle, in order", most_at_a_time, paths, nothing, [](crowd &crowd) { look_up(crowd.next()); }, nothing},
    {"queue handle, any", most_at_a_time, paths, nothing, [](crowd &crowd) { look_up(crowd.any()); }, nothing},
    {"queue handle, in vain", most_at_a_time, paths, nothing, [](crowd &crowd) { look_up(crowd.absent().dst_mac); },
     nothing},
    {"queue statistics, in order", most_at_a_time, paths, nothing, [](crowd &crowd) { read_statistics(crowd.next()); },
     nothing},
    {"queue statistics, any", most_at_a_time, paths, nothing, [](crowd &crowd) { read_statistics(crowd.any()); },
     nothing},
};

void take(step taken, size_t times, crowd &crowd)
{
    for (size_t i = 0; taken && i < times; ++i)
        taken(crowd);
}

void reference_work()
{
    constexpr kel_ebcom_path_config path = {{2, 0, 0, 2, 0, 1}, 0, 6, 0, 0, 0};
    for (size_t i = 0; i < 16; ++i) {
        bare::path_add(path, bare::port::empty);
        bare::path_rem(path, bare::port::empty);
    }
}

void measure(benchmark::State &state, const growing &operation, const destination_pattern &pattern, uint32_t existing)
{
    crowd crowd(operation.what, pattern, existing);
    const double octets = crowd.octets_each();
    turns taken;
    const size_t batch = operation.batch;
    while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(batch))) {
        take(operation.before, batch, crowd);
        state.SetIterationTime(taken.take([&] { take(operation.timed, batch, crowd); }, reference_work));
        take(operation.after, batch, crowd);
    }
    state.counters["ratio"] = taken.median_ratio();
    state.counters["octets"] = octets;
}

void register_all(const destination_pattern &pattern, uint32_t existing)
{
    for (const growing &operation : operations) {
        const std::string name =
            "growth/" + std::string(operation.name) + "/" + pattern.name + "/" + std::to_string(existing);
        const auto run = [&operation, &pattern, existing](benchmark::State &state) {
            measure(state, operation, pattern, existing);
        };
        benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime();
    }
}

} // namespace

void add_growth_benchmarks()
{
    for (const destination_pattern &pattern : destination_patterns()) {
        for (const uint32_t existing : smaller_counts)
            register_all(pattern, existing);
        register_all(pattern, pattern.most);
    }
}
