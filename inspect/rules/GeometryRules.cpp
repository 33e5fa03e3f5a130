#include "inspect/rules/GeometryRules.h"

#include <TopoDS_Shape.hxx>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <unordered_map>

#include "framework/api/IBrep.h"
#include "framework/api/IPolygonMesh.h"
#include "framework/api/IProducer.h"
#include "framework/api/ObjectVisitor.h"
#include "framework/api/TypesafeId.h"
#include "framework/kernel/entity.h"
#include "inspect/SceneCheck.h"
#include "inspect/document/ReadRecord.h"
#include "inspect/geometry/BodyAndMesh.h"
#include "inspect/geometry/BodyFaults.h"
#include "inspect/geometry/MeshFaults.h"
#include "inspect/geometry/OpenEdges.h"
#include "inspect/rules/SceneModel.h"
#include "inspect/rules/Texts.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

enum : std::size_t
{
    kFlatPolygon,
    kBadIndex,
    kZeroNormal,
    kTurnedNormal,
    kOpenMesh,
    kFarMesh,
    kInvalidBody,
    kNoNumber,
    kFewCorners,
};

constexpr auto kRules = std::to_array<Rule>({
    {"K-0401", "flat-polygon", "A polygon of a mesh has no area", Severity::kWarning},
    {"K-0402", "bad-index", "A mesh names a vertex, normal, texture vertex or polygon that it does not have",
     Severity::kError},
    {"K-0403", "zero-normal", "A normal of a mesh has no direction", Severity::kWarning},
    {"K-0404", "turned-normal", "A normal of a mesh points against the front of its polygon", Severity::kWarning},
    {"K-0405", "open-mesh", "A mesh is not closed, and the body that it stands for is", Severity::kWarning},
    {"K-0406", "far-mesh", "A mesh has another size, or another place, than the body that it stands for",
     Severity::kError},
    {"K-0407", "invalid-body", "A body is invalid", Severity::kWarning},
    {"K-0408", "vertex-without-number", "A coordinate of a mesh is infinite or no number", Severity::kError},
    {"K-0409", "few-corners", "A polygon of a mesh has fewer than three corners", Severity::kWarning},
});

struct MeshFaultRow
{
    std::size_t rule;
    MeshFaults::Fault MeshFaults::*fault;
    /// What is counted, and what is said of it.
    char const* thing;
    char const* text;
};

constexpr auto kMeshFaultRows = std::to_array<MeshFaultRow>({
    {kFlatPolygon, &MeshFaults::degenerate, "polygon", "without area"},
    {kBadIndex, &MeshFaults::vertexIndices, "polygon", "with a vertex that the mesh does not have"},
    {kBadIndex, &MeshFaults::normalIndices, "polygon", "with a normal that the mesh does not have"},
    {kBadIndex, &MeshFaults::textureIndices, "polygon", "with a texture vertex that the mesh does not have"},
    {kBadIndex, &MeshFaults::faceSegments, "face segment", "with a polygon that the mesh does not have"},
    {kBadIndex, &MeshFaults::edgeSegments, "edge segment", "with a vertex that the mesh does not have"},
    {kZeroNormal, &MeshFaults::zeroNormals, "polygon", "with a normal of no length"},
    {kTurnedNormal, &MeshFaults::turnedNormals, "polygon", "with a normal that points backwards"},
    {kNoNumber, &MeshFaults::numbers, "vertex", "without a place"},
    {kFewCorners, &MeshFaults::tooFewCorners, "polygon", "with fewer than three corners"},
});

void CheckMesh(SceneCheck& check, Spot const& spot, IPolygonMesh const& mesh)
{
    MeshFaults const faults = MeshFaults::Of(mesh);
    for (MeshFaultRow const& row : kMeshFaultRows)
    {
        MeshFaults::Fault const& fault = faults.*row.fault;
        if (fault.count > 0)
            check.Add(kRules[row.rule], spot, std::string(row.thing) + ' ' + std::to_string(fault.first),
                      Counted(fault.count, row.thing) + ' ' + row.text);
    }
}

void CheckBody(SceneCheck& check, Spot const& spot, BODY const& body)
{
    if (!check.IsWanted(kRules[kInvalidBody]))
        return;
    for (BodyFaults::Fault const& fault : BodyFaults::Of(body.Shape()).faults)
        check.Add(kRules[kInvalidBody], spot, fault.text,
                  fault.count > 1 ? "so in " + Counted(fault.count, "place") : std::string());
}

// Looks at each mesh and body by itself.
class GeometryLook final : public ObjectVisitor
{
public:
    explicit GeometryLook(SceneCheck& check) : m_check(check) {}

    using ObjectVisitor::Visit;
    void Visit(IPolygonMesh* mesh) override { CheckMesh(m_check, m_spot, *mesh); }
    void Visit(IBrep* body) override
    {
        if (BODY const* const shape = body->Body())
            CheckBody(m_check, m_spot, *shape);
    }

    void LookAt(xercesc::DOMNode const* element, IObject const& object)
    {
        m_spot = Spot{element};
        const_cast<IObject&>(object).AcceptVisitor(this);
    }

private:
    SceneCheck& m_check;
    Spot m_spot;
};

std::string RatioText(double ratio)
{
    bool const isLarge = ratio >= 1.0;
    double const times = isLarge ? ratio : 1.0 / ratio;
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3g", times);
    return std::string("its box is ") + text.data() + (isLarge ? " times as large" : " times smaller") +
           " as that of the body";
}

void CheckPair(SceneCheck& check, BodyAndMesh const& pair)
{
    Spot const spot{check.ElementOf(pair.mesh->id)};
    std::string const body = "stands for the body " + std::string(pair.body->id);
    if (check.IsWanted(kRules[kFarMesh]))
    {
        BodyAndMesh::Boxes const boxes = pair.CompareBoxes();
        if (boxes.AreFar())
        {
            bool const isOfOtherSize =
                boxes.ratio > BodyAndMesh::Boxes::kMost || boxes.ratio < 1 / BodyAndMesh::Boxes::kMost;
            check.Add(kRules[kFarMesh], spot, body,
                      isOfOtherSize ? RatioText(boxes.ratio) : std::string("its box lies beside that of the body"),
                      isOfOtherSize ? pair.MeantUnit(boxes.ratio) : std::string());
        }
    }
    if (!check.IsWanted(kRules[kOpenMesh]) || !pair.body->body->Body() ||
        !IsClosedBody(pair.body->body->Body()->Shape()))
        return;
    OpenEdges const open = OpenEdges::Of(*pair.mesh->mesh);
    if (open.count > 0)
        check.Add(kRules[kOpenMesh], spot, body,
                  Counted(open.count, "side") + " without a polygon beyond, the first of polygon " +
                      std::to_string(open.polygon));
}

}  // namespace

std::span<Rule const> GeometryRules()
{
    return kRules;
}

void CheckGeometry(SceneCheck& check)
{
    GeometryLook look(check);
    for (auto const& [element, object] : check.Record().Objects())
        if (object)
            look.LookAt(element, *object);
    if (!check.IsWanted(kRules[kFarMesh]) && !check.IsWanted(kRules[kOpenMesh]))
        return;
    std::optional<Scene> const scene = SceneModel(check);
    if (!scene)
        return;
    for (SceneComponent const& component : scene->Components())
        for (BodyAndMesh const& pair : BodyAndMesh::Of(component))
            CheckPair(check, pair);
}

}  // namespace KVR
