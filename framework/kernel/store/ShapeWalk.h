#pragma once

#include <algorithm>
#include <cstdint>

#include "framework/kernel/store/GeometryWalk.h"
#include "framework/kernel/store/ShapeTables.h"

namespace KVR
{

/// Where a set of shapes stands. A store has one compound, in the versions that can be read in one way only; a file has
/// any shape, in older versions, too.
enum class ShapeHome
{
    kStore,
    kFile
};

/// Walks a set of shapes as Open CASCADE reads it, which is in nearly the same order in both of its forms, and the
/// shape behind it. What is wrong is left with the source, BinaryShapes or TextShapes.
template <class Source>
class ShapeWalk
{
public:
    ShapeWalk(Source& source, std::uint64_t size, ShapeHome home)
        : m_source(source), m_geometry(source), m_tables(size), m_home(home)
    {
    }

    void Read()
    {
        m_source.Version(m_home == ShapeHome::kFile);
        Locations();
        m_geometry.template ReadCurves<Geom2d_Curve>(m_source.Section("Curve2ds"), m_tables.curves2d);
        m_geometry.template ReadCurves<Geom_Curve>(m_source.Section("Curves"), m_tables.curves);
        Polygons();
        PolygonsOnTriangulations();
        m_tables.surfaces = m_source.Section("Surfaces");
        m_geometry.ReadSurfaces(m_tables.surfaces);
        Triangulations();
        int const count = m_source.Section("TShapes");
        for (int i = 0; i < count && m_source.IsGood(); ++i)
            Shape(count);
        Root(count);
    }

private:
    enum LocationKind
    {
        kElementary = 1,
        kChain,
    };
    enum PointKind
    {
        kNoPoint,
        kOnCurve,
        kOnCurveOnSurface,
        kOnSurface,
    };
    enum RepresentationKind
    {
        kNone,
        kCurve,
        kCurveOnSurface,
        kCurvesOnClosedSurface,
        kRegularity,
        kPolygon,
        kPolygonOnTriangulation,
        kPolygonsOnClosedTriangulation,
    };

    static constexpr std::uint64_t kMatrix = 12;

    void Locations()
    {
        int const count = m_source.Section("Locations");
        for (int i = 0; i < count && m_source.IsGood(); ++i)
        {
            int const kind = m_source.Kind();
            m_source.Require(kind == kElementary || kind == kChain);
            if (kind == kElementary)
            {
                m_source.FiniteReals(kMatrix);
                m_tables.AddLocation();
                continue;
            }
            ShapeTables::Chain chain;
            for (int index = m_source.Integer(); index != 0 && m_source.IsGood(); index = m_source.Integer())
                chain.emplace_back(index, m_source.Integer());
            m_source.Require(m_source.IsGood() && m_tables.AddLocation(std::move(chain)));
        }
    }

    // Of nodes or of triangles.
    std::uint64_t Count(int least)
    {
        int const count = m_source.Integer();
        m_source.Require(count >= least);
        return m_source.IsGood() ? static_cast<std::uint64_t>(count) : 0;
    }

    void Polygons()
    {
        m_tables.polygons = m_source.Section("Polygon3D");
        for (int i = 0; i < m_tables.polygons && m_source.IsGood(); ++i)
        {
            std::uint64_t const nodes = Count(1);
            bool const hasParameters = m_source.Flag();
            m_source.Real();
            m_source.Reals(nodes * (hasParameters ? 4 : 3));
        }
    }

    // Indices of nodes, from 1; gives the last one.
    int Nodes(std::uint64_t count)
    {
        int last = 0;
        for (; count > 0 && m_source.IsGood(); --count)
        {
            int const node = m_source.Integer();
            m_source.Require(node >= 1);
            last = std::max(last, node);
        }
        return last;
    }

    void PolygonsOnTriangulations()
    {
        int const count = m_source.Section("PolygonOnTriangulations");
        for (int i = 0; i < count && m_source.IsGood(); ++i)
        {
            std::uint64_t const nodes = Count(1);
            m_tables.AddNodes(Nodes(nodes));
            m_source.Deflection();
            if (m_source.Flag())
                m_source.Reals(nodes);
        }
    }

    void Triangulations()
    {
        int const count = m_source.Section("Triangulations");
        for (int i = 0; i < count && m_source.IsGood(); ++i)
        {
            std::uint64_t const nodes = Count(0);
            std::uint64_t const triangles = Count(0);
            bool const hasUV = m_source.Flag();
            bool const hasNormals = m_source.HasNormals() && m_source.Flag();
            m_source.Real();
            m_source.Reals(nodes * (hasUV ? 5 : 3));
            m_source.Require(static_cast<std::uint64_t>(Nodes(3 * triangles)) <= nodes);
            if (hasNormals)
                m_source.Normals(nodes);
            m_tables.AddTriangulation(static_cast<int>(nodes));
        }
    }

