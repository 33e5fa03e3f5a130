#pragma once

namespace KVR
{

/// A range of a curve's parameter.
class Interval
{
public:
    Interval(double lower, double upper) : m_lower(lower), m_upper(upper) {}

    /// The first parameter, which may be the larger one.
    double Lower() const { return m_lower; }
    /// The last parameter.
    double Upper() const { return m_upper; }

private:
    double m_lower;
    double m_upper;
};

}  // namespace KVR
