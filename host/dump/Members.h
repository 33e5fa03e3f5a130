#pragma once

#include <string_view>
#include <utility>

#include "framework/api/Enums.h"
#include "host/dump/Ask.h"
#include "host/dump/DumpValues.h"
#include "output/JsonWriter.h"

namespace KVR
{

/// Writes members of one object, a line of code for each: the name that the member has in the dump, and the getter that
/// answers it. A getter that is not specified, or throws, is written as null.
template <class Object>
class Members
{
public:
    Members(JsonWriter& json, Object const& object) : m_json(json), m_object(object) {}

    /// A getter that always answers.
    template <class Base, class T>
    Members& Value(std::string_view name, T (Base::*getter)() const)
    {
        m_json.Key(name);
        WriteValue(m_json, Ask([&]() -> T { return (m_object.*getter)(); }));
        return *this;
    }

    /// A getter that may leave its output alone; the answer 0 of a curve data operation is its "specified".
    template <class Base, class Status, class T>
    Members& Optional(std::string_view name, Status (Base::*getter)(T&) const)
    {
        T value{};
        bool const isSpecified = Asked([&] { return (m_object.*getter)(value); });
        m_json.Key(name);
        if (isSpecified)
            WriteValue(m_json, value);
        else
            m_json.Null();
        return *this;
    }

    /// Two, three or six outputs of one type, as a list.
    template <class Base, class Status, class T>
    Members& Pair(std::string_view name, Status (Base::*getter)(T&, T&) const)
    {
        T v[2] = {};
        bool const isSpecified = Asked([&] { return (m_object.*getter)(v[0], v[1]); });
        return Row(name, isSpecified, v);
    }
    template <class Base, class Status>
    Members& Triple(std::string_view name, Status (Base::*getter)(double&, double&, double&) const)
    {
        double v[3] = {};
        bool const isSpecified = Asked([&] { return (m_object.*getter)(v[0], v[1], v[2]); });
        return Row(name, isSpecified, v);
    }
    template <class Base, class Status>
    Members& Sextuple(std::string_view name,
                      Status (Base::*getter)(double&, double&, double&, double&, double&, double&) const)
    {
        double v[6] = {};
        bool const isSpecified = Asked([&] { return (m_object.*getter)(v[0], v[1], v[2], v[3], v[4], v[5]); });
        return Row(name, isSpecified, v);
    }

    /// A getter that answers a pointer: null, or what `write` writes of the object behind it.
    template <class Base, class T, class Write>
    Members& Pointer(std::string_view name, T* (Base::*getter)() const, Write write)
    {
        auto const pointer = Ask([&] { return (m_object.*getter)(); });
        m_json.Key(name);
        if (pointer && *pointer)
            write(**pointer);
        else
            m_json.Null();
        return *this;
    }

    /// A list asked item by item: `write(index)` writes one. Null when the count throws.
    template <class Base, class Count, class Write>
    Members& List(std::string_view name, Count (Base::*count)() const, Write write,
                  JsonWriter::Layout layout = JsonWriter::Layout::Lines)
    {
        auto const size = Ask([&] { return (m_object.*count)(); });
        m_json.Key(name);
        if (!size)
        {
            m_json.Null();
            return *this;
        }
        m_json.BeginList(layout);
        for (Count i = 0; i < *size; ++i)
            write(i);
        m_json.EndList();
        return *this;
    }

    /// A list whose items a getter answers by index.
    template <class Base, class Count, class T, class ItemBase, class Index>
    Members& Items(std::string_view name, Count (Base::*count)() const, T (ItemBase::*item)(Index) const,
                   JsonWriter::Layout layout = JsonWriter::Layout::Lines)
    {
        return List(
            name, count, [&](Count i) { WriteValue(m_json, Ask([&]() -> T { return (m_object.*item)(i); })); }, layout);
    }

    JsonWriter& Json() const { return m_json; }
    Object const& Of() const { return m_object; }

    /// Whether the getter answered "specified"; a getter that answers nothing always does, unless it throws.
    template <class Getter>
    static bool Asked(Getter getter)
    {
        return Ask([&] { return IsSpecified(getter); }).value_or(false);
    }

private:
    template <class Getter>
    static bool IsSpecified(Getter& getter)
    {
        using Status = decltype(getter());
        if constexpr (std::is_void_v<Status>)
        {
            getter();
            return true;
        }
        else if constexpr (std::is_same_v<Status, DataReturnCodeEnum>)
        {
            return getter() == kDataReturnCode_Ok;
        }
        else
        {
            // An answer that is neither of the two has written its output all the same.
            return getter() != kIsValueSpecified_No;
        }
    }

    template <class T, std::size_t n>
    Members& Row(std::string_view name, bool isSpecified, T const (&values)[n])
    {
        m_json.Key(name);
        if (!isSpecified)
        {
            m_json.Null();
            return *this;
        }
        m_json.BeginList(JsonWriter::Layout::Row);
        for (T const& value : values)
            WriteValue(m_json, value);
        m_json.EndList();
        return *this;
    }

    JsonWriter& m_json;
    Object const& m_object;
};

}  // namespace KVR
