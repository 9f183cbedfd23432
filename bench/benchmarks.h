// The families of benchmarks, each in a file of its own. bench/run reads them by their names.
#pragma once

void add_operation_benchmarks();
void add_growth_benchmarks();
void add_trace_benchmarks();
