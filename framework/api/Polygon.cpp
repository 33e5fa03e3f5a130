#include "framework/api/Polygon.h"

#include <optional>
#include <vector>

namespace KVR
{

EditablePolygon::~EditablePolygon() = default;

namespace
{

// A polygon with lists of its own.
class HeapPolygon final : public EditablePolygon
{
public:
    explicit HeapPolygon(int vertexCount) : m_vertexCount(vertexCount) {}

    void Release() noexcept override { delete this; }
    void SetVertexIndices(int count, int const* indices) override { Set(m_vertexIndices, count, indices); }
    void SetNormalIndices(int count, int const* indices) override { Set(m_normalIndices, count, indices); }
    int VertexCount() const noexcept override { return m_vertexCount; }
    void SetTextureVertexIndices(int, int setIndexCount, int const* setIndices, int indexCount,
                                 int const* indices) override
    {
        Set(m_textureSetIndices, setIndexCount, setIndices);
        Set(m_textureVertexIndices, indexCount, indices);
    }

    IndexList VertexIndices() const noexcept override { return Get(m_vertexIndices); }
    IndexList NormalIndices() const noexcept override { return Get(m_normalIndices); }
    IndexList TextureSetIndices() const noexcept override { return Get(m_textureSetIndices); }
    IndexList TextureVertexIndices() const noexcept override { return Get(m_textureVertexIndices); }

private:
    using List = std::optional<std::vector<int>>;

    static void Set(List& list, int count, int const* indices)
    {
        list.emplace();
        if (indices && count > 0)
            list->assign(indices, indices + count);
    }

    static IndexList Get(List const& list) noexcept
    {
        static constexpr int kNothing = 0;
        if (!list)
            return {};
        return {list->empty() ? &kNothing : list->data(), static_cast<int>(list->size())};
    }

    List m_vertexIndices;
    List m_normalIndices;
    List m_textureSetIndices;
    List m_textureVertexIndices;
    int m_vertexCount;
};

}  // namespace

EditablePolygon* PolygonFactory::Create(int vertexCount)
{
    return new HeapPolygon(vertexCount);
}

}  // namespace KVR
