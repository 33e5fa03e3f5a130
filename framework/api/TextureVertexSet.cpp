#include "framework/api/TextureVertexSet.h"

#include <algorithm>

namespace KVR
{

namespace
{

bool Equal(MeshTextureVertex2D const& a, MeshTextureVertex2D const& b)
{
    return a.U() == b.U() && a.V() == b.V();
}
bool Equal(MeshTextureVertex3D const& a, MeshTextureVertex3D const& b)
{
    return a.U() == b.U() && a.V() == b.V() && a.W() == b.W();
}

template <class VertexT>
void Add(std::vector<VertexT>& vertices, VertexT const& vertex, bool unique)
{
    auto const same = [&](VertexT const& other) { return Equal(other, vertex); };
    if (!unique || std::none_of(vertices.begin(), vertices.end(), same))
        vertices.push_back(vertex);
}

template <class VertexT>
IsValueSpecifiedEnum Get(std::vector<VertexT> const& vertices, unsigned long index, VertexT& vertex)
{
    if (index >= vertices.size())
        return kIsValueSpecified_No;
    vertex = vertices[index];
    return kIsValueSpecified_Yes;
}

}  // namespace

ITextureVertexSet::~ITextureVertexSet() = default;
TextureVertexSet2D::TextureVertexSet2D() = default;
TextureVertexSet2D::~TextureVertexSet2D() = default;
TextureVertexSet3D::TextureVertexSet3D() = default;
TextureVertexSet3D::~TextureVertexSet3D() = default;

void TextureVertexSet2D::AddVertex(MeshTextureVertex2D const& vertex, bool unique)
{
    Add(m_vertices, vertex, unique);
}
void TextureVertexSet3D::AddVertex(MeshTextureVertex3D const& vertex, bool unique)
{
    Add(m_vertices, vertex, unique);
}

IsValueSpecifiedEnum TextureVertexSet2D::Materials(IdSet&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum TextureVertexSet3D::Materials(IdSet&) const
{
    return kIsValueSpecified_No;
}

IsValueSpecifiedEnum TextureVertexSet2D::VertexAt(unsigned long index, MeshTextureVertex2D& vertex) const
{
    return Get(m_vertices, index, vertex);
}
IsValueSpecifiedEnum TextureVertexSet2D::VertexAt(unsigned long, MeshTextureVertex3D&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum TextureVertexSet3D::VertexAt(unsigned long, MeshTextureVertex2D&) const
{
    return kIsValueSpecified_No;
}
IsValueSpecifiedEnum TextureVertexSet3D::VertexAt(unsigned long index, MeshTextureVertex3D& vertex) const
{
    return Get(m_vertices, index, vertex);
}

}  // namespace KVR
