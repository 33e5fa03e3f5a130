#pragma once

#include <variant>

#include "framework/api/Blob.h"
#include "framework/api/Export.h"
#include "framework/api/IdSet.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// A value of one of several kinds; of no kind until set.
class KVR_API Variant
{
public:
    /// The numbers are those that a scene writes.
    enum KindEnum : int
    {
        kKind_None = 0,
        kKind_AString = 5,
        kKind_Blob = 8,
        kKind_IdSet = 9
    };

    Variant();
    ~Variant();
    Variant(Variant const&) = default;
    Variant(Variant&&) noexcept = default;
    Variant& operator=(Variant const&) = default;
    Variant& operator=(Variant&&) noexcept = default;

    void SetAStringValue(UTF8String const& value);
    void SetIdSetValue(IdSet const& value);
    void SetBlobValue(Blob const& value);

    KindEnum Kind() const noexcept;
    /// The value when it is of that kind, null otherwise; owned by the variant.
    UTF8String const* AStringValue() const noexcept { return std::get_if<UTF8String>(&m_value); }
    IdSet const* IdSetValue() const noexcept { return std::get_if<IdSet>(&m_value); }
    Blob const* BlobValue() const noexcept { return std::get_if<Blob>(&m_value); }

private:
    std::variant<std::monostate, UTF8String, IdSet, Blob> m_value;
};

}  // namespace KVR
