#pragma once

#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <algorithm>
#include <array>
#include <cstdint>

#include "framework/kernel/store/ShapeMaker.h"
#include "framework/kernel/store/ShapeTables.h"

namespace KVR
{

/// Reads polygons and triangulations as CurveReader reads curves. Everything has to outlive it.
template <class Source>
class PolygonReader
{
public:
    PolygonReader(Source& source, ShapeTables& tables, ShapeMaker& maker)
        : m_source(source), m_tables(tables), m_maker(maker)
    {
    }

    void ReadPolygons()
    {
        m_tables.polygons = m_source.Section("Polygon3D");
        for (int i = 0; i < m_tables.polygons && m_source.IsGood(); ++i)
        {
            int const count = Count(1);
            bool const hasParameters = m_source.Flag();
            double const deflection = m_source.Real();
            m_source.RequireAhead(static_cast<std::uint64_t>(count) * (hasParameters ? 4 : 3), 0);
            if (!m_source.IsGood())
                return;
            opencascade::handle<Poly_Polygon3D> const polygon = new Poly_Polygon3D(count, hasParameters);
            polygon->Deflection(deflection);
            for (gp_Pnt& node : polygon->ChangeNodes())
                node = Point();
            for (int k = 1; hasParameters && k <= count; ++k)
                polygon->ChangeParameters()(k) = m_source.LooseReal();
            m_maker.polygons.push_back(polygon);
        }
    }

    void ReadPolygonsOnTriangulations()
    {
        int const count = m_source.Section("PolygonOnTriangulations");
        for (int i = 0; i < count && m_source.IsGood(); ++i)
        {
            int const nodes = Count(1);
            m_source.RequireAhead(0, static_cast<std::uint64_t>(nodes));
            if (!m_source.IsGood())
                return;
            TColStd_Array1OfInteger indices(1, nodes);
            int last = 0;
            for (int& node : indices)
                last = std::max(last, node = Node());
            m_tables.AddNodes(last);
            double const deflection = m_source.Deflection();
            bool const hasParameters = m_source.Flag();
            m_source.RequireAhead(hasParameters ? static_cast<std::uint64_t>(nodes) : 0, 0);
            if (!m_source.IsGood())
                return;
            TColStd_Array1OfReal parameters(1, hasParameters ? nodes : 1);
            for (int k = 1; hasParameters && k <= nodes; ++k)
                parameters(k) = m_source.LooseReal();
            m_maker.nodes.push_back(hasParameters ? new Poly_PolygonOnTriangulation(indices, parameters)
                                                  : new Poly_PolygonOnTriangulation(indices));
            m_maker.nodes.back()->Deflection(deflection);
        }
    }

    void ReadTriangulations()
    {
        int const count = m_source.Section("Triangulations");
        for (int i = 0; i < count && m_source.IsGood(); ++i)
        {
            int const nodes = Count(0);
            int const triangles = Count(0);
            bool const hasUV = m_source.Flag();
            bool const hasNormals = m_source.HasNormals() && m_source.Flag();
            double const deflection = m_source.Real();
            m_source.RequireAhead(
                static_cast<std::uint64_t>(nodes) * (hasUV ? 5 : 3),
                static_cast<std::uint64_t>(triangles) * 3 + static_cast<std::uint64_t>(nodes) * (hasNormals ? 3 : 0));
            if (!m_source.IsGood())
                return;
            m_maker.triangulations.push_back(new Poly_Triangulation(nodes, triangles, hasUV, hasNormals));
            Triangulation(*m_maker.triangulations.back());
            m_maker.triangulations.back()->Deflection(deflection);
            m_tables.AddTriangulation(nodes);
        }
    }

private:
    // Of nodes or of triangles.
    int Count(int least)
    {
        int const count = m_source.Integer();
        m_source.Require(count >= least);
        return m_source.IsGood() ? count : 0;
    }

    gp_Pnt Point()
    {
        double const x = m_source.LooseReal();
        double const y = m_source.LooseReal();
        return {x, y, m_source.LooseReal()};
    }

    // The index of a node, from 1.
    int Node()
    {
        int const node = m_source.Integer();
        m_source.Require(node >= 1);
        return node;
    }

    void Triangulation(Poly_Triangulation& made)
    {
        int const nodes = made.NbNodes();
        for (int i = 1; i <= nodes; ++i)
            made.SetNode(i, Point());
        for (int i = 1; made.HasUVNodes() && i <= nodes; ++i)
        {
            double const u = m_source.LooseReal();
            made.SetUVNode(i, gp_Pnt2d(u, m_source.LooseReal()));
        }
        for (int i = 1; i <= made.NbTriangles() && m_source.IsGood(); ++i)
        {
            int const first = Node();
            int const second = Node();
            int const third = Node();
            m_source.Require(std::max({first, second, third}) <= nodes);
            made.SetTriangle(i, Poly_Triangle(first, second, third));
        }
        for (int i = 1; made.HasNormals() && i <= nodes; ++i)
        {
            std::array<float, 3> const normal = m_source.Normal();
            made.SetNormal(i, gp_Vec3f(normal[0], normal[1], normal[2]));
        }
    }

    Source& m_source;
    ShapeTables& m_tables;
    ShapeMaker& m_maker;
};

}  // namespace KVR
