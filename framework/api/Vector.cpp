#include "framework/api/Vector.h"

#include <algorithm>
#include <cmath>

#include "framework/api/Subscript.h"

namespace KVR
{

double& Vector::operator[](unsigned long long index)
{
    if (index >= m_components.size())
        ThrowInvalidSubscript();
    return m_components[index];
}

double Vector::operator[](unsigned long long index) const
{
    if (index >= m_components.size())
        ThrowInvalidSubscript();
    return m_components[index];
}

bool Vector::IsZero(double tolerance) const
{
    return std::all_of(m_components.begin(), m_components.end(), [&](double c) { return std::abs(c) <= tolerance; });
}

}  // namespace KVR
