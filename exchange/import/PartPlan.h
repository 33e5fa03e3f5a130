#pragma once

#include <NCollection_DataMap.hxx>
#include <TDF_Label.hxx>
#include <TopTools_ShapeMapHasher.hxx>
#include <TopoDS_Shape.hxx>
#include <vector>

#include "exchange/import/ProductPlan.h"
#include "exchange/model/Losses.h"
#include "exchange/model/ModelDocument.h"
#include "framework/api/UTF8String.h"

class XCAFDoc_ColorTool;

namespace KVR
{

class StyleTable;

/// What a document says of a part of a shape.
struct SubShapeInfo
{
    TDF_Label label;
    UTF8String name;
    UTF8String style;
    bool isVisible = true;
};

/// A piece of geometry of a part: a solid, a sheet, a wire, or a point.
struct BodyPlan
{
    /// The body's id, or the point's.
    UTF8String id;
    /// Empty for one that gets no mesh.
    UTF8String meshId;
    UTF8String name;
    TopoDS_Shape shape;
    /// The end of a "kProducerGeometryType_" text.
    char const* type = "BrepSolid";
    /// The style of the piece, or of what holds it in the part; empty for none.
    UTF8String style;
    bool isVisible = true;
    bool isPoint = false;
    /// Whether its faces have surfaces, so that it makes a body.
    bool hasGeometry = true;
};

/// The geometry of a part, piece by piece.
class PartPlan
{
public:
    using SubShapes = NCollection_DataMap<TopoDS_Shape, SubShapeInfo, TopTools_ShapeMapHasher>;

    /// Numbers bodies, meshes and points of all parts.
    struct Numbers
    {
        std::size_t bodies = 0;
        std::size_t points = 0;
    };

    PartPlan(ComponentPlan const& component, ModelDocument const& model, StyleTable& styles, Numbers& numbers,
             Losses& losses);

    UTF8String style;
    std::vector<BodyPlan> bodies;
    SubShapes subShapes;

    /// The id of the piece that is the shape, or the data id of the face or edge of a piece; of a compound those of
    /// what is in it. Empty for none.
    std::vector<UTF8String> IdsOf(TopoDS_Shape const& shape) const;

    static UTF8String FaceId(BodyPlan const& body, std::size_t place);
    static UTF8String EdgeId(BodyPlan const& body, std::size_t place);

private:
    struct Work
    {
        TopoDS_Shape shape;
        UTF8String style;
        bool isVisible;
    };

    void ReadSubShapes(TDF_Label const& label, StyleTable& styles);
    void Divide(std::vector<Work>& work);
    void AddBody(Work const& item);

    std::string m_name;
    ModelDocument const& m_model;
    Numbers& m_numbers;
    Losses& m_losses;
    NCollection_DataMap<TopoDS_Shape, UTF8String, TopTools_ShapeMapHasher> m_ids;
};

}  // namespace KVR
