#pragma once

#include <TopoDS_Shape.hxx>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "framework/kernel/store/CurveReader.h"
#include "framework/kernel/store/PolygonReader.h"
#include "framework/kernel/store/ShapeMaker.h"
#include "framework/kernel/store/ShapeTables.h"
#include "framework/kernel/store/SurfaceReader.h"

namespace KVR
{

/// Where a set of shapes stands. A store has one compound, in the versions that can be read in one way only; a file has
/// any shape, in older versions, too.
enum class ShapeHome
{
    kStore,
    kFile
};

/// Reads a set of shapes and the shape behind it, which stand in nearly the same order in both of Open CASCADE's forms.
/// What Open CASCADE reads of them is the same; but it believes what it reads, makes room for as many poles as a number
/// says, follows indices out of its tables, and goes down chains on the stack. Here everything is looked at before
/// something is made of it. What is wrong is left with the source, BinaryShapes or TextShapes, or thrown by Open
/// CASCADE.
template <class Source>
class ShapeReader
{
public:
    ShapeReader(Source& source, std::uint64_t size, ShapeHome home)
        : m_source(source),
          m_tables(size),
          m_curves(source),
          m_surfaces(source, m_curves),
          m_polygons(source, m_tables, m_maker),
          m_home(home)
    {
    }

    /// Nothing, unless the source is good in the end.
    TopoDS_Shape Read()
    {
        m_source.Version(m_home == ShapeHome::kFile);
        Locations();
        m_curves.ReadCurves(m_source.Section("Curve2ds"), m_tables.curves2d, m_maker.curves2d);
        m_curves.ReadCurves(m_source.Section("Curves"), m_tables.curves, m_maker.curves);
        m_polygons.ReadPolygons();
        m_polygons.ReadPolygonsOnTriangulations();
        m_tables.surfaces = m_source.Section("Surfaces");
        m_surfaces.ReadSurfaces(m_tables.surfaces, m_maker.surfaces);
        m_polygons.ReadTriangulations();
        int const count = m_source.Section("TShapes");
        m_maker.Reserve(m_source.Within(count, sizeof(TopoDS_Shape)));
        for (int i = 0; i < count && m_source.IsGood(); ++i)
            Shape(count);
        return Root(count);
    }

private:
    enum LocationKind
    {
        kElementary = 1,
        kChain,
    };

    void Locations()
    {
        int const count = m_source.Section("Locations");
        for (int i = 0; i < count && m_source.IsGood(); ++i)
        {
            int const kind = m_source.Kind();
            m_source.Require(kind == kElementary || kind == kChain);
            if (kind == kElementary)
            {
                std::array<double, 12> const matrix = m_source.template Numbers<12>();
                m_tables.AddLocation();
                if (m_source.IsGood())
                    m_maker.AddLocation(matrix);
                continue;
            }
            ShapeTables::Chain chain;
            for (int index = m_source.Integer(); index != 0 && m_source.IsGood(); index = m_source.Integer())
                chain.emplace_back(index, m_source.Integer());
            m_source.Require(m_source.IsGood() && m_tables.AddLocation(ShapeTables::Chain(chain)));
            if (m_source.IsGood())
                m_maker.AddLocation(chain);
        }
    }

    void Shape(int count)
    {
        TopAbs_ShapeEnum const kind = m_source.ShapeKind();
        m_source.Require(m_tables.BeginShape(kind));
        if (!m_source.IsGood())
            return;
        if (kind == TopAbs_VERTEX)
            Vertex();
        else if (kind == TopAbs_EDGE)
            Edge();
        else if (kind == TopAbs_FACE)
            Face();
        else
            m_maker.BeginOther(kind);
        std::array<bool, 7> flags = m_source.ShapeFlags();
        flags[kChecked] &= m_source.KeepsChecked();
        TopAbs_Orientation orientation = TopAbs_FORWARD;
        int index = 0;
        int location = 0;
        while (m_source.IsGood() && m_source.Child(orientation, index, location))
        {
            m_source.Require(index >= 1 && index <= count && m_tables.AddChild(count - index + 1, location));
            if (m_source.IsGood())
                m_maker.AddChild(count - index + 1, orientation, location);
        }
        if (!m_source.IsGood())
            return;
        m_maker.EndShape(flags);
        if (kind == TopAbs_FACE && m_source.MeasuresFaces())
            m_maker.MeasureFace();
    }

    // In a store the compound of all shapes, where it was made.
    TopoDS_Shape Root(int count)
    {
        TopAbs_Orientation orientation = TopAbs_FORWARD;
        int index = 0;
        int location = 0;
        m_source.Require(m_source.Child(orientation, index, location) && index >= 1 && index <= count &&
                         m_tables.IsLocation(location));
        if (m_source.IsGood() && m_home == ShapeHome::kStore)
            m_source.Require(location == 0 && m_tables.KindOf(count - index + 1) == TopAbs_COMPOUND);
        return m_source.IsGood() ? m_maker.Placed(count - index + 1, orientation, location) : TopoDS_Shape();
    }

