// SPDX-License-Identifier: MIT
/// How the time that something takes grows with its size.
#pragma once

#include <algorithm>
#include <ctime>

/// The processor time of a step. The least of some rounds: what else runs on the machine only makes it longer.
template <class Step> double CostOf(Step in_step)
{
    const int rounds = 3;
    std::clock_t least = 0;
    for (int i = 0; i < rounds; ++i)
    {
        const std::clock_t begin = std::clock();
        in_step();
        const std::clock_t time = std::clock() - begin;
        least = i == 0 ? time : std::min(least, time);
    }
    return static_cast<double>(least);
}

/// How many times as much a step costs for four times the size: about 4 when its time is linear, 16 when it is
/// quadratic. The caches of the machine are small, which is why even linear ones may reach 6.
/// \param in_makeStep gets a size, and returns the step for it
template <class MakeStep> double GrowthOf(MakeStep in_makeStep, int in_size)
{
    const double small = CostOf(in_makeStep(in_size));
    return CostOf(in_makeStep(4 * in_size)) / std::max(small, 1.0);
}

/// More than anything linear, less than anything quadratic.
const double gMostGrowth = 8;
