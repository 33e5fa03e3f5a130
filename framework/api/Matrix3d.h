#pragma once

#include <array>

#include "framework/api/Export.h"

namespace KVR
{

/// Read access to a matrix of doubles.
class KVR_API IMatrix
{
public:
    virtual ~IMatrix();
    /// The number of rows.
    virtual int RowDimension() const = 0;
    /// The number of columns.
    virtual int ColDimension() const = 0;
    /// Rows and columns count from 0; a bad index throws std::out_of_range.
    virtual double Element(int row, int column) const = 0;

protected:
    IMatrix() = default;
    IMatrix(IMatrix const&) = default;
    IMatrix& operator=(IMatrix const&) = default;
};

/// A transform of space: 4 by 4, applied to points as columns, so that the translation stands in column 3 and is in the
/// length unit of the object that answers it. The identity until set.
class KVR_API Matrix3d : public IMatrix
{
public:
    static constexpr int kDimension = 4;
    static constexpr int kElementCount = kDimension * kDimension;

    Matrix3d();
    Matrix3d(Matrix3d const&) = default;
    Matrix3d& operator=(Matrix3d const&) = default;
    ~Matrix3d() override;

    int RowDimension() const override { return kDimension; }
    int ColDimension() const override { return kDimension; }
    double Element(int row, int column) const override;
    /// Sets one element. A bad index throws std::out_of_range.
    void SetElement(int row, int column, double value);
    /// The 16 elements, row by row.
    std::array<double, kElementCount> const& Elements() const { return m_elements; }
    /// Sets all elements, row by row.
    void SetElements(std::array<double, kElementCount> const& elements) { m_elements = elements; }
    /// Whether every element equals the identity's exactly: a transform is never dropped for being small.
    bool IsIdentity() const;

private:
    std::array<double, kElementCount> m_elements;
};

}  // namespace KVR
