// "trace/..." with the counter "ratio": a trace statement over something else, both timed in turns. While no session
// records, against an empty loop and the tracer's own statement; "trace/recorded", which is for a process that a
// session records, against the tracer's printf.
#include "benchmarks.h"
#include "src/call_frame.h"
#include "turns.h"

#include <benchmark/benchmark.h>
#include <lttng/tracef.h>

namespace
{

constexpr char trace_domain[] = "EBCOM";
constexpr int repetitions_of_turn = 1000;

// The compiler must not know it, as little as it knows what real statements show.
int eth_dev_id = 7;

void empty_loop()
{
    for (int i = 0; i < repetitions_of_turn; ++i)
        benchmark::DoNotOptimize(eth_dev_id);
}

void statements()
{
    for (int i = 0; i < repetitions_of_turn; ++i) {
        benchmark::DoNotOptimize(eth_dev_id);
        TRACE(API_CALL, "ork_ebcom_interface_create(eth_dev_id=%d)", eth_dev_id);
    }
}

void tracepoints()
{
    for (int i = 0; i < repetitions_of_turn; ++i) {
        benchmark::DoNotOptimize(eth_dev_id);
        lttng_ust_tracepoint(com_vantorix_ob_kel_ic, API_CALL, "trace_bench.cpp:42", "EBCOM", "made beforehand");
    }
}

void tracefs()
{
    for (int i = 0; i < repetitions_of_turn; ++i) {
        benchmark::DoNotOptimize(eth_dev_id);
        lttng_ust_tracef("%s(): ork_ebcom_interface_create(eth_dev_id=%d)", "statements", eth_dev_id);
    }
}

void add(const char *name, void (*measured)(), void (*reference)())
{
    const auto run = [measured, reference](benchmark::State &state) {
        turns taken;
        while (state.KeepRunningBatch(repetitions_of_turn))
            state.SetIterationTime(taken.take(measured, reference));
        state.counters["ratio"] = taken.median_ratio();
    };
    benchmark::RegisterBenchmark(name, run)->UseManualTime();
}

} // namespace

void add_trace_benchmarks()
{
    add("trace/disabled/statement over empty loop", statements, empty_loop);
    add("trace/disabled/tracepoint over empty loop", tracepoints, empty_loop);
    add("trace/disabled/statement over tracepoint", statements, tracepoints);
    add("trace/recorded/statement over tracef", statements, tracefs);
}
