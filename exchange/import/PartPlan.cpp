#include "exchange/import/PartPlan.h"

#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Iterator.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "exchange/import/StyleTable.h"
#include "exchange/model/CleanText.h"

namespace KVR
{

namespace
{

char const* TypeOf(TopAbs_ShapeEnum kind)
{
    switch (kind)
    {
        case TopAbs_SOLID:
            return "BrepSolid";
        case TopAbs_WIRE:
        case TopAbs_EDGE:
            return "BrepWire";
        default:
            return "BrepSheet";
    }
}

bool IsCurve(TopoDS_Shape const& shape)
{
    return shape.ShapeType() == TopAbs_EDGE || shape.ShapeType() == TopAbs_WIRE;
}

bool HasChild(TopoDS_Shape const& shape)
{
    return shape.ShapeType() == TopAbs_EDGE || shape.ShapeType() == TopAbs_FACE || TopoDS_Iterator(shape).More();
}

}  // namespace

PartPlan::PartPlan(ComponentPlan const& component, ModelDocument const& model, StyleTable& styles, Numbers& numbers,
                   Losses& losses)
    : style(styles.StyleOf(component.label, false)),
      m_name(component.name.View()),
      m_model(model),
      m_numbers(numbers),
      m_losses(losses)
{
    if (component.shape.IsNull())
        return;
    ReadSubShapes(component.label, styles);
    // The last comes first.
    std::vector<Work> work{{component.shape, {}, true}};
    while (!work.empty())
        Divide(work);
    for (BodyPlan const& body : bodies)
    {
        m_ids.Bind(body.shape, body.id);
        TopTools_IndexedMapOfShape faces;
        TopExp::MapShapes(body.shape, TopAbs_FACE, faces);
        TopTools_IndexedMapOfShape edges;
        TopExp::MapShapes(body.shape, TopAbs_EDGE, edges);
        for (int i = 1; i <= faces.Extent(); ++i)
            if (subShapes.IsBound(faces(i)) && !m_ids.IsBound(faces(i)))
                m_ids.Bind(faces(i), FaceId(body, static_cast<std::size_t>(i) - 1));
        for (int i = 1; i <= edges.Extent(); ++i)
            if (subShapes.IsBound(edges(i)) && !m_ids.IsBound(edges(i)))
                m_ids.Bind(edges(i), EdgeId(body, static_cast<std::size_t>(i) - 1));
    }
}

void PartPlan::ReadSubShapes(TDF_Label const& label, StyleTable& styles)
{
    TDF_LabelSequence labels;
    XCAFDoc_ShapeTool::GetSubShapes(label, labels);
    auto const colors = XCAFDoc_DocumentTool::ColorTool(label);
    for (TDF_Label const& sub : labels)
    {
        TopoDS_Shape const shape = XCAFDoc_ShapeTool::GetShape(sub);
        if (shape.IsNull())
            continue;
        SubShapeInfo info;
        info.label = sub;
        info.name = NameOfLabel(sub);
        info.style = styles.StyleOf(sub, IsCurve(shape));
        info.isVisible = colors->IsVisible(sub);
        subShapes.Bind(shape, info);
    }
}

void PartPlan::Divide(std::vector<Work>& work)
{
    Work item = std::move(work.back());
    work.pop_back();
    if (SubShapeInfo const* const info = subShapes.Seek(item.shape))
    {
        if (!info->style.IsEmpty())
            item.style = info->style;
        item.isVisible = item.isVisible && info->isVisible;
    }
    if (item.shape.ShapeType() > TopAbs_COMPSOLID)
    {
        AddBody(item);
        return;
    }
    // Loose faces of one compound are one sheet; the rest are pieces of their own.
    TopoDS_Compound sheet;
    std::size_t faceCount = 0;
    TopoDS_Shape face;
    std::vector<TopoDS_Shape> others;
    BRep_Builder builder;
    for (TopoDS_Iterator child(item.shape); child.More(); child.Next())
    {
        if (child.Value().ShapeType() != TopAbs_FACE)
        {
            others.push_back(child.Value());
            continue;
        }
        if (faceCount++ == 0)
            builder.MakeCompound(sheet);
        face = child.Value();
        builder.Add(sheet, face);
    }
    for (auto other = others.rbegin(); other != others.rend(); ++other)
        work.push_back({*other, item.style, item.isVisible});
    if (faceCount == 1)
        work.push_back({face, item.style, item.isVisible});
    else if (faceCount > 1)
        AddBody({sheet, item.style, item.isVisible});
}

void PartPlan::AddBody(Work const& item)
{
    if (item.shape.ShapeType() != TopAbs_VERTEX && !HasChild(item.shape))
    {
        m_losses.AddItem("shapes without geometry", m_name);
        return;
    }
    BodyPlan body;
    body.shape = item.shape;
    body.style = item.style;
    body.isVisible = item.isVisible;
    body.type = TypeOf(item.shape.ShapeType());
    body.isPoint = item.shape.ShapeType() == TopAbs_VERTEX;
    if (SubShapeInfo const* const info = subShapes.Seek(item.shape))
        body.name = info->name;
    auto const named = m_model.bodyNames.find(item.shape.TShape().get());
    if (body.name.IsEmpty() && named != m_model.bodyNames.end())
        body.name = CleanText(named->second);
    if (body.isPoint)
    {
        body.id = UTF8String("point" + std::to_string(++m_numbers.points));
        bodies.push_back(std::move(body));
        return;
    }
    std::string const number = std::to_string(++m_numbers.bodies);
    body.id = UTF8String("body" + number);
    std::size_t faceCount = 0;
    std::size_t bareCount = 0;
    for (TopExp_Explorer face(body.shape, TopAbs_FACE); face.More(); face.Next(), ++faceCount)
    {
        TopLoc_Location location;
        if (BRep_Tool::Surface(TopoDS::Face(face.Current()), location).IsNull())
            ++bareCount;
    }
    if (faceCount > 0)
        body.meshId = UTF8String("mesh" + number);
    body.hasGeometry = bareCount == 0;
    if (bareCount > 0 && bareCount < faceCount)
        m_losses.AddOf("surfaces of bodies of which other faces have none", body.id.View(), faceCount - bareCount);
    bodies.push_back(std::move(body));
}

std::vector<UTF8String> PartPlan::IdsOf(TopoDS_Shape const& shape) const
{
    std::vector<UTF8String> ids;
    std::vector<TopoDS_Shape> work{shape};
    while (!work.empty())
    {
        TopoDS_Shape const current = work.back();
        work.pop_back();
        if (UTF8String const* const id = m_ids.Seek(current))
            ids.push_back(*id);
        else if (current.ShapeType() <= TopAbs_COMPSOLID)
            for (TopoDS_Iterator child(current); child.More(); child.Next())
                work.push_back(child.Value());
    }
    return ids;
}

UTF8String PartPlan::FaceId(BodyPlan const& body, std::size_t place)
{
    return body.id + UTF8String(".f" + std::to_string(place + 1));
}

UTF8String PartPlan::EdgeId(BodyPlan const& body, std::size_t place)
{
    return body.id + UTF8String(".e" + std::to_string(place + 1));
}

}  // namespace KVR
