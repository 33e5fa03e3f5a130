#pragma once

#include <functional>
#include <limits>
#include <optional>
#include <tuple>

#include "describe/Ask.h"
#include "describe/Tell.h"
#include "framework/api/Interval.h"

namespace KVR::Describing
{

// How a getter, which is known when the program is compiled, is asked and its answer told. A getter is a member
// function of an interface, or a function of an object and the same arguments; a list's getter has an index before its
// outputs.

// The outputs of a getter: references to what it writes, or pointers to numbers.
template <class T>
struct OutputOf;
template <class T>
struct OutputOf<T&>
{
    using Type = T;
    static T& Pass(T& output) { return output; }
};
template <>
struct OutputOf<double*>
{
    using Type = double;
    static double* Pass(double& output) { return &output; }
};

template <class Owner, class Answer, class... Arguments>
struct Signature
{
    using Class = Owner;
    using Result = Answer;
    static constexpr bool kHasIndex = false;
    using Index = std::size_t;
    using Outputs = std::tuple<typename OutputOf<Arguments>::Type...>;

    template <auto getter>
    static Result Call(Class const& object, Index, Outputs& outputs)
    {
        return std::apply([&](auto&... output) -> Result
                          { return std::invoke(getter, object, OutputOf<Arguments>::Pass(output)...); },
                          outputs);
    }
};
template <class Owner, class Answer, std::integral At, class... Arguments>
struct Signature<Owner, Answer, At, Arguments...>
{
    using Class = Owner;
    using Result = Answer;
    static constexpr bool kHasIndex = true;
    using Index = At;
    using Outputs = std::tuple<typename OutputOf<Arguments>::Type...>;

    template <auto getter>
    static Result Call(Class const& object, Index index, Outputs& outputs)
    {
        return std::apply([&](auto&... output) -> Result
                          { return std::invoke(getter, object, index, OutputOf<Arguments>::Pass(output)...); },
                          outputs);
    }
};

template <class Getter>
struct SignatureOf;
template <class Class, class Result, class... Arguments>
struct SignatureOf<Result (Class::*)(Arguments...) const> : Signature<Class, Result, Arguments...>
{
};
template <class Class, class Result, class... Arguments>
struct SignatureOf<Result (Class::*)(Arguments...) const noexcept> : Signature<Class, Result, Arguments...>
{
};
template <class Class, class Result, class... Arguments>
struct SignatureOf<Result (*)(Class const&, Arguments...)> : Signature<Class, Result, Arguments...>
{
};

template <auto getter>
using Of = SignatureOf<decltype(getter)>;

template <auto getter>
using OutputsOf = typename Of<getter>::Outputs;

template <auto getter>
inline constexpr std::size_t kOutputCount = std::tuple_size_v<OutputsOf<getter>>;

// What a getter leaves alone is told as this, which no getter that answers "specified" does.
template <class T>
struct Initial
{
    static T Value() { return T{}; }
};
template <>
struct Initial<Interval>
{
    static Interval Value() { return {0.0, 0.0}; }
};

template <class... T>
std::tuple<T...> InitialOutputs(std::tuple<T...> const*)
{
    return {Initial<T>::Value()...};
}

// Whether a getter of outputs answered: the answer 0 of a curve data operation is its "specified".
inline bool IsSpecified(DataReturnCodeEnum answer)
{
    return answer == kDataReturnCode_Ok;
}
// An answer that is neither of the two has written its output all the same.
inline bool IsSpecified(IsValueSpecifiedEnum answer)
{
    return answer != kIsValueSpecified_No;
}

// Asks for the outputs; whether they were answered.
template <auto getter>
bool AskOutputs(Telling const& telling, typename Of<getter>::Class const& object, typename Of<getter>::Index index,
                OutputsOf<getter>& outputs)
{
    auto const answered = [&]
    {
        if constexpr (std::is_void_v<typename Of<getter>::Result>)
        {
            Of<getter>::template Call<getter>(object, index, outputs);
            return true;
        }
        else
        {
            return IsSpecified(Of<getter>::template Call<getter>(object, index, outputs));
        }
    };
    return Ask(answered, [&] { telling.OnThrow(); }).value_or(false);
}

// The type of an answer; that of an item for a getter with an index.
template <auto getter>
struct TypeOf
{
    using Outputs = OutputsOf<getter>;

