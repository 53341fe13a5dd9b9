// Registers a benchmark with both its clocks: real time, and the time of all threads together.
#pragma once

#include <benchmark/benchmark.h>

#define TIMED(...) BENCHMARK(__VA_ARGS__)->MeasureProcessCPUTime()->UseRealTime()
#define TIMED_TEMPLATE(...) BENCHMARK_TEMPLATE(__VA_ARGS__)->MeasureProcessCPUTime()->UseRealTime()

template <typename Work>
benchmark::internal::Benchmark* Timed(const std::string& name, Work work) {
    return benchmark::RegisterBenchmark(name.c_str(), work)->MeasureProcessCPUTime()->UseRealTime();
}
