#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "exchange/model/StepProductTable.h"

class TopoDS_Shape;

namespace KVR
{

/// Holds what solids measure against what a file says of them.
class SolidCheck
{
public:
    /// The unit of the shapes.
    explicit SolidCheck(double metresPerUnit) : m_metresPerUnit(metresPerUnit) {}

    /// Takes what differs by more than a thousandth: of the measure, and for the centre of the length of an edge of a
    /// cube of that volume.
    void Check(std::string const& name, StepSolid const& said, TopoDS_Shape const& solid);

    /// A sentence without its full stop on the solids that differ, the first ten by name; empty when none does.
    std::string Remark() const;

private:
    double m_metresPerUnit;
    std::size_t m_count = 0;
    std::string m_differences;
};

}  // namespace KVR