    static consteval AnswerType const* Find()
    {
        constexpr bool kIsStatus = !std::is_void_v<typename Of<getter>::Result>;
        if constexpr (kOutputCount<getter> == 0)
            return &kAnswerType<std::remove_cvref_t<typename Of<getter>::Result>>;
        else if constexpr (kOutputCount<getter> == 1 && kIsStatus)
            return &kAnswerTypeOrNull<std::tuple_element_t<0, Outputs>>;
        else if constexpr (kOutputCount<getter> == 1)
            return &kAnswerType<std::tuple_element_t<0, Outputs>>;
        else if constexpr (kIsStatus)
            return &kAnswerTypeOrNull<std::array<std::tuple_element_t<0, Outputs>, kOutputCount<getter>>>;
        else
            return &kAnswerType<std::array<std::tuple_element_t<0, Outputs>, kOutputCount<getter>>>;
    }
};

// Several outputs are told as a list, which holds texts of one form or numbers.
template <class... T>
void TellOutputs(Telling const& telling, std::tuple<T...> const& outputs)
{
    using First = std::tuple_element_t<0, std::tuple<T...>>;
    if constexpr (sizeof...(T) == 1)
    {
        Tell(telling, std::get<0>(outputs));
    }
    else if constexpr ((std::is_same_v<T, First> && ...))
    {
        Tell(telling, std::apply([](auto const&... output) { return std::array{output...}; }, outputs));
    }
    else
    {
        telling.to.BeginList(AnswerVisitor::Layout::Row);
        std::apply([&](auto const&... output) { (Tell(telling, output), ...); }, outputs);
        telling.to.EndList();
    }
}

template <auto getter>
void TellAnswer(typename Of<getter>::Class const& object, typename Of<getter>::Index index, Telling const& telling)
{
    auto outputs = InitialOutputs(static_cast<OutputsOf<getter> const*>(nullptr));
    if constexpr (kOutputCount<getter> == 0)
    {
        using Result = typename Of<getter>::Result;
        Tell(telling, Ask([&]() -> Result { return Of<getter>::template Call<getter>(object, index, outputs); },
                          [&] { telling.OnThrow(); }));
    }
    else if (AskOutputs<getter>(telling, object, index, outputs))
    {
        TellOutputs(telling, outputs);
    }
    else
    {
        telling.to.Null();
    }
}

template <auto getter>
void TellValue(void const* object, Telling const& telling)
{
    TellAnswer<getter>(*static_cast<typename Of<getter>::Class const*>(object), {}, telling);
}

// Nothing when the count cannot be had, and 0 when it is not specified.
template <auto count>
auto CountOf(Telling const& telling, typename Of<count>::Class const& object)
{
    if constexpr (kOutputCount<count> == 0)
    {
        return Ask([&] { return std::invoke(count, object); }, [&] { telling.OnThrow(); });
    }
    else
    {
        OutputsOf<count> outputs{};
        return std::optional(AskOutputs<count>(telling, object, {}, outputs) ? std::get<0>(outputs) : 0);
    }
}

template <auto item>
inline constexpr AnswerVisitor::Layout kListLayout =
    std::is_same_v<OutputsOf<item>, std::tuple<double>> ? AnswerVisitor::Layout::Row : AnswerVisitor::Layout::Lines;

// A list of items that are each told by a function of the owner and the index.
template <auto count, class Owner, class Index, void (*tellItem)(Owner const&, Index, Telling const&),
          AnswerVisitor::Layout layout>
void TellItems(void const* object, Telling const& telling)
{
    auto const& owner = *static_cast<Owner const*>(object);
    auto const size = CountOf<count>(telling, owner);
    if (!size)
        return telling.to.Null();
    telling.to.BeginList(layout);
    using Count = std::remove_cvref_t<decltype(*size)>;
    for (Count i = 0; i < *size; ++i)
        tellItem(owner, static_cast<Index>(i), telling);
    telling.to.EndList();
}

// The items at the count, behind it, at the greatest index and, where there is one, at -1.
template <auto count, class Owner, class Index, void (*tellItem)(Owner const&, Index, Telling const&)>
void TellBeyond(void const* object, Telling const& telling)
{
    auto const& owner = *static_cast<Owner const*>(object);
    auto const size = CountOf<count>(telling, owner);
    Telling beyond = telling;
    beyond.isBeyond = true;
    auto const first = static_cast<Index>(size.value_or(0));
    telling.to.BeginList(AnswerVisitor::Layout::Lines);
    tellItem(owner, first, beyond);
    tellItem(owner, first + 1, beyond);
    tellItem(owner, std::numeric_limits<Index>::max(), beyond);
    if constexpr (std::is_signed_v<Index>)
        tellItem(owner, -1, beyond);
    telling.to.EndList();
}

// The outputs of a getter as one object of a table of its own.
template <auto item, Interface const* table>
void TellRecord(typename Of<item>::Class const& owner, typename Of<item>::Index index, Telling const& telling)
{
    auto outputs = InitialOutputs(static_cast<OutputsOf<item> const*>(nullptr));
    if (AskOutputs<item>(telling, owner, index, outputs))
        TellObject(*table, &outputs, telling);
    else
        telling.to.Null();
}

template <std::size_t n, class Outputs>
void TellOutput(void const* object, Telling const& telling)
{
    Tell(telling, std::get<n>(*static_cast<Outputs const*>(object)));
}

// An item of a list that has no object of its own: its owner's operations with an index.
template <class Owner, class Index>
struct Part
{
    Owner const* owner;
    Index index;
};

template <auto getter>
void TellOfPart(void const* object, Telling const& telling)
{
    using Owner = typename Of<getter>::Class;
    auto const& part = *static_cast<Part<Owner, typename Of<getter>::Index> const*>(object);
    TellAnswer<getter>(*part.owner, part.index, telling);
}

template <class Owner, class Index, Interface const* table>
void TellPart(Owner const& owner, Index index, Telling const& telling)
{
    Part<Owner, Index> const part{&owner, index};
    TellObject(*table, &part, telling);
}

template <AnswerType const* item, unsigned length = 0>
inline constexpr AnswerType kListOf = {.kind = AnswerType::Kind::List, .length = length, .item = item};

template <Interface const* table, bool orNull>
inline constexpr AnswerType kObjectOf = {.kind = AnswerType::Kind::Object, .canBeNull = orNull, .interface = table};

}  // namespace KVR::Describing
