#pragma once

#include <map>

#include "exchange/view/ViewText.h"
#include "scene/Transform.h"

namespace KVR
{

/// The transforms of a viewer file, each once; the identity is the first one.
class ViewTransforms
{
public:
    ViewTransforms() { IndexOf(kIdentity); }

    /// One that has elements which are no places is the identity.
    std::size_t IndexOf(Matrix const& transform);

    /// Twelve numbers for each: three rows.
    std::string List() const { return m_numbers.List(); }

private:
    std::map<Matrix, std::size_t> m_places;
    ViewColumn m_numbers;
};

}  // namespace KVR
