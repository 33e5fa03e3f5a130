#pragma once

#include <TDF_LabelMap.hxx>
#include <TDF_LabelSequence.hxx>
#include <string>
#include <unordered_map>

#include "exchange/export/DocumentParts.h"
#include "exchange/export/DocumentVariant.h"
#include "exchange/export/ShapeDocument.h"
#include "scene/OccurrenceWalk.h"

namespace KVR
{

/// Gives occurrences of parts the colour and visibility that instances and overrides give them: a part that an assembly
/// places itself has it with its place, one further down with the path to it. Assemblies have neither in STEP, so that
/// what holds for one is said of the parts below it.
class DocumentLooks
{
public:
    DocumentLooks(ExportTask& task, ShapeDocument& document, DocumentParts const& parts);

    /// What the assembly itself says of occurrences below it.
    void Carry(DocumentVariant const& assembly);
    /// Counts what overrides say of single bodies.
    void CountOverridesOfGeometry();

private:
    struct Look
    {
        SceneStyle const* style = nullptr;
        bool isVisible = true;

        bool operator==(Look const&) const = default;
    };

    /// Gives what a placed assembly is the look that the one above gives it, part by part. `walk` stands at it, and is
    /// led through all below it.
    void CarryBelow(DocumentVariant const& placed, OccurrenceWalk& walk);
    /// The state of a part that the last component of the path places. `known` is what the assemblies further down say
    /// by themselves; null when there is none between.
    void CarryTo(SceneComponent const& part, OccurrenceState const& state, OccurrenceState const* known);
    /// Makes a part ready for looks along paths; false for one that can have none.
    bool Prepare(TDF_Label const& part);
    Look LookOf(OccurrenceState const& state, SceneComponent const& part);
    bool IsUnstyled(SceneComponent const& component);

    ExportTask& m_task;
    ShapeDocument& m_document;
    DocumentParts const& m_parts;
    /// From the assembly on.
    TDF_LabelSequence m_path;
    std::size_t m_paths = 0;
    std::unordered_map<SceneComponent const*, bool> m_unstyled;
    TDF_LabelMap m_prepared;
};

}  // namespace KVR