    void Shape(int count)
    {
        TopAbs_ShapeEnum const kind = m_source.ShapeKind();
        m_source.Require(m_tables.BeginShape(kind));
        if (kind == TopAbs_VERTEX)
            Vertex();
        else if (kind == TopAbs_EDGE)
            Edge();
        else if (kind == TopAbs_FACE)
            Face();
        m_source.ShapeFlags();
        int index = 0;
        int location = 0;
        while (m_source.IsGood() && m_source.Child(index, location))
            m_source.Require(index >= 1 && index <= count && m_tables.AddChild(count - index + 1, location));
    }

    // In a store the compound of all shapes, where it was made.
    void Root(int count)
    {
        int index = 0;
        int location = 0;
        m_source.Require(m_source.Child(index, location) && index >= 1 && index <= count &&
                         m_tables.IsLocation(location));
        if (m_source.IsGood() && m_home == ShapeHome::kStore)
            m_source.Require(location == 0 && m_tables.KindOf(count - index + 1) == TopAbs_COMPOUND);
    }

    void Vertex()
    {
        m_source.Reals(4);
        for (int kind = m_source.PointKind(); kind != kNoPoint && m_source.IsGood(); kind = m_source.PointKind())
        {
            switch (kind)
            {
                case kOnCurve:
                    OptionalCurve();
                    break;
                case kOnCurveOnSurface:
                    Curve2d(m_source.Integer());
                    Surface();
                    break;
                case kOnSurface:
                    m_source.Real();
                    Surface();
                    break;
                default:
                    m_source.Require(false);
            }
            m_source.Require(m_tables.IsLocation(m_source.Integer()));
        }
    }

    void Edge()
    {
        constexpr int kFlags = 3;
        m_source.Real();
        for (int i = 0; i < kFlags; ++i)
            m_source.Flag();
        m_tables.BeginEdge();
        for (int kind = m_source.Kind(); kind != kNone && m_source.IsGood(); kind = m_source.Kind())
            Representation(kind);
        m_source.Require(m_tables.IsEdgeSafe());
    }

    void Representation(int kind)
    {
        switch (kind)
        {
            case kCurve:
            {
                int const curve = OptionalCurve();
                m_tables.AddToEdge(m_tables.curves, curve);
                Location();
                return Range(curve != 0);
            }
            case kCurveOnSurface:
            case kCurvesOnClosedSurface:
                m_tables.AddToEdge(m_tables.curves2d, Curve2d(m_source.Integer()));
                if (kind == kCurvesOnClosedSurface)
                    m_tables.AddToEdge(m_tables.curves2d, Curve2d(m_source.IntegerAndContinuity()));
                Surface();
                Location();
                Range(false);
                return m_source.Reals(m_source.HasUVPoints() ? 4 : 0);
            case kRegularity:
                m_source.Continuity();
                Surface();
                Location();
                Surface();
                return Location();
            case kPolygon:
                m_source.Require(m_tables.IsPolygon(m_source.Integer()));
                return Location();
            case kPolygonOnTriangulation:
            case kPolygonsOnClosedTriangulation:
                NodesOnTriangulation(kind == kPolygonsOnClosedTriangulation);
                return Location();
            default:
                m_source.Require(false);
        }
    }

    void NodesOnTriangulation(bool isClosed)
    {
        int const first = m_source.Integer();
        int const second = isClosed ? m_source.Integer() : first;
        int const triangulation = m_source.Integer();
        m_source.Require(m_tables.IsOnTriangulation(first, triangulation) &&
                         m_tables.IsOnTriangulation(second, triangulation));
    }

    void Face()
    {
        m_source.Flag();
        m_source.Real();
        int const surface = m_source.Integer();
        m_source.Require(surface == 0 || m_tables.IsSurface(surface));
        m_source.Require(m_tables.IsLocation(m_source.Integer()));
        int triangulation = 0;
        m_source.EndOfFace(triangulation);
        m_source.Require(triangulation == 0 || m_tables.IsTriangulation(triangulation));
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
    void Surface() { m_source.Require(m_tables.IsSurface(m_source.Integer())); }
    // Of a representation of an edge.
    void Location() { m_source.Require(m_tables.AddToEdge(m_source.Integer())); }
    void Range(bool isInSpace)
    {
        double const first = m_source.Real();
        double const last = m_source.Real();
        m_source.Require(m_tables.AddToEdge(first, last, isInSpace));
    }

    Source& m_source;
    GeometryWalk<Source> m_geometry;
    ShapeTables m_tables;
    ShapeHome m_home;
};

}  // namespace KVR
