#pragma once

#include <span>
#include <string>
#include <string_view>

namespace KVR
{

class AnswerVisitor;
class PropertyDatabase;
struct Interface;

/// What of an answer is the id of another object of the scene. The walk over references follows the first four, in this
/// order.
enum class Refers : unsigned char
{
    /// No object.
    Nothing,
    /// An object that belongs to this one.
    Child,
    /// One object that this one is about: an instance's target, a callout's plane.
    Object,
    /// A set of objects.
    Set,
    /// A set in each item of a list or map.
    SetOfEach,
    /// An object that is declared elsewhere, where the walk finds it, as textures are under a file or component.
    Elsewhere
};

/// What kind of value an operation answers.
struct AnswerType
{
    enum class Kind : unsigned char
    {
        Bool,
        Integer,
        Unsigned,
        Number,
        Text,
        Unit,
        Time,
        Bytes,
        /// A text, integer, number, flag or time.
        PropertyValue,
        /// A text, a list of ids, bytes or nothing.
        Variant,
        List,
        /// Any texts to values of one type.
        Map,
        /// The members that a table says.
        Object,
        /// An object of one of several tables, which says its class.
        AnyOf
    };

    Kind kind;
    bool canBeNull = false;
    /// Of a list: the number of its items when it is always the same, otherwise 0.
    unsigned length = 0;
    /// Of a list or map.
    AnswerType const* item = nullptr;
    Interface const* interface = nullptr;
    std::span<Interface const* const> alternatives = {};
};

/// What asking takes beside the object.
struct Telling
{
    AnswerVisitor& to;
    /// Null when the scene has no universe.
    PropertyDatabase const* properties = nullptr;
    /// Type ids of the extension data to ask for.
    std::span<std::string const> extensionTypeIds = {};
    /// Ask what the dump does not ask, too: operations that are no members of it, and items that a list does not have.
    /// What a getter throws goes on then; otherwise it ends there, and the answer is null.
    bool everything = false;
    /// An item that the list does not have is being asked for, which may throw std::out_of_range or GeneralException.
    bool isBeyond = false;
    /// How deep curve data is nested.
    unsigned depth = 0;

    /// What a row does inside the handler of what a getter threw; returns where the answer is null.
    void OnThrow() const;
};

/// One operation of an interface, or all operations of a base.
struct Row
{
    using TellFunction = void (*)(void const* object, Telling const& telling);

    /// Of the member in a dump.
    std::string_view name = {};
    AnswerType const* type = nullptr;
    /// Asks the object, which is of the table's class, and tells the answer: one value.
    TellFunction tell = nullptr;
    /// Asks for items that a list does not have, and tells each answer, as a list; null for what is no list.
    TellFunction tellBeyond = nullptr;
    Refers refers = Refers::Nothing;
    /// Whether the answer may be "not specified", or a null pointer.
    bool canBeNull = false;
    bool isInDump = true;
    /// One of the long lists, which a summary leaves out.
    bool isLong = false;
    /// The answer is computed from the geometry at some cost.
    bool isMeasured = false;
    /// One of the measures of a body that cost much more: a summary leaves them out unless they are asked for.
    bool isMass = false;
    /// Of a list whose length is a member of its own: the name of that member.
    std::string_view countName = {};

    /// Of a row that stands for a base: its table, and the object as the base.
    Interface const* base = nullptr;
    void const* (*toBase)(void const* object) = nullptr;

    constexpr Row RefersTo(Refers what) const
    {
        Row row = *this;
        row.refers = what;
        return row;
    }
    constexpr Row NotInDump() const
    {
        Row row = *this;
        row.isInDump = false;
        return row;
    }
    constexpr Row Long(std::string_view count) const
    {
        Row row = *this;
        row.isLong = true;
        row.countName = count;
        return row;
    }
    constexpr Row Measured() const
    {
        Row row = *this;
        row.isMeasured = true;
        return row;
    }
    constexpr Row Mass() const
    {
        Row row = Measured();
        row.isMass = true;
        return row;
    }
};

/// The operations of an interface or of a class of values, in the order of a dump.
struct Interface
{
    enum class Form : unsigned char
    {
        /// Its members alone.
        Plain,
        /// Its name first, as "Class".
        Named,
        /// Its members alone, in a row.
        Short
    };

    std::string_view name;
    std::span<Row const> rows;
    Form form = Form::Plain;
};

/// Whether the table is that of the base, or has its operations.
bool IsA(Interface const& interface, Interface const& base);

/// Asks the object, which must be of the table's class, for each member that the visitor wants.
void TellMembers(Interface const& interface, void const* object, Telling const& telling);
/// The same, as one value.
void TellObject(Interface const& interface, void const* object, Telling const& telling);

}  // namespace KVR
