#include "framework/api/Matrix3d.h"

#include <cstddef>

#include "framework/api/Subscript.h"

namespace KVR
{

namespace
{

constexpr std::array<double, Matrix3d::kElementCount> kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

std::size_t PlaceOf(int row, int column)
{
    if (row < 0 || row >= Matrix3d::kDimension || column < 0 || column >= Matrix3d::kDimension)
        ThrowInvalidSubscript();
    return static_cast<std::size_t>(row) * Matrix3d::kDimension + static_cast<std::size_t>(column);
}

}  // namespace

IMatrix::~IMatrix() = default;
Matrix3d::Matrix3d() : m_elements(kIdentity) {}
Matrix3d::~Matrix3d() = default;

double Matrix3d::Element(int row, int column) const
{
    return m_elements[PlaceOf(row, column)];
}
void Matrix3d::SetElement(int row, int column, double value)
{
    m_elements[PlaceOf(row, column)] = value;
}
bool Matrix3d::IsIdentity() const
{
    return m_elements == kIdentity;
}

}  // namespace KVR
