#pragma once

#include <cstddef>
#include <ctime>
#include <string_view>
#include <variant>

#include "framework/api/IProperty.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// A property of an object, as a property file states it. A scene may have millions, so each is one allocation: its
/// texts stand behind it in memory.
class KVR_XML_UTIL_API XMLProperty final : public IProperty
{
public:
    /// Says that the value is the text.
    struct IsText
    {
    };
    /// Says that the value is the time that the text stands for.
    struct IsTime
    {
    };
    /// A value in the order of PropertyTypeEnum. Of a text and of a time, which is one that converts, the value is the
    /// text beside it.
    using ValueOf = std::variant<IsText, int, double, bool, IsTime>;

    /// The texts of a property, to be copied.
    struct Texts
    {
        std::string_view id;
        std::string_view name;
        std::string_view value;
    };

    /// A property with copies of the texts, in UTF-8, and one holder.
    static XMLProperty* Make(Texts const& texts, ValueOf value);

    UTF8String Id() const override;
    UTF16String Name() const override;
    PropertyTypeEnum Type() const override { return static_cast<PropertyTypeEnum>(m_value.index()); }
    IsValueSpecifiedEnum Value(UTF16String& value) const override;
    IsValueSpecifiedEnum Value(int& value) const override;
    IsValueSpecifiedEnum Value(double& value) const override;
    IsValueSpecifiedEnum Value(bool& value) const override;
    IsValueSpecifiedEnum Value(struct tm& value) const override;

    /// Frees the property with its texts; called by Release.
    static void operator delete(void* memory) noexcept;

private:
    static void* operator new(std::size_t size, std::size_t textSize);
    static void operator delete(void* memory, std::size_t textSize) noexcept;

    XMLProperty(Texts const& texts, ValueOf value);
    ~XMLProperty() override;

    /// The bytes from `begin` to `end` of the texts, which stand one behind the other.
    std::string_view TextAt(std::size_t begin, std::size_t end) const;

    ValueOf m_value;
    std::size_t m_idEnd;
    std::size_t m_nameEnd;
    std::size_t m_valueEnd;
};

}  // namespace KVR
