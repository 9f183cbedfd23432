// "operation/..." for every exported operation, tracing off: its time through the library, and as the counter "ratio"
// that time over the time of the bare calls.
#include "benchmarks.h"
#include "operations.h"
#include "turns.h"

#include <benchmark/benchmark.h>

#include <string>

namespace
{

constexpr uint64_t repetitions_of_turn = 500;

void measure(benchmark::State &state, const operation &measured)
{
    const uint64_t repetitions = measured.most_at_a_time ? 1 : repetitions_of_turn;
    turns taken;
    while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(repetitions)))
        state.SetIterationTime(taken.take([&] { measured.library(repetitions); }, [&] { measured.bare(repetitions); }));
    state.counters["ratio"] = taken.median_ratio();
}

} // namespace

void add_operation_benchmarks()
{
    for (const operation &each : operations()) {
        const auto run = [&each](benchmark::State &state) { measure(state, each); };
        auto *added = benchmark::RegisterBenchmark((std::string("operation/") + each.name).c_str(), run);
        added->UseManualTime();
        if (each.most_at_a_time)
            added->Iterations(static_cast<benchmark::IterationCount>(each.most_at_a_time));
        if (each.brings_up)
            continue;
        added->Setup([](const benchmark::State &) { services_up(); });
        added->Teardown([](const benchmark::State &) { services_down(); });
    }
}
