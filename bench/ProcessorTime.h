#pragma once

#include <ctime>

namespace KVR::Bench
{

inline double ProcessorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Processor time, the system's share included: there is one thread, and what it reads was written just before. So
/// other work on the machine shows less than it would by the clock on the wall.
template <class Action>
double SecondsOf(Action action)
{
    double const start = ProcessorSeconds();
    action();
    return ProcessorSeconds() - start;
}

}  // namespace KVR::Bench
