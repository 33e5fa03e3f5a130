#pragma once

#include <vector>

#include "framework/api/Enums.h"
#include "framework/api/Export.h"
#include "framework/api/IdSet.h"

namespace KVR
{

/// A texture coordinate in two dimensions, as fractions of the texture's width and height.
class MeshTextureVertex2D
{
public:
    MeshTextureVertex2D(double u, double v) : m_u(u), m_v(v) {}
    /// The coordinate across the texture.
    double U() const { return m_u; }
    /// The coordinate along the texture.
    double V() const { return m_v; }

private:
    double m_u;
    double m_v;
};

/// A texture coordinate in three dimensions.
class MeshTextureVertex3D
{
public:
    MeshTextureVertex3D(double u, double v, double w) : m_u(u), m_v(v), m_w(w) {}
    /// The first coordinate.
    double U() const { return m_u; }
    /// The second coordinate.
    double V() const { return m_v; }
    /// The third coordinate.
    double W() const { return m_w; }

private:
    double m_u;
    double m_v;
    double m_w;
};

/// A list of texture coordinates of one dimension.
class KVR_API ITextureVertexSet
{
public:
    virtual ~ITextureVertexSet();
    /// The ids of the materials that the set is for. Not specified, with the output left alone, for every set of a
    /// scene.
    virtual IsValueSpecifiedEnum Materials(IdSet& materials) const = 0;
    /// A coordinate of a set of dimension 2. Not specified, with the output left alone, for an index at or beyond the
    /// count or a set of another dimension.
    virtual IsValueSpecifiedEnum VertexAt(unsigned long index, MeshTextureVertex2D& vertex) const = 0;
    /// A coordinate of a set of dimension 3. Not specified, with the output left alone, for an index at or beyond the
    /// count or a set of another dimension.
    virtual IsValueSpecifiedEnum VertexAt(unsigned long index, MeshTextureVertex3D& vertex) const = 0;
    /// The number of coordinates.
    virtual unsigned long VertexCount() const = 0;
    /// 2 or 3.
    virtual int VertexDimension() const = 0;
};

/// A set of dimension 2.
class KVR_API TextureVertexSet2D : public ITextureVertexSet
{
public:
    TextureVertexSet2D();
    ~TextureVertexSet2D() override;

    /// Appends the vertex; with `unique` only when no equal one is there already.
    void AddVertex(MeshTextureVertex2D const& vertex, bool unique);
    /// Makes room for so many vertices in all.
    void Reserve(unsigned long count) { m_vertices.reserve(count); }

    IsValueSpecifiedEnum Materials(IdSet& materials) const override;
    IsValueSpecifiedEnum VertexAt(unsigned long index, MeshTextureVertex2D& vertex) const override;
    IsValueSpecifiedEnum VertexAt(unsigned long index, MeshTextureVertex3D& vertex) const override;
    unsigned long VertexCount() const override { return m_vertices.size(); }
    int VertexDimension() const override { return 2; }

private:
    std::vector<MeshTextureVertex2D> m_vertices;
};

/// A set of dimension 3.
class KVR_API TextureVertexSet3D : public ITextureVertexSet
{
public:
    TextureVertexSet3D();
    ~TextureVertexSet3D() override;

    /// Appends the vertex; with `unique` only when no equal one is there already.
    void AddVertex(MeshTextureVertex3D const& vertex, bool unique);
    /// Makes room for so many vertices in all.
    void Reserve(unsigned long count) { m_vertices.reserve(count); }

    IsValueSpecifiedEnum Materials(IdSet& materials) const override;
    IsValueSpecifiedEnum VertexAt(unsigned long index, MeshTextureVertex2D& vertex) const override;
    IsValueSpecifiedEnum VertexAt(unsigned long index, MeshTextureVertex3D& vertex) const override;
    unsigned long VertexCount() const override { return m_vertices.size(); }
    int VertexDimension() const override { return 3; }

private:
    std::vector<MeshTextureVertex3D> m_vertices;
};

}  // namespace KVR
