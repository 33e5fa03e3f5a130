#include "exchange/certify/step/StepShapes.h"

#include <BRepGProp.hxx>
#include <BRep_Tool.hxx>
#include <GProp_GProps.hxx>
#include <Interface_Static.hxx>
#include <STEPControl_Reader.hxx>
#include <StepData_StepModel.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedDataMapOfShapeListOfShape.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_TShape.hxx>
#include <TransferBRep.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>
#include <stdexcept>

namespace KVR::Certification
{

namespace
{

using Id = Part21Model::Id;

// How much is done before shapes are measured, which takes the rest of the time.
constexpr double kFraction_Begun = 0.05;
constexpr double kFraction_Read = 0.2;
constexpr double kFraction_Transferred = 0.5;

Id EntityOf(ShapeEntities const& entities, TopoDS_Shape const& shape)
{
    auto const found = entities.find(shape.TShape().get());
    return found == entities.end() ? 0 : found->second;
}

void AddCentre(GProp_GProps const& properties, double size, FactPoint& moment)
{
    for (int axis = 0; axis < 3; ++axis)
        moment[static_cast<std::size_t>(axis)] += size * properties.CentreOfMass().Coord(axis + 1);
}

StepPiece FaceOf(TopoDS_Shape const& face, ShapeEntities const& entities)
{
    StepPiece piece;
    piece.entity = EntityOf(entities, face);
    piece.isFace = true;
    GProp_GProps properties;
    BRepGProp::SurfaceProperties(face, properties);
    piece.bulk.area = properties.Mass();
    AddCentre(properties, piece.bulk.area, piece.bulk.areaMoment);
    return piece;
}

StepPiece LineOf(TopoDS_Shape const& edge, Id entity)
{
    StepPiece piece;
    piece.entity = entity;
    GProp_GProps properties;
    BRepGProp::LinearProperties(edge, properties);
    piece.bulk.length = properties.Mass();
    AddCentre(properties, piece.bulk.length, piece.bulk.lengthMoment);
    return piece;
}

void AddFaces(StepShape& all, TopoDS_Shape const& shape, ShapeEntities const& entities)
{
    // A face's own entity, or that of the shell around it.
    std::unordered_map<TopoDS_TShape const*, Id> shellOfFace;
    for (TopExp_Explorer shell(shape, TopAbs_SHELL); shell.More(); shell.Next())
        if (Id const entity = EntityOf(entities, shell.Current()))
            for (TopExp_Explorer face(shell.Current(), TopAbs_FACE); face.More(); face.Next())
                shellOfFace[face.Current().TShape().get()] = entity;
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    for (int i = 1; i <= faces.Extent(); ++i)
    {
        TopLoc_Location location;
        if (BRep_Tool::Surface(TopoDS::Face(faces(i)), location).IsNull())
            continue;
        StepPiece& piece = all.pieces.emplace_back(FaceOf(faces(i), entities));
        if (Id const shell = EntityOf(shellOfFace, faces(i)))
            piece.shells.push_back(shell);
        ++all.faces;
    }
}

void AddLines(StepShape& all, TopoDS_Shape const& shape, ShapeEntities const& entities)
{
    std::unordered_map<TopoDS_TShape const*, Id> wireOfEdge;
    for (TopExp_Explorer wire(shape, TopAbs_WIRE, TopAbs_FACE); wire.More(); wire.Next())
        if (Id const entity = EntityOf(entities, wire.Current()))
            for (TopExp_Explorer edge(wire.Current(), TopAbs_EDGE); edge.More(); edge.Next())
                wireOfEdge[edge.Current().TShape().get()] = entity;
    TopTools_IndexedMapOfShape edges;
    for (TopExp_Explorer edge(shape, TopAbs_EDGE, TopAbs_FACE); edge.More(); edge.Next())
        edges.Add(edge.Current());
    for (int i = 1; i <= edges.Extent(); ++i)
    {
        Id const own = EntityOf(entities, edges(i));
        all.pieces.push_back(LineOf(edges(i), own != 0 ? own : EntityOf(wireOfEdge, edges(i))));
    }
}

}  // namespace

StepShape MeasuredShape(TopoDS_Shape const& shape, ShapeEntities const& entities)
{
    StepShape all;
    AddFaces(all, shape, entities);
    AddLines(all, shape, entities);
    for (StepPiece const& piece : all.pieces)
        all.bulk.Add(piece.bulk);
    TopTools_IndexedMapOfShape solids;
    TopExp::MapShapes(shape, TopAbs_SOLID, solids);
    all.solids = static_cast<unsigned long long>(solids.Extent());
    for (int i = 1; i <= solids.Extent(); ++i)
    {
        GProp_GProps properties;
        BRepGProp::VolumeProperties(solids(i), properties);
        double const volume = properties.Mass();
        all.bulk.volume += volume;
        all.bulk.absoluteVolume += std::abs(volume);
        AddCentre(properties, volume, all.bulk.volumeMoment);
    }
    TopTools_IndexedMapOfShape vertices;
    TopExp::MapShapes(shape, TopAbs_VERTEX, vertices);
    for (int i = 1; i <= vertices.Extent(); ++i)
    {
        gp_Pnt const point = BRep_Tool::Pnt(TopoDS::Vertex(vertices(i)));
        all.corners.push_back({point.X(), point.Y(), point.Z()});
    }
    for (TopExp_Explorer point(shape, TopAbs_VERTEX, TopAbs_EDGE); point.More(); point.Next())
        ++all.points;
    return all;
}

struct StepShapes::Content
{
    STEPControl_Reader reader;
    Handle(StepData_StepModel) model;
    Handle(Transfer_TransientProcess) process;
    std::unordered_map<Id, Handle(Standard_Transient)> entities;
    ShapeEntities entityOfShape;
    std::unordered_map<Id, std::unique_ptr<StepShape>> measured;
    std::size_t items = 1;
    TellFraction tell;
    double told = 0.0;

