#include "framework/kernel/store/BinaryShapes.h"

#include <algorithm>

namespace KVR
{

namespace
{

constexpr std::string_view kVersion3 = "Open CASCADE Topology V3 (c)\n";
constexpr std::string_view kVersion4 = "Open CASCADE Topology V4, (c) Open Cascade\n";
constexpr int kEndOfChildren = '*';

bool IsFinite(char const* bytes) noexcept
{
    constexpr std::uint64_t kExponent = 0x7FF0'0000'0000'0000;
    std::uint64_t bits = 0;
    std::memcpy(&bits, bytes, sizeof bits);
    return (bits & kExponent) != kExponent;
}

}  // namespace

void BinaryShapes::Version(bool)
{
    SkipBlanks();
    m_version = Ahead(kVersion3.size()).starts_with(kVersion3) ? 3 : 4;
    Expect(m_version == 3 ? kVersion3 : kVersion4);
}

bool BinaryShapes::Flag()
{
    int const flag = Kind();
    Require(flag <= 1);
    return flag == 1;
}

void BinaryShapes::FiniteReals(std::uint64_t count)
{
    while (count > 0 && IsGood())
    {
        std::string_view const ahead = Ahead(sizeof(double));
        std::size_t const piece = std::min<std::uint64_t>(count, ahead.size() / sizeof(double));
        bool areFinite = piece > 0;
        for (std::size_t i = 0; i < piece; ++i)
            areFinite &= IsFinite(ahead.data() + i * sizeof(double));
        Require(areFinite);
        if (areFinite)
            Pass(piece * sizeof(double));
        count -= piece;
    }
}

TopAbs_ShapeEnum BinaryShapes::ShapeKind()
{
    int const kind = Kind();
    Require(kind <= TopAbs_VERTEX);
    return kind <= TopAbs_VERTEX ? static_cast<TopAbs_ShapeEnum>(kind) : TopAbs_SHAPE;
}

// Of another version than 3 Open CASCADE looks first whether the kind stands behind the parameter, as it once did.
int BinaryShapes::PointKind()
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
        Real();
    return kind;
}

void BinaryShapes::EndOfFace(int& triangulation)
{
    int const kind = Kind();
    Require(kind <= 2);
    triangulation = kind == 2 ? Integer() : 0;
    Require(kind != 2 || triangulation != 0);
}

void BinaryShapes::ShapeFlags()
{
    constexpr int kFlags = 7;
    for (int i = 0; i < kFlags; ++i)
        Flag();
}

bool BinaryShapes::Child(int& index, int& location)
{
    int const orientation = Kind();
    if (orientation == kEndOfChildren)
        return false;
    Require(orientation <= 3);
    index = Integer();
    location = Integer();
    return IsGood();
}

}  // namespace KVR
