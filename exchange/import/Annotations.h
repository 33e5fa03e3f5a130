#pragma once

#include <NCollection_DataMap.hxx>
#include <TDF_Label.hxx>
#include <TDF_LabelMapHasher.hxx>
#include <TopoDS_Shape.hxx>
#include <functional>
#include <unordered_set>
#include <vector>

#include "authoring/CurveRecord.h"
#include "authoring/SceneRecords.h"
#include "exchange/import/ProductPlan.h"
#include "exchange/model/Losses.h"
#include "exchange/model/ModelDocument.h"

namespace KVR
{

/// Dimensions, tolerances and datums of a document as the notes of a scene.
class Annotations
{
public:
    struct Note
    {
        Authoring::CalloutRecord callout;
        /// What the elements of the callout are drawn with, by the ids of their curves.
        std::vector<std::pair<UTF8String, Authoring::CurveRecord>> curves;
    };

    /// `idsOf` answers the ids of what a label became: components, bodies, faces, edges.
    Annotations(ModelDocument const& model, ProductPlan const& plan,
                std::function<std::vector<UTF8String>(TDF_Label const&)> const& idsOf, Losses& losses);

    /// The notes of a component, by its place in the plan.
    std::vector<Note> const& NotesOf(std::size_t component) const;
    /// The id of the note that a label became; empty for another label.
    UTF8String IdOf(TDF_Label const& label) const;
    /// The id of the only note of that label; empty for none or several.
    UTF8String IdOf(std::string const& label) const;
    std::size_t Count() const noexcept { return m_count; }
    /// The entities of a STEP file that became notes, as far as they are known.
    std::unordered_set<Part21File::Number> const& Entities() const noexcept { return m_entities; }

private:
    std::vector<std::vector<Note>> m_notes;
    NCollection_DataMap<TDF_Label, UTF8String, TDF_LabelMapHasher> m_ids;
    /// By labels; empty for one of several.
    std::unordered_map<std::string, UTF8String> m_idOfLabel;
    std::size_t m_count = 0;
    std::unordered_set<Part21File::Number> m_entities;

    friend class AnnotationReader;
};

}  // namespace KVR
