#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "exchange/certify/Bulk.h"
#include "exchange/certify/FactReaders.h"
#include "exchange/certify/part21/Part21Model.h"

class TopoDS_Shape;
class TopoDS_TShape;

namespace KVR::Certification
{

/// A face, or a line of its own, as Open CASCADE reads it.
struct StepPiece
{
    /// The entity of a face, or of a line that has one; 0 for one that Open CASCADE cannot tell.
    Part21Model::Id entity = 0;
    /// The shells around a face, from the inside to the outside.
    std::vector<Part21Model::Id> shells;
    bool isFace = false;
    Bulk bulk;
};

/// What a representation item is as a shape, in millimetres.
struct StepShape
{
    unsigned long long solids = 0;
    unsigned long long faces = 0;
    /// Points of its own.
    unsigned long long points = 0;
    Bulk bulk;
    std::vector<StepPiece> pieces;
    /// Where its vertices are.
    std::vector<FactPoint> corners;
};

/// The shapes of a STEP file, by Open CASCADE's plain reader.
class StepShapes
{
public:
    /// Throws std::runtime_error for a file that Open CASCADE cannot read. May end the process. What is told takes so
    /// many items to be all.
    StepShapes(std::string const& path, std::size_t items, TellFraction const& tell);
    ~StepShapes();
    StepShapes(StepShapes const&) = delete;
    StepShapes& operator=(StepShapes const&) = delete;

    /// That of an item; null for an item without a shape. It is measured once, and owned by this.
    StepShape const* Of(Part21Model::Id item);
    /// Whether there is a shape of that entity, an item or a part of one.
    bool Has(Part21Model::Id entity) const;

private:
    struct Content;
    std::unique_ptr<Content> m_content;
};

/// What faces and edges are called, by their shapes without place.
using ShapeEntities = std::unordered_map<TopoDS_TShape const*, Part21Model::Id>;
/// What any shape is, in its own unit.
StepShape MeasuredShape(TopoDS_Shape const& shape, ShapeEntities const& entities = {});

}  // namespace KVR::Certification
