// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

// Benchmarks report how a measured operation compares with a reference measured in the same run,
// so that the numbers mean the same on any machine.
namespace BenchmarkRatio {

// The best time of one call over a few rounds, in nanoseconds.
inline double bestNanoseconds(
    const std::function<void()>& operation, int callsPerRound, int rounds = 5)
{
    double best = 0;
    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        for (int call = 0; call < callsPerRound; ++call)
            operation();
        const std::chrono::duration<double, std::nano> elapsed
            = std::chrono::steady_clock::now() - start;
        const double perCall = elapsed.count() / callsPerRound;
        if (round == 0 || perCall < best)
            best = perCall;
    }
    return best;
}

// The median time of one call over the rounds, in nanoseconds: one slow round on a busy machine
// does not move it.
inline double medianNanoseconds(const std::function<void()>& operation, int rounds = 5)
{
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        operation();
        times.push_back(
            std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start)
                .count());
    }
    std::sort(times.begin(), times.end());
    const size_t middle = times.size() / 2;
    return times.size() % 2 ? times[middle] : (times[middle - 1] + times[middle]) / 2;
}

inline void report(const char* name, double measured, const char* referenceName, double reference)
{
    std::printf("%-40s %10.1f us   %-30s %10.1f us   ratio %.2f\n", name, measured / 1000.0,
        referenceName, reference / 1000.0, measured / reference);
}

// The same for memory, in bytes.
inline void reportMemory(
    const char* name, double measured, const char* referenceName, double reference)
{
    std::printf("%-40s %10.1f MB   %-30s %10.1f MB   ratio %.2f\n", name, measured / 1048576.0,
        referenceName, reference / 1048576.0, measured / reference);
}

}
