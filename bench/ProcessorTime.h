#pragma once

#include <ctime>

namespace KVR::Bench
{

/// The processor time that this process has taken, the system's share included, in seconds.
inline double ProcessorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Processor time of the action. What is measured has one thread and reads what was written just before, so that other
/// work on the machine shows less than it would by the clock on the wall.
template <class Action>
double SecondsOf(Action action)
{
    double const start = ProcessorSeconds();
    action();
    return ProcessorSeconds() - start;
}

}  // namespace KVR::Bench
