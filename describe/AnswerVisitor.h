#pragma once

#include <cstddef>
#include <string_view>

#include "framework/api/Enums.h"

struct tm;

namespace KVR
{

struct Interface;
struct Row;

/// Told what objects answer, piece by piece: nothing is allocated for a value, and texts live for the call alone. Begin
/// and End come in pairs. A member is one value: a scalar, or a list, map or object of values.
class AnswerVisitor
{
public:
    /// How many pieces a list has in the eyes of a reader: a row fits on a line.
    enum class Layout : unsigned char
    {
        Lines,
        Row
    };

    virtual ~AnswerVisitor() = default;

    /// Whether the visitor wants the member; one that it does not want is not asked for, and has no EndMember.
    virtual bool BeginMember(Row const& row) = 0;
    virtual void EndMember() {}
    /// The same for what a list answers behind its last item, where such questions are asked.
    virtual bool BeginBeyond(Row const&) { return false; }

    /// Not specified, a null pointer, or a getter that threw.
    virtual void Null() = 0;
    virtual void Bool(bool value) = 0;
    virtual void Integer(long long value) = 0;
    virtual void Unsigned(unsigned long long value) = 0;
    virtual void Number(double value) = 0;
    /// In UTF-8, as the object has it.
    virtual void Text(std::string_view text) = 0;
    virtual void Bytes(void const* bytes, std::size_t size) = 0;
    virtual void BeginList(Layout layout) = 0;
    virtual void EndList() = 0;
    /// A map from texts that the object has to values: a Key before each.
    virtual void BeginMap() = 0;
    virtual void Key(std::string_view key) = 0;
    virtual void EndMap() = 0;
    virtual void BeginObject(Interface const& interface) = 0;
    virtual void EndObject() = 0;

    // Values that are made of the ones above unless a visitor takes them whole.

    /// Its name as text; the number for one that has no name.
    virtual void Unit(UnitTypeEnum unit);
    /// "YYYY-MM-DDThh:mm:ss".
    virtual void Time(struct tm const& time);
    /// Points, vectors, matrices row by row, ranges, colours: a row.
    virtual void Numbers(double const* values, std::size_t count);
    virtual void Indices(int const* values, std::size_t count);
    virtual void Indices(unsigned int const* values, std::size_t count);
};

}  // namespace KVR