    void Tell(double fraction)
    {
        constexpr double kPercent = 0.01;
        if (tell && fraction >= told + kPercent)
            tell(told = fraction);
    }
};

StepShapes::StepShapes(std::string const& path, std::size_t items, TellFraction const& tell)
    : m_content(std::make_unique<Content>())
{
    Content& content = *m_content;
    content.items = std::max<std::size_t>(1, items);
    content.tell = tell;
    content.Tell(kFraction_Begun);
    Interface_Static::SetCVal("xstep.cascade.unit", "MM");
    if (content.reader.ReadFile(path.c_str()) != IFSelect_RetDone)
        throw std::runtime_error("Open CASCADE cannot read it");
    content.Tell(kFraction_Read);
    content.reader.TransferRoots();
    content.Tell(kFraction_Transferred);
    content.model = Handle(StepData_StepModel)::DownCast(content.reader.Model());
    content.process = content.reader.WS()->TransferReader()->TransientProcess();
    if (content.model.IsNull() || content.process.IsNull())
        throw std::runtime_error("Open CASCADE cannot read it");
    for (int i = 1; i <= content.process->NbMapped(); ++i)
    {
        Handle(Standard_Transient) const& entity = content.process->Mapped(i);
        auto const id = static_cast<Id>(std::max(0, content.model->IdentLabel(entity)));
        content.entities[id] = entity;
        TopoDS_Shape const shape = TransferBRep::ShapeResult(content.process, entity);
        if (shape.IsNull())
            continue;
        if (shape.ShapeType() == TopAbs_FACE || shape.ShapeType() == TopAbs_SHELL || shape.ShapeType() == TopAbs_WIRE ||
            shape.ShapeType() == TopAbs_EDGE || shape.ShapeType() == TopAbs_VERTEX)
            content.entityOfShape.emplace(shape.TShape().get(), id);
        // A face that was divided.
        if (shape.ShapeType() == TopAbs_COMPOUND &&
            std::string(entity->DynamicType()->Name()).find("Face") != std::string::npos)
            for (TopExp_Explorer face(shape, TopAbs_FACE); face.More(); face.Next())
                content.entityOfShape.emplace(face.Current().TShape().get(), id);
    }
}

StepShapes::~StepShapes() = default;

StepShape const* StepShapes::Of(Part21Model::Id item)
{
    Content& content = *m_content;
    if (auto const known = content.measured.find(item); known != content.measured.end())
        return known->second.get();
    content.Tell(kFraction_Transferred + (1.0 - kFraction_Transferred) * static_cast<double>(content.measured.size()) /
                                             static_cast<double>(content.items));
    std::unique_ptr<StepShape> shape;
    if (auto const entity = content.entities.find(item); entity != content.entities.end())
        if (TopoDS_Shape const result = TransferBRep::ShapeResult(content.process, entity->second); !result.IsNull())
            shape = std::make_unique<StepShape>(MeasuredShape(result, content.entityOfShape));
    return content.measured.emplace(item, std::move(shape)).first->second.get();
}

bool StepShapes::Has(Part21Model::Id entity) const
{
    auto const found = m_content->entities.find(entity);
    return found != m_content->entities.end() && !TransferBRep::ShapeResult(m_content->process, found->second).IsNull();
}

}  // namespace KVR::Certification
