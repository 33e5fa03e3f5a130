#include "exchange/import/NoteFacts.h"

#include <TopExp_Explorer.hxx>
#include <TopoDS_Shape.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_Note.hxx>
#include <XCAFDoc_NoteComment.hxx>
#include <XCAFDoc_NotesTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <algorithm>
#include <charconv>

#include "exchange/model/CleanText.h"

namespace KVR
{

NoteFacts::NoteFacts(ModelDocument const& model) : m_model(model) {}

std::unordered_set<Part21File::Number> NoteFacts::ItemsOf(TDF_LabelSequence const& shapes) const
{
    std::unordered_set<Part21File::Number> items;
    for (TDF_Label const& label : shapes)
    {
        TopoDS_Shape const shape = XCAFDoc_ShapeTool::GetShape(label);
        if (shape.IsNull())
            continue;
        for (TopAbs_ShapeEnum const kind : {TopAbs_FACE, TopAbs_EDGE})
            for (TopExp_Explorer part(shape, kind); part.More(); part.Next())
                if (auto const known = m_model.entityIds.find(part.Current().TShape().get());
                    known != m_model.entityIds.end())
                {
                    // "#65".
                    Part21File::Number number = 0;
                    std::from_chars(known->second.data() + 1, known->second.data() + known->second.size(), number);
                    items.insert(number);
                }
    }
    return items;
}

int NoteFacts::Match(StepTolerance const& tolerance, std::unordered_set<Part21File::Number> const& items) const
{
    if (tolerance.items.empty() || items.empty())
        return 1;
    return std::any_of(tolerance.items.begin(), tolerance.items.end(),
                       [&](Part21File::Number item) { return items.count(item) > 0; })
               ? 2
               : 0;
}

StepTolerance const* NoteFacts::Take(bool isDimension, std::string const& name, std::string const& type,
                                     TDF_LabelSequence const& shapes)
{
    if (!m_model.step)
        return nullptr;
    std::unordered_set<Part21File::Number> const items = ItemsOf(shapes);
    StepTolerance const* best = nullptr;
    int bestMatch = 0;
    for (StepTolerance const& tolerance : m_model.step->tolerances.tolerances)
    {
        if (tolerance.isDimension != isDimension || m_taken.count(tolerance.number) > 0 ||
            (!isDimension && tolerance.type != type) || CleanText(tolerance.name).View() != name)
            continue;
        if (int const match = Match(tolerance, items); match > bestMatch)
        {
            best = &tolerance;
            bestMatch = match;
        }
        if (bestMatch == 2)
            break;
    }
    if (best)
        m_taken.insert(best->number);
    return best;
}

StepDatumReference const* NoteFacts::FrameOf(StepTolerance const* tolerance, AnnotationDetails const& datum)
{
    if (!tolerance)
        return nullptr;
    auto const found = std::find_if(tolerance->frame.begin(), tolerance->frame.end(),
                                    [&](StepDatumReference const& reference) {
                                        return reference.letter == datum.letter && reference.position == datum.position;
                                    });
    return found == tolerance->frame.end() ? nullptr : &*found;
}

StepDatumTarget const* NoteFacts::TakeTarget(AnnotationDetails const& datum)
{
    if (!m_model.step)
        return nullptr;
    for (StepDatumTarget const& target : m_model.step->tolerances.targets)
        if (target.letter == datum.letter && (target.id == datum.target || target.id == datum.letter + datum.target))
        {
            m_taken.insert(target.number);
            return &target;
        }
    return nullptr;
}

void NoteFacts::Add(AnnotationDetails& details, StepTolerance const& tolerance)
{
    if (tolerance.isDimension)
    {
        // One whose value does not bear the usual name arrives without its type, and that of a range without its value.
        if (details.type.empty() && DimensionTypeOf(tolerance.type) != kDimensionType_None)
            details.type = tolerance.type;
        if (!details.value)
            details.value = tolerance.value;
        details.fit = tolerance.fit;
        details.fitOf = tolerance.fitOf;
        return;
    }
    details.magnitude = tolerance.magnitude;
    details.maximum = tolerance.most;
    details.displacement = tolerance.displacement;
    details.unitSize = tolerance.unitSize;
    details.zone = tolerance.zone;
    details.projection = tolerance.projection;
    details.modifiers = tolerance.modifiers;
}

void CountComments(Handle(TDocStd_Document) const& document, Losses& losses)
{
    TDF_LabelSequence notes;
    XCAFDoc_DocumentTool::NotesTool(document->Main())->GetNotes(notes);
    for (TDF_Label const& label : notes)
    {
        auto const note = XCAFDoc_Note::Get(label);
        auto const comment = Handle(XCAFDoc_NoteComment)::DownCast(note);
        UTF8String const text = CleanExtendedText(comment.IsNull() ? note->UserName() : comment->Comment());
        losses.AddItem("comments", std::string(text.View()));
    }
}

}  // namespace KVR
