#include "framework/kernel/store/BinaryShapes.h"

namespace KVR
{

namespace
{

constexpr std::string_view kVersion3 = "Open CASCADE Topology V3 (c)\n";
constexpr std::string_view kVersion4 = "Open CASCADE Topology V4, (c) Open Cascade\n";
constexpr int kEndOfChildren = '*';

}  // namespace

void BinaryShapes::Version(bool)
{
    SkipBlankLines();
    m_version = Ahead(kVersion3.size()).starts_with(kVersion3) ? 3 : 4;
    Expect(m_version == 3 ? kVersion3 : kVersion4);
}

bool BinaryShapes::Flag()
{
    int const flag = Kind();
    Require(flag <= 1);
    return flag == 1;
}

GeomAbs_Shape BinaryShapes::Continuity()
{
    int const continuity = Kind();
    Require(continuity <= GeomAbs_CN);
    return continuity <= GeomAbs_CN ? static_cast<GeomAbs_Shape>(continuity) : GeomAbs_C0;
}

TopAbs_ShapeEnum BinaryShapes::ShapeKind()
{
    int const kind = Kind();
    Require(kind <= TopAbs_VERTEX);
    return kind <= TopAbs_VERTEX ? static_cast<TopAbs_ShapeEnum>(kind) : TopAbs_SHAPE;
}

// Of another version than 3 Open CASCADE looks first whether the kind stands behind the parameter, as it once did.
int BinaryShapes::PointKind(double& parameter)
{
    constexpr std::size_t kBehindParameter = sizeof(double);
    auto const isKind = [](int value) { return value >= 1 && value <= 3; };
    if (m_version != 3)
    {
        std::string_view const ahead = Ahead(kBehindParameter + 1);
        Require(ahead.size() > kBehindParameter && !isKind(ahead[kBehindParameter]));
    }
    int const kind = Kind();
    if (isKind(kind))
        parameter = Real();
    return kind;
}

void BinaryShapes::EndOfFace(int& triangulation)
{
    int const kind = Kind();
    Require(kind <= 2);
    triangulation = kind == 2 ? Integer() : 0;
    Require(kind != 2 || triangulation != 0);
}

std::array<bool, 7> BinaryShapes::ShapeFlags()
{
    std::array<bool, 7> flags{};
    for (bool& flag : flags)
        flag = Flag();
    return flags;
}

bool BinaryShapes::Child(TopAbs_Orientation& orientation, int& index, int& location)
{
    int const kind = Kind();
    if (kind == kEndOfChildren)
        return false;
    Require(kind <= TopAbs_EXTERNAL);
    if (!IsGood())
        return false;
    orientation = static_cast<TopAbs_Orientation>(kind);
    index = Integer();
    location = Integer();
    return IsGood();
}

}  // namespace KVR