    void Vertex()
    {
        double const tolerance = m_source.LooseReal();
        double const x = m_source.LooseReal();
        double const y = m_source.LooseReal();
        double const z = m_source.LooseReal();
        m_points.clear();
        PointRepresentation one;
        for (one.kind = m_source.PointKind(one.parameter); one.kind != PointRepresentation::kNone && m_source.IsGood();
             one.kind = m_source.PointKind(one.parameter))
        {
            switch (one.kind)
            {
                case PointRepresentation::kOnCurve:
                    one.curve = OptionalCurve();
                    break;
                case PointRepresentation::kOnCurveOnSurface:
                    one.curve = Curve2d(m_source.Integer());
                    one.surface = Surface();
                    break;
                case PointRepresentation::kOnSurface:
                    one.secondParameter = m_source.Real();
                    one.surface = Surface();
                    break;
                default:
                    m_source.Require(false);
            }
            one.location = m_source.Integer();
            m_source.Require(m_tables.IsLocation(one.location));
            if (one.kind != PointRepresentation::kOnCurve || one.curve != 0)
                m_points.push_back(one);
        }
        if (m_source.IsGood())
            m_maker.BeginVertex({x, y, z}, tolerance, m_points);
    }

    void Edge()
    {
        m_edge.tolerance = m_source.Real();
        m_edge.isSameParameter = m_source.Flag();
        m_edge.isSameRange = m_source.Flag();
        m_edge.isDegenerated = m_source.Flag();
        m_edge.representations.clear();
        m_tables.BeginEdge();
        for (int kind = m_source.Kind(); kind != EdgeRepresentation::kNone && m_source.IsGood(); kind = m_source.Kind())
            Representation(kind);
        m_source.Require(m_tables.IsEdgeSafe());
        if (m_source.IsGood())
            m_maker.BeginEdge(m_edge);
    }

    void Representation(int kind)
    {
        EdgeRepresentation one;
        one.kind = kind;
        switch (kind)
        {
            case EdgeRepresentation::kCurve:
                one.curve = OptionalCurve();
                m_tables.AddToEdge(m_tables.curves, one.curve);
                one.location = Location();
                Range(one, one.curve != 0);
                break;
            case EdgeRepresentation::kCurveOnSurface:
            case EdgeRepresentation::kCurvesOnClosedSurface:
                CurveOnSurface(one);
                break;
            case EdgeRepresentation::kRegularity:
                one.continuity = m_source.Continuity();
                one.surface = Surface();
                one.location = Location();
                one.secondSurface = Surface();
                one.secondLocation = Location();
                break;
            case EdgeRepresentation::kPolygon:
                one.curve = m_source.Integer();
                m_source.Require(m_tables.IsPolygon(one.curve));
                one.location = Location();
                break;
            case EdgeRepresentation::kPolygonOnTriangulation:
            case EdgeRepresentation::kPolygonsOnClosedTriangulation:
                one.curve = m_source.Integer();
                one.secondCurve =
                    kind == EdgeRepresentation::kPolygonsOnClosedTriangulation ? m_source.Integer() : one.curve;
                one.surface = m_source.Integer();
                m_source.Require(m_tables.IsOnTriangulation(one.curve, one.surface) &&
                                 m_tables.IsOnTriangulation(one.secondCurve, one.surface));
                one.location = Location();
                break;
            default:
                m_source.Require(false);
        }
        if (kind != EdgeRepresentation::kCurve || one.curve != 0)
            m_edge.representations.push_back(one);
    }

    void CurveOnSurface(EdgeRepresentation& one)
    {
        one.curve = Curve2d(m_source.Integer());
        m_tables.AddToEdge(m_tables.curves2d, one.curve);
        if (one.kind == EdgeRepresentation::kCurvesOnClosedSurface)
        {
            one.secondCurve = Curve2d(m_source.IntegerAndContinuity(one.continuity));
            m_tables.AddToEdge(m_tables.curves2d, one.secondCurve);
        }
        one.surface = Surface();
        one.location = Location();
        Range(one, false);
        one.hasUVPoints = m_source.HasUVPoints();
        for (std::size_t i = 0; one.hasUVPoints && i < one.uvPoints.size(); ++i)
            one.uvPoints[i] = m_source.LooseReal();
    }

    void Face()
    {
        ShapeMaker::Face face;
        face.isNaturallyBounded = m_source.Flag();
        face.tolerance = m_source.Real();
        face.surface = m_source.Integer();
        m_source.Require(face.surface == 0 || m_tables.IsSurface(face.surface));
        face.location = m_source.Integer();
        m_source.Require(m_tables.IsLocation(face.location));
        m_source.EndOfFace(face.triangulation);
        m_source.Require(face.triangulation == 0 || m_tables.IsTriangulation(face.triangulation));
        if (m_source.IsGood())
            m_maker.BeginFace(face, Source::kIsStrict);
    }

    int OptionalCurve()
    {
        int const curve = m_source.Integer();
        m_source.Require(curve == 0 || m_tables.IsCurve(curve));
        return curve;
    }
    int Curve2d(int curve)
    {
        m_source.Require(m_tables.IsCurve2d(curve));
        return curve;
    }
    int Surface()
    {
        int const surface = m_source.Integer();
        m_source.Require(m_tables.IsSurface(surface));
        return surface;
    }
    // Of a representation of an edge.
    int Location()
    {
        int const location = m_source.Integer();
        m_source.Require(m_tables.AddToEdge(location));
        return location;
    }
    void Range(EdgeRepresentation& one, bool isInSpace)
    {
        one.first = m_source.Real();
        one.last = m_source.Real();
        m_source.Require(m_tables.AddToEdge(one.first, one.last, isInSpace));
    }

    static constexpr std::size_t kChecked = 2;

    Source& m_source;
    ShapeTables m_tables;
    ShapeMaker m_maker;
    CurveReader<Source> m_curves;
    SurfaceReader<Source> m_surfaces;
    PolygonReader<Source> m_polygons;
    ShapeHome m_home;
    // Of a vertex and an edge, kept for their memory.
    std::vector<PointRepresentation> m_points;
    ShapeMaker::Edge m_edge;
};

}  // namespace KVR
