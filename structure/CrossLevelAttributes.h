#pragma once

#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/IdSet.h"
#include "framework/api/Matrix3d.h"

namespace KVR
{

class XMLProducerImpl;

struct CrossLevelVisibility
{
    IdSet path;
    bool visible = false;
};

struct CrossLevelStyle
{
    IdSet path;
    IdSet styles;
};

struct CrossLevelTransform
{
    IdSet path;
    Matrix3d transform;
};

/// Appends what a "CrossLevelAttributes" element says, in document order; paths are neither sorted nor merged nor
/// resolved. False for a null node.
[[nodiscard]] bool ReadCrossLevelAttributes(XMLProducerImpl* producer, xercesc::DOMNode const* node,
                                            std::vector<CrossLevelVisibility>& visibilities,
                                            std::vector<CrossLevelStyle>& styles,
                                            std::vector<CrossLevelTransform>& transforms);

}  // namespace KVR
