#pragma once

#include <TDF_LabelMap.hxx>
#include <TDF_LabelSequence.hxx>
#include <string>
#include <unordered_map>

#include "exchange/export/DocumentParts.h"
#include "exchange/export/DocumentVariant.h"
#include "exchange/export/ShapeDocument.h"
#include "scene/OccurrenceState.h"

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

    void CarryBelow(DocumentVariant const& assembly, OccurrenceState const& state, OccurrenceState const& known);
    void CarryTo(DocumentVariant::Child const& child, SceneComponent const& part, OccurrenceState const& state,
                 OccurrenceState const* known);
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
