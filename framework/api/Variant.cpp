#include "framework/api/Variant.h"

#include <array>

namespace KVR
{

Variant::Variant() = default;
Variant::~Variant() = default;

void Variant::SetAStringValue(UTF8String const& value)
{
    m_value = value;
}
void Variant::SetIdSetValue(IdSet const& value)
{
    m_value = value;
}
void Variant::SetBlobValue(Blob const& value)
{
    m_value = value;
}

Variant::KindEnum Variant::Kind() const noexcept
{
    constexpr std::array<KindEnum, 4> kKinds = {kKind_None, kKind_AString, kKind_IdSet, kKind_Blob};
    return kKinds[m_value.index()];
}

}  // namespace KVR
