#pragma once

#include <optional>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/Color.h"
#include "framework/api/IText.h"
#include "framework/api/UTF16String.h"

namespace KVR
{

/// A run of characters. What its element does not state is not specified: nothing comes down from line or text.
class XMLTextFragment : public ITextFragment
{
public:
    XMLTextFragment();
    ~XMLTextFragment() override;

    UTF16String Value() const override { return m_value; }
    IsValueSpecifiedEnum TextColor(Color& color) const override;
    IsValueSpecifiedEnum TextBackgroundColor(Color& color) const override;
    IsValueSpecifiedEnum FontName(UTF16String& name) const override;
    IsValueSpecifiedEnum IsBold(bool& bold) const override;
    IsValueSpecifiedEnum IsItalic(bool& italic) const override;
    IsValueSpecifiedEnum IsUnderlined(bool& underlined) const override;
    IsValueSpecifiedEnum IsOverlined(bool& overlined) const override;
    IsValueSpecifiedEnum Height(double& height) const override;
    IsValueSpecifiedEnum Width(double& width) const override;
    IsValueSpecifiedEnum FontSize(double& size) const override;
    IsValueSpecifiedEnum Gap(double& gap) const override;
    IsValueSpecifiedEnum ScriptType(int& type) const override;

    /// Fills the object from an "ITextFragment" element; false for a null node.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode const* node);

private:
    void ReadAttributes(xercesc::DOMNode const* node);

    UTF16String m_value;
    std::optional<Color> m_textColor;
    std::optional<Color> m_backgroundColor;
    std::optional<UTF16String> m_fontName;
    std::optional<bool> m_isBold;
    std::optional<bool> m_isItalic;
    std::optional<bool> m_isUnderlined;
    std::optional<bool> m_isOverlined;
    std::optional<double> m_height;
    std::optional<double> m_width;
    std::optional<double> m_fontSize;
    std::optional<double> m_gap;
    std::optional<int> m_scriptType;
};

}  // namespace KVR
