#include "exchange/export/SceneModel.h"

#include "exchange/export/SceneModelReader.h"

namespace KVR
{

Matrix Product(Matrix const& left, Matrix const& right)
{
    Matrix product{};
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column)
            for (std::size_t i = 0; i < 4; ++i)
                product[4 * row + column] += left[4 * row + i] * right[4 * i + column];
    return product;
}

SceneModel::SceneModel(IProducer& producer, UTF8String const& rootId, SceneFilter const& filter) : m_producer(producer)
{
    SceneModelReader(*this, producer, filter).Read(rootId);
}

SceneModel::~SceneModel() = default;

ModelStyle const* SceneModel::StyleOf(std::string const& id) const
{
    auto const found = styles.find(id);
    return found == styles.end() ? nullptr : &found->second;
}

}  // namespace KVR
