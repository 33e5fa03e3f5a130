#pragma once

#include <tiny_gltf.h>

#include <map>
#include <optional>
#include <unordered_map>
#include <vector>

#include "exchange/export/GltfMaterials.h"
#include "exchange/export/GltfPrimitives.h"
#include "exchange/export/NoteDrawing.h"
#include "exchange/export/StrokeFont.h"
#include "scene/OccurrenceWalk.h"

namespace KVR
{

class IAnnotationCallout;

/// Adds the annotation callouts of a scene to a glTF document: a group of nodes, one for each callout of each
/// occurrence, with lines and what the callout says.
class GltfNotes
{
public:
    GltfNotes(ExportTask& task, tinygltf::Model& model, GltfPrimitives& primitives, GltfMaterials& materials);

    /// Notes a callout of the walk's occurrence.
    void Add(OccurrenceWalk const& walk, SceneGeometry const& geometry, IAnnotationCallout const& callout);
    /// The nodes of all of them, in the scene's coordinates and unit. Those without a place are counted.
    std::vector<int> Write();

private:
    struct Occurrence
    {
        Matrix place;
        SceneComponent const* component;
        SceneGeometry const* geometry;
        IAnnotationCallout const* callout;
        SceneStyle const* style;
        bool isVisible;
    };
    struct Note
    {
        NoteDrawing drawing;
        int mesh = -1;
    };

    Note const& NoteOf(Occurrence const& occurrence);
    SceneLines LinesOf(NoteDrawing const& drawing) const;
    SceneLines TextOf(NoteDrawing const& drawing, SceneComponent const& component);
    double TextHeightOf(SceneComponent const& component) const;
    int MakeMesh(SceneLines const& lines, Occurrence const& occurrence);
    tinygltf::Value ExtrasOf(Occurrence const& occurrence, NoteDrawing const& drawing) const;

    ExportTask& m_task;
    tinygltf::Model& m_model;
    GltfPrimitives& m_primitives;
    GltfMaterials& m_materials;
    GltfBuffers m_buffers;
    std::vector<Occurrence> m_occurrences;
    std::unordered_map<IAnnotationCallout const*, Note> m_notes;
    std::optional<StrokeFont> m_font;
    /// Of each plane in which text stands, how far down the next one begins.
    std::map<std::vector<double>, double> m_textEnds;
};

}  // namespace KVR
