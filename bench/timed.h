// Registers a benchmark with both its clocks: real time, and the time of all threads together.
#pragma once

#include <benchmark/benchmark.h>

#define TIMED(...) BENCHMARK(__VA_ARGS__)->MeasureProcessCPUTime()->UseRealTime()
#define TIMED_TEMPLATE(...) BENCHMARK_TEMPLATE(__VA_ARGS__)->MeasureProcessCPUTime()->UseRealTime()
