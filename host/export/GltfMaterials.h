#pragma once

#include <tiny_gltf.h>

#include <string>
#include <unordered_map>

#include "host/export/Export.h"

namespace KVR
{

/// The materials of a glTF model, one for each style that is in use.
class GltfMaterials
{
public:
    GltfMaterials(ExportTask const& task, tinygltf::Model& model);

    /// The index of a style's material; of the scene's own colour for curves or surfaces where there is no such style.
    int Of(std::string const& styleId, bool isCurve);

private:
    int Add(ModelStyle const& style);

    ExportTask const& m_task;
    tinygltf::Model& m_model;
    std::unordered_map<std::string, int> m_styles;
    ModelStyle m_surface;
    ModelStyle m_curve;
    int m_surfaceIndex = -1;
    int m_curveIndex = -1;
};

/// A fraction of sRGB as one of linear light.
double LinearOf(double fraction);

}  // namespace KVR
