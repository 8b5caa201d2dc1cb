#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <vector>

// The figures of a benchmark that times each run itself: a speed target speaks of the
// median and the 90th percentile of single runs, which Google Benchmark's mean hides.
inline double percentile(std::vector<double> values, double share) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

// The median and the 90th percentile of the runs in milliseconds, and the slowest run when
// asked, as the benchmark's counters.
inline void reportTimings(benchmark::State& state, const std::vector<double>& milliseconds,
                          bool withMaximum) {
    if (milliseconds.empty()) return;
    state.counters["median_ms"] = percentile(milliseconds, 0.5);
    state.counters["p90_ms"] = percentile(milliseconds, 0.9);
    if (withMaximum) state.counters["max_ms"] = percentile(milliseconds, 1.0);
}
