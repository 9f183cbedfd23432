// How a cost grows with the paths that stand: "growth/OPERATION/PORTS/N" with N of them, on one port or spread over
// all. The counter "ratio" is the time over that of a fixed piece of work, so that figures with different N can be
// compared; "octets" is the heap memory that each of the N takes.
//
// Adding and removing are timed in small batches, so that the one can be undone untimed after the other. "count
// table" is the part of a path's cost that the count of its destination takes, the same with or without a library
// around it.
#include "bare.h"
#include "benchmarks.h"
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
constexpr size_t standing_counts[] = {1, 100, 10000, 60000};

constexpr int32_t one_port[] = {6};
constexpr int32_t all_ports[] = {6,  7,  19, 20, 21, 22, 23, 24, 8,  9,  25, 26, 27, 28, 29, 30, 10,
                                 11, 31, 32, 33, 34, 35, 36, 12, 13, 37, 38, 39, 40, 41, 42, 0};

kel_ebcom_path_config path_number(size_t number, int32_t port)
{
    return {{2, 0, 0, 2, static_cast<uint8_t>(number >> 8), static_cast<uint8_t>(number)}, 0, port, 0, 0, 0};
}

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

// Those that stand, in the order of adding; they follow one another round and round.
class crowd
{
public:
    crowd(const subject &what, size_t size, std::span<const int32_t> ports) : what_(what)
    {
        for (size_t i = 0; i < size + most_at_a_time; ++i)
            ring_.push_back(path_number(i, ports[i % ports.size()]));
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

    // Of heap memory, for each that stands.
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

private:
    const subject &what_;
    std::vector<kel_ebcom_path_config> ring_;
    std::vector<kel_ebcom_path_config> shuffled_;
    size_t begin_ = 0;
    size_t end_ = 0;
    size_t cursor_ = 0;
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
    size_t batch; // small where the number of standing paths changes with it
    const subject &what;
    step before; // untimed
    step timed;
    step after; // untimed
};

constexpr growing operations[] = {
    {"path add", 4, paths, nothing, add, remove_newest},
    {"path remove, newest first", 4, paths, add, remove_newest, nothing},
    {"path remove, oldest first", 4, paths, add, remove_oldest, nothing},
    {"count table add", 4, count_table, nothing, add, remove_newest},
    {"count table remove, newest first", 4, count_table, add, remove_newest, nothing},
    {"count table remove, oldest first", 4, count_table, add, remove_oldest, nothing},
    {"queue handle, in order", most_at_a_time, paths, nothing, [](crowd &crowd) { look_up(crowd.next()); }, nothing},
    {"queue handle, any", most_at_a_time, paths, nothing, [](crowd &crowd) { look_up(crowd.any()); }, nothing},
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

void measure(benchmark::State &state, const growing &operation, size_t standing, std::span<const int32_t> ports)
{
    crowd crowd(operation.what, standing, ports);
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

void register_all(const std::string &ports_name, std::span<const int32_t> ports)
{
    for (const size_t standing : standing_counts) {
        for (const growing &operation : operations) {
            const std::string name =
                "growth/" + std::string(operation.name) + "/" + ports_name + "/" + std::to_string(standing);
            const auto run = [&operation, standing, ports](benchmark::State &state) {
                measure(state, operation, standing, ports);
            };
            benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime();
        }
    }
}

} // namespace

void add_growth_benchmarks()
{
    register_all("one port", one_port);
    register_all("all ports", all_ports);
}
