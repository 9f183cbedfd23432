// The benchmarks of the library over the null platform. To be run by bench/run, which compares them pair by pair.
#include "benchmarks.h"
#include "operations.h"

#include <benchmark/benchmark.h>

int main(int argc, char **argv)
{
    make_tables();
    add_operation_benchmarks();
    add_growth_benchmarks();
    add_trace_benchmarks();

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
