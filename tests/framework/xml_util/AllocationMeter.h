#pragma once

#include <cstddef>

/// Counts what this program and the libraries in it take with operator new, which Xerces does too. Unlike a reading of
/// the process it is exact, and the same under sanitizers. One meter at a time.
class AllocationMeter
{
public:
    /// Begins to count.
    AllocationMeter();

    /// The number of allocations since the beginning.
    static std::size_t Count();
    /// Bytes taken and not given back since the beginning.
    std::ptrdiff_t Live() const;
    /// The largest value that Live has had.
    std::ptrdiff_t Peak() const;

private:
    std::ptrdiff_t m_start;
};
