#include "host/export/SceneModel.h"

#include "host/export/SceneModelReader.h"

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

double MetresPer(UnitTypeEnum unit)
{
    switch (unit)
    {
        case kUnitType_Micrometer:
            return 1e-6;
        case kUnitType_Millimeter:
            return 1e-3;
        case kUnitType_Centimeter:
            return 1e-2;
        case kUnitType_Decimeter:
            return 1e-1;
        case kUnitType_Meter:
            return 1.0;
        case kUnitType_Kilometer:
            return 1e3;
        case kUnitType_Microinch:
            return 2.54e-8;
        case kUnitType_Mil:
            return 2.54e-5;
        case kUnitType_Inch:
            return 0.0254;
        case kUnitType_Foot:
            return 0.3048;
        case kUnitType_Yard:
            return 0.9144;
        case kUnitType_Mile:
            return 1609.344;
        default:
            return 0.0;
    }
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
