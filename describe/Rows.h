#pragma once

#include "describe/Getters.h"

namespace KVR
{

// What the rows of a table are made with. A getter is a member function of an interface, or a function of an object and
// the same arguments; then the operations that the function asks stand behind it.

/// One value: what the getter answers, or its outputs, which are null when it answers "not specified".
template <auto getter, auto... asked>
constexpr Row Value(std::string_view name)
{
    constexpr AnswerType const* kType = Describing::TypeOf<getter>::Find();
    return {.name = name, .type = kType, .tell = &Describing::TellValue<getter>, .canBeNull = kType->canBeNull};
}

/// What a function tells by itself: one value of the type.
template <Row::TellFunction tell, auto... asked>
constexpr Row Told(std::string_view name, AnswerType const& type)
{
    return {.name = name, .type = &type, .tell = tell, .canBeNull = type.canBeNull};
}

/// A list whose items a getter answers by index.
template <auto count, auto item, auto... asked>
constexpr Row List(std::string_view name)
{
    using namespace Describing;
    using Owner = typename Of<item>::Class;
    using Index = typename Of<item>::Index;
    return {.name = name,
            .type = &kListOf<TypeOf<item>::Find()>,
            .tell = &TellItems<count, Owner, Index, &TellAnswer<item>, kListLayout<item>>,
            .tellBeyond = &TellBeyond<count, Owner, Index, &TellAnswer<item>>};
}

/// A list whose items are the outputs of a getter, named by a table of Written rows.
template <auto count, auto item, Interface const* table, auto... asked>
constexpr Row Records(std::string_view name)
{
    using namespace Describing;
    using Owner = typename Of<item>::Class;
    using Index = typename Of<item>::Index;
    return {.name = name,
            .type = &kListOf<&kObjectOf<table, !std::is_void_v<typename Of<item>::Result>>>,
            .tell = &TellItems<count, Owner, Index, &TellRecord<item, table>, AnswerVisitor::Layout::Lines>,
            .tellBeyond = &TellBeyond<count, Owner, Index, &TellRecord<item, table>>};
}

/// A list whose items a function tells, of the owner and the index.
template <auto count, class Owner, class Index, void (*tellItem)(Owner const&, Index, Telling const&), auto... asked>
constexpr Row ToldItems(std::string_view name, AnswerType const& type)
{
    using namespace Describing;
    return {.name = name,
            .type = &type,
            .tell = &TellItems<count, Owner, Index, tellItem, AnswerVisitor::Layout::Lines>,
            .tellBeyond = &TellBeyond<count, Owner, Index, tellItem>};
}

/// The n-th output of such a getter.
template <auto item, std::size_t n>
constexpr Row Written(std::string_view name)
{
    using Outputs = Describing::OutputsOf<item>;
    return {.name = name,
            .type = &kAnswerType<std::tuple_element_t<n, Outputs>>,
            .tell = &Describing::TellOutput<n, Outputs>};
}

/// A list of what several getters of the owner answer for one index, named by a table of OfItem rows.
template <auto count, class Owner, class Index, Interface const* table>
constexpr Row Items(std::string_view name)
{
    using namespace Describing;
    return {.name = name,
            .type = &kListOf<&kObjectOf<table, false>>,
            .tell = &TellItems<count, Owner, Index, &TellPart<Owner, Index, table>, AnswerVisitor::Layout::Lines>,
            .tellBeyond = &TellBeyond<count, Owner, Index, &TellPart<Owner, Index, table>>};
}

/// What a getter with an index answers for the item.
template <auto getter>
constexpr Row OfItem(std::string_view name)
{
    constexpr AnswerType const* kType = Describing::TypeOf<getter>::Find();
    return {.name = name, .type = kType, .tell = &Describing::TellOfPart<getter>, .canBeNull = kType->canBeNull};
}

/// The operations of a base.
template <class Derived, class Base>
constexpr Row Inherits()
{
    return {.base = &TableOf<Base>::kTable, .toBase = [](void const* object) -> void const* {
                return static_cast<Base const*>(static_cast<Derived const*>(object));
            }};
}

/// One getter of several of one name, by what it writes.
template <class T, class Class>
constexpr auto Writing(IsValueSpecifiedEnum (Class::*getter)(T&) const)
{
    return getter;
}
template <class T, class Class, class Index>
constexpr auto WritingAt(IsValueSpecifiedEnum (Class::*getter)(Index, T&) const)
{
    return getter;
}

}  // namespace KVR
