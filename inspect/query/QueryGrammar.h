#pragma once

#include <tao/pegtl.hpp>

// The grammar of expressions, as docs/query.md has it.
namespace KVR::Grammar
{

namespace pegtl = tao::pegtl;
using pegtl::alnum;
using pegtl::not_at;
using pegtl::one;
using pegtl::opt;
using pegtl::plus;
using pegtl::seq;
using pegtl::sor;
using pegtl::star;

struct Blanks : star<pegtl::space>
{
};

struct WordEnd : not_at<sor<alnum, one<'_', '.'>>>
{
};
struct And : seq<TAO_PEGTL_STRING("and"), WordEnd>
{
};
struct Or : seq<TAO_PEGTL_STRING("or"), WordEnd>
{
};
struct Not : seq<TAO_PEGTL_STRING("not"), WordEnd>
{
};
struct Word : seq<not_at<sor<And, Or, Not>>, pegtl::alpha, star<sor<alnum, one<'_', '.'>>>>
{
};

// A text between quotation marks of one kind, in which a backslash takes the meaning from what follows.
template <char Mark>
struct Quoted : seq<one<Mark>, star<sor<seq<one<'\\'>, pegtl::any>, pegtl::not_one<Mark, '\\'>>>>
{
};
template <char Mark>
struct ClosingMark : one<Mark>
{
};
struct Text : sor<seq<Quoted<'"'>, pegtl::must<ClosingMark<'"'>>>, seq<Quoted<'\''>, pegtl::must<ClosingMark<'\''>>>>
{
};
// A number with its unit, a colour, a name or a pattern.
struct Bare
    : plus<pegtl::not_one<' ', '\t', '\n', '\r', '\v', '\f', '[', ']', '(', ')', '"', '\'', '<', '>', '=', '~', '!'>>
{
};
struct Value : sor<Text, Bare>
{
};

struct Opening : one<'['>
{
};
struct Closing : one<']'>
{
};
struct PropertyName : Text
{
};
struct Property : seq<TAO_PEGTL_STRING("property"), WordEnd, Blanks, pegtl::must<Opening>, Blanks,
                      pegtl::must<PropertyName>, Blanks, pegtl::must<Closing>>
{
};
struct Relation : sor<TAO_PEGTL_STRING("!="), TAO_PEGTL_STRING("!~"), TAO_PEGTL_STRING("<="), TAO_PEGTL_STRING(">="),
                      one<'=', '~', '<', '>'>>
{
};
struct Test : seq<sor<Property, Word>, opt<Blanks, Relation, Blanks, pegtl::must<Value>>>
{
};

struct Condition;
struct ClosingGroup : one<')'>
{
};
struct Group : seq<one<'('>, Blanks, pegtl::must<Condition>, Blanks, pegtl::must<ClosingGroup>>
{
};
struct Factor : seq<star<Not, Blanks>, sor<Group, Test>>
{
};
struct Conjunction : seq<Factor, star<Blanks, And, Blanks, pegtl::must<Factor>>>
{
};
struct Condition : seq<Conjunction, star<Blanks, Or, Blanks, pegtl::must<Conjunction>>>
{
};

struct Kind : sor<one<'*'>, Word>
{
};
struct Brackets : seq<one<'['>, Blanks, pegtl::must<Condition>, Blanks, pegtl::must<Closing>>
{
};
struct Step : sor<seq<Kind, star<Blanks, Brackets>>, plus<Brackets, Blanks>>
{
};
struct Child : one<'>'>
{
};
struct Descendant : TAO_PEGTL_STRING("//")
{
};
struct Path : seq<Step, star<Blanks, sor<Child, Descendant>, Blanks, pegtl::must<Step>>>
{
};
struct End : pegtl::eof
{
};
struct Expression
    : seq<Blanks, pegtl::must<Path>, star<Blanks, Or, Blanks, pegtl::must<Path>>, Blanks, pegtl::must<End>>
{
};

struct Column : sor<Property, Word>
{
};
struct ColumnsEnd : pegtl::eof
{
};
struct Columns : seq<Blanks, pegtl::must<Column>, star<Blanks, one<','>, Blanks, pegtl::must<Column>>, Blanks,
                     pegtl::must<ColumnsEnd>>
{
};

// How a text begins that is an expression and no name.
struct BeginningRelation : Relation
{
};
struct BracketsBeginning : seq<one<'['>, star<sor<pegtl::space, one<'('>, Not>>, Word, opt<Blanks, BeginningRelation>>
{
};
struct Beginning : seq<Blanks, sor<seq<Kind, Blanks, sor<Child, Descendant, BracketsBeginning>>, BracketsBeginning>>
{
};

template <class>
inline constexpr char const* kMessage = nullptr;
template <>
inline constexpr char const* kMessage<ClosingMark<'"'>> = "the text has no closing quotation mark";
template <>
inline constexpr char const* kMessage<ClosingMark<'\''>> = "the text has no closing quotation mark";
template <>
inline constexpr char const* kMessage<Opening> = "a name in brackets is expected, as in property[\"Name\"]";
template <>
inline constexpr char const* kMessage<PropertyName> = "the name of a property is expected, in quotation marks";
template <>
inline constexpr char const* kMessage<Closing> = "] is expected, or \"and\" or \"or\" with a condition";
template <>
inline constexpr char const* kMessage<ClosingGroup> = ") is expected, or \"and\" or \"or\" with a condition";
template <>
inline constexpr char const* kMessage<Value> = "a value is expected";
template <>
inline constexpr char const* kMessage<Condition> = "a condition is expected";
template <>
inline constexpr char const* kMessage<Conjunction> = "a condition is expected";
template <>
inline constexpr char const* kMessage<Factor> = "a condition is expected";
template <>
inline constexpr char const* kMessage<Step> = "a kind is expected: part, assembly, file, instance or *";
template <>
inline constexpr char const* kMessage<Path> = "a kind is expected: part, assembly, file, instance or *";
template <>
inline constexpr char const* kMessage<Column> = "a column is expected, such as path, mass or property[\"Name\"]";
template <>
inline constexpr char const* kMessage<ColumnsEnd> = "nothing more is expected, or a comma and a column";
template <>
inline constexpr char const* kMessage<End> =
    "nothing more is expected, or >, //, or \"or\" with what is below or beside";

struct Messages
{
    template <class Rule>
    static constexpr auto message = kMessage<Rule>;
    // A rule that fails is a mistake only where nothing else could stand.
    template <class>
    static constexpr bool raise_on_failure = false;
};
template <class Rule>
using Control = pegtl::must_if<Messages>::control<Rule>;

}  // namespace KVR::Grammar
