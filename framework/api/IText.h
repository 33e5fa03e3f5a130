#pragma once

#include "framework/api/Enums.h"
#include "framework/api/Export.h"

namespace KVR
{

class Color;
class Matrix3d;
class Position;
class UTF16String;

/// A run of characters with its font and colours. It has no id and belongs to its line.
class KVR_API ITextFragment
{
public:
    virtual ~ITextFragment();
    virtual UTF16String Value() const = 0;
    virtual IsValueSpecifiedEnum TextColor(Color& color) const = 0;
    virtual IsValueSpecifiedEnum TextBackgroundColor(Color& color) const = 0;
    virtual IsValueSpecifiedEnum FontName(UTF16String& name) const = 0;
    virtual IsValueSpecifiedEnum IsBold(bool& bold) const = 0;
    virtual IsValueSpecifiedEnum IsItalic(bool& italic) const = 0;
    virtual IsValueSpecifiedEnum IsUnderlined(bool& underlined) const = 0;
    virtual IsValueSpecifiedEnum IsOverlined(bool& overlined) const = 0;
    virtual IsValueSpecifiedEnum Height(double& height) const = 0;
    virtual IsValueSpecifiedEnum Width(double& width) const = 0;
    virtual IsValueSpecifiedEnum FontSize(double& size) const = 0;
    virtual IsValueSpecifiedEnum Gap(double& gap) const = 0;
    virtual IsValueSpecifiedEnum ScriptType(int& type) const = 0;
};

/// A line of fragments. It belongs to its text.
class KVR_API ITextLine
{
public:
    virtual ~ITextLine();
    virtual unsigned long long FragmentCount() const = 0;
    /// The fragment, owned by the line. A bad index throws std::out_of_range.
    virtual ITextFragment* FragmentAt(unsigned long long index) const = 0;
    virtual IsValueSpecifiedEnum TextAlignment(int& alignment) const = 0;
    virtual IsValueSpecifiedEnum Indentation(double& indentation) const = 0;
};

/// The text of a callout. It belongs to the callout.
class KVR_API IText
{
public:
    virtual ~IText();
    virtual IsValueSpecifiedEnum Origin(Position& origin) const = 0;
    virtual IsValueSpecifiedEnum Transform(Matrix3d& transform) const = 0;
    virtual unsigned long long LineCount() const = 0;
    /// The line, owned by the text. A bad index throws std::out_of_range.
    virtual ITextLine* LineAt(unsigned long long index) const = 0;
    virtual IsValueSpecifiedEnum TextJustification(int& justification) const = 0;
    virtual IsValueSpecifiedEnum IsVertical(bool& vertical) const = 0;
    virtual IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const = 0;
};

}  // namespace KVR
