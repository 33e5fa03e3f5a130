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

    /// Makes it a text, a copy of the given one.
    void SetAStringValue(UTF8String const& value);
    /// Makes it a list of ids, a copy of the given one.
    void SetIdSetValue(IdSet const& value);
    /// Makes it bytes, a copy of the given ones.
    void SetBlobValue(Blob const& value);

    /// What kind of value it has; none until set.
    KindEnum Kind() const noexcept;
    /// The text, owned by the variant; null when the value is of another kind.
    UTF8String const* AStringValue() const noexcept { return std::get_if<UTF8String>(&m_value); }
    /// The list of ids, owned by the variant; null when the value is of another kind.
    IdSet const* IdSetValue() const noexcept { return std::get_if<IdSet>(&m_value); }
    /// The bytes, owned by the variant; null when the value is of another kind.
    Blob const* BlobValue() const noexcept { return std::get_if<Blob>(&m_value); }

private:
    std::variant<std::monostate, UTF8String, IdSet, Blob> m_value;
};

}  // namespace KVR
