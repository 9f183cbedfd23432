// Runs operations on single paths under callgrind, beside one path and beside as many as a pattern has. Callgrind
// writes a file of counts for each, named "PATTERN | OPERATION | PATHS". To be run by bench/check_growth.
#include "destination_patterns.h"
#include "operations.h"

#include <valgrind/callgrind.h>

#include <string>

namespace
{

constexpr uint32_t times = 64;

void add(const kel_ebcom_path_config &path)
{
    kel_core_ic_ebcom_path_add(&path);
}

void remove(const kel_ebcom_path_config &path)
{
    kel_core_ic_ebcom_path_rem(&path);
}

void look_up(const kel_ebcom_path_config &path)
{
    void *queue = nullptr;
    kel_ic_ebcom_queue_handle_get(path.dst_mac, &queue);
}

void nothing(const kel_ebcom_path_config &)
{
}

kel_ebcom_path_config one_of(const destination_pattern &pattern, uint32_t existing, uint32_t number)
{
    constexpr uint32_t stride = 7919; // prime
    return pattern.path(number * stride % existing);
}

// From the port of the first one, which has a queue.
kel_ebcom_path_config next(const destination_pattern &pattern, uint32_t existing, uint32_t number)
{
    kel_ebcom_path_config path = pattern.path(existing + number);
    path.iell_port = pattern.path(0).iell_port;
    return path;
}

kel_ebcom_path_config another(const destination_pattern &, uint32_t, uint32_t number)
{
    return stranger(number);
}

struct counted {
    const char *name;
    kel_ebcom_path_config (*path)(const destination_pattern &pattern, uint32_t existing, uint32_t number);
    void (*before)(const kel_ebcom_path_config &path); // not counted
    void (*operation)(const kel_ebcom_path_config &path);
    void (*after)(const kel_ebcom_path_config &path); // not counted
};

constexpr counted operations_on_paths[] = {
    {"add the next", next, nothing, add, remove},   {"remove the next", next, add, remove, nothing},
    {"add another", another, nothing, add, remove}, {"remove another", another, add, remove, nothing},
    {"look up", one_of, nothing, look_up, nothing}, {"look up in vain", another, nothing, look_up, nothing},
};

void count(const counted &what, const destination_pattern &pattern, uint32_t existing)
{
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_ZERO_STATS;
    for (uint32_t i = 0; i < times; ++i) {
        const kel_ebcom_path_config path = what.path(pattern, existing, i);
        what.before(path);
        CALLGRIND_TOGGLE_COLLECT;
        what.operation(path);
        CALLGRIND_TOGGLE_COLLECT;
        what.after(path);
    }
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_STOP_INSTRUMENTATION;
    const std::string name = std::string(pattern.name) + " | " + what.name + " | " + std::to_string(existing);
    CALLGRIND_DUMP_STATS_AT(name.c_str());
}

void count_all(const destination_pattern &pattern, uint32_t existing)
{
    for (const counted &each : operations_on_paths)
        count(each, pattern, existing);
}

void count_pattern(const destination_pattern &pattern)
{
    kel_ic_ebcom_init_qos();
    add(pattern.path(0));
    count_all(pattern, 1);
    for (uint32_t number = 1; number < pattern.most; ++number)
        add(pattern.path(number));
    count_all(pattern, pattern.most);
    for (uint32_t number = 0; number < pattern.most; ++number)
        remove(pattern.path(number));
    kel_ic_ebcom_deinit_qos();
}

} // namespace

int main()
{
    make_tables();
    for (const destination_pattern &each : destination_patterns())
        count_pattern(each);
}
