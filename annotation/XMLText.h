#pragma once

#include <memory>
#include <optional>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "annotation/XMLTextLine.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/Position.h"

namespace KVR
{

/// The text of a callout: lines of fragments. It has no id; the callout owns it.
class XMLText : public IText
{
public:
    XMLText();
    ~XMLText() override;

    /// Specified always: the default position when the scene states none.
    IsValueSpecifiedEnum Origin(Position& origin) const override;
    IsValueSpecifiedEnum Transform(Matrix3d& transform) const override;
    unsigned long long LineCount() const override { return m_lines.size(); }
    ITextLine* LineAt(unsigned long long index) const override;
    /// Kept: the answer is the value itself, so that 0 reads as not specified, and more than 1 as neither.
    IsValueSpecifiedEnum TextJustification(int& justification) const override;
    IsValueSpecifiedEnum IsVertical(bool& vertical) const override;
    IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const override;

    /// Fills the object from an "IText" element; false for a null node.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node);

private:
    void ReadAttributes(xercesc::DOMNode const* node);
    void ReadChild(xercesc::DOMNode* child);

    Position m_origin;
    std::optional<Matrix3d> m_transform;
    std::vector<std::unique_ptr<XMLTextLine>> m_lines;
    std::optional<bool> m_isVertical;
    std::optional<UnitTypeEnum> m_lengthUnit;
    int m_textJustification = 1;
};

}  // namespace KVR
