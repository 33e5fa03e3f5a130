#pragma once

#include <fmt/format.h>

#include <string>
#include <string_view>
#include <utility>

#include "describe/AnswerVisitor.h"
#include "describe/Row.h"

namespace KVR::Test
{

/// Writes answers as lines of text: two objects that answer alike have equal texts. What is measured of geometry is
/// left out.
class TextAnswers final : public AnswerVisitor
{
public:
    std::string Take() { return std::move(m_text); }
    void Line(std::string_view name, std::string_view value) { Append("\n{}: {}", name, value); }

    bool BeginMember(Row const& row) override
    {
        if (!row.isMeasured)
            Append("\n{}: ", row.name);
        return !row.isMeasured;
    }
    bool BeginBeyond(Row const& row) override
    {
        Append("\n{} beyond: ", row.name);
        return true;
    }
    void Null() override { Append("null "); }
    void Bool(bool value) override { Append("{} ", value); }
    void Integer(long long value) override { Append("{} ", value); }
    void Unsigned(unsigned long long value) override { Append("{} ", value); }
    void Number(double value) override { Append("{} ", value); }
    void Text(std::string_view text) override { Append("'{}' ", text); }
    void Bytes(void const* bytes, std::size_t size) override
    {
        Append("{} bytes ", size);
        m_text.append(static_cast<char const*>(bytes), size);
    }
    void BeginList(Layout) override { Append("["); }
    void EndList() override { Append("] "); }
    void BeginMap() override { Append("("); }
    void Key(std::string_view key) override { Append("{}: ", key); }
    void EndMap() override { Append(") "); }
    void BeginObject(Interface const& interface) override { Append("{} {{", interface.name); }
    void EndObject() override { Append("}} "); }

private:
    template <class... Values>
    void Append(fmt::format_string<Values...> format, Values&&... values)
    {
        fmt::format_to(std::back_inserter(m_text), format, std::forward<Values>(values)...);
    }

    std::string m_text;
};

}  // namespace KVR::Test
