#pragma once

#include "framework/api/Enums.h"
#include "framework/api/Export.h"

namespace KVR
{

class Color;
class Matrix3d;
class Position;
class UTF16String;

/// A run of characters with its font and colours. It has no id and belongs to its line. What the scene does not say is
/// not specified, with the output left alone: nothing comes down from the line, the text or the fragment before.
class KVR_API ITextFragment
{
public:
    virtual ~ITextFragment();
    /// The characters; empty when there are none.
    virtual UTF16String Value() const = 0;
    /// The colour of the characters; that of a new Color when the scene gives one that is not whole.
    virtual IsValueSpecifiedEnum TextColor(Color& color) const = 0;
    /// The colour behind the characters; that of a new Color when the scene gives one that is not whole.
    virtual IsValueSpecifiedEnum TextBackgroundColor(Color& color) const = 0;
    /// The name of the font, the empty one included.
    virtual IsValueSpecifiedEnum FontName(UTF16String& name) const = 0;
    /// Whether the characters are bold.
    virtual IsValueSpecifiedEnum IsBold(bool& bold) const = 0;
    /// Whether the characters are italic.
    virtual IsValueSpecifiedEnum IsItalic(bool& italic) const = 0;
    /// Whether there is a line under the characters.
    virtual IsValueSpecifiedEnum IsUnderlined(bool& underlined) const = 0;
    /// Whether there is a line over the characters.
    virtual IsValueSpecifiedEnum IsOverlined(bool& overlined) const = 0;
    /// The height of the characters, a number as the scene has it; the text's length unit is the only unit that the
    /// format states.
    virtual IsValueSpecifiedEnum Height(double& height) const = 0;
    /// The width of the characters, a number as the scene has it, in a unit like that of Height.
    virtual IsValueSpecifiedEnum Width(double& width) const = 0;
    /// The size of the font, a number as the scene has it; the format states no unit.
    virtual IsValueSpecifiedEnum FontSize(double& size) const = 0;
    /// The room between characters, a number as the scene has it, in a unit like that of Height.
    virtual IsValueSpecifiedEnum Gap(double& gap) const = 0;
    /// The kind of script: an integer as the scene has it, whose meaning the format leaves open.
    virtual IsValueSpecifiedEnum ScriptType(int& type) const = 0;
};

/// A line of fragments. It belongs to its text.
class KVR_API ITextLine
{
public:
    virtual ~ITextLine();
    /// The number of fragments; a line may have none.
    virtual unsigned long long FragmentCount() const = 0;
    /// The fragment, owned by the line. A bad index throws std::out_of_range.
    virtual ITextFragment* FragmentAt(unsigned long long index) const = 0;
    /// How the line is aligned: an integer as the scene has it, whose meaning the format leaves open. Not specified
    /// when it is absent or none.
    virtual IsValueSpecifiedEnum TextAlignment(int& alignment) const = 0;
    /// How far the line is indented, a number as the scene has it; the text's length unit is the only unit that the
    /// format states. Not specified when it is absent or none.
    virtual IsValueSpecifiedEnum Indentation(double& indentation) const = 0;
};

/// The text of a callout. It belongs to the callout.
class KVR_API IText
{
public:
    virtual ~IText();
    /// The place of the text, in its length unit; always specified, and the origin when the scene does not say.
    virtual IsValueSpecifiedEnum Origin(Position& origin) const = 0;
    /// The transform of the text, the identity included; not specified when the scene has none.
    virtual IsValueSpecifiedEnum Transform(Matrix3d& transform) const = 0;
    /// The number of lines; a text may have none.
    virtual unsigned long long LineCount() const = 0;
    /// The line, owned by the text. A bad index throws std::out_of_range.
    virtual ITextLine* LineAt(unsigned long long index) const = 0;
    /// How the lines are justified: an integer as the scene has it, whose meaning the format leaves open; 1 when it is
    /// absent or none. Kept: the output is always written and the answer is that number too, so that 0 reads as not
    /// specified.
    virtual IsValueSpecifiedEnum TextJustification(int& justification) const = 0;
    /// Whether the lines run from top to bottom; not specified when the scene does not say.
    virtual IsValueSpecifiedEnum IsVertical(bool& vertical) const = 0;
    /// The unit of the text's lengths; not specified when the scene does not say, kUnitType_Unknown for a text that is
    /// no unit.
    virtual IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const = 0;
};

}  // namespace KVR
