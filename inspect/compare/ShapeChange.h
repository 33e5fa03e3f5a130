#pragma once

#include <cstddef>
#include <string>

#include "inspect/Compare.h"
#include "inspect/compare/ComparedScene.h"

namespace KVR
{

/// What it means that two pieces of geometry that match have different shapes.
struct ShapeChange
{
    ChangeKind kind = ChangeKind::kBody;
    /// False for a mesh whose body changed as well, which tells all.
    bool isTold = true;
    /// Measures of both, where there are any.
    std::string first;
    std::string second;

    static ShapeChange Of(ComparedScene const& first, std::size_t a, ComparedScene const& second, std::size_t b);
};

}  // namespace KVR
