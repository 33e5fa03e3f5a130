#pragma once

#include <charconv>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

namespace KVR
{

/// What a child process answers, as texts and numbers behind one another: each with its length, "3:abc". Numbers come
/// back as they were. Destructors take no memory, other than those of documents of JSON.
class AnswerText
{
public:
    void Add(std::string_view text)
    {
        m_text += std::to_string(text.size());
        m_text += ':';
        m_text += text;
    }
    template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number> || std::is_enum_v<Number>>>
    void Add(Number number)
    {
        if constexpr (std::is_floating_point_v<Number>)
        {
            char bytes[32];
            Add(std::string_view(
                bytes, static_cast<std::size_t>(std::to_chars(bytes, bytes + sizeof bytes, number).ptr - bytes)));
        }
        else
            Add(std::string_view(std::to_string(static_cast<long long>(number))));
    }
    std::string const& Text() const noexcept { return m_text; }

private:
    std::string m_text;
};

/// Reads an AnswerText from its beginning. Throws std::runtime_error for what is none, or ends early.
class AnswerReader
{
public:
    /// Of a text that outlives it.
    explicit AnswerReader(std::string_view text) noexcept : m_rest(text) {}

    std::string Text() { return std::string(Next()); }
    template <class Number>
    Number Value()
    {
        if constexpr (std::is_floating_point_v<Number>)
            return Parsed<Number>();
        else
            return static_cast<Number>(Parsed<long long>());
    }

private:
    std::string_view Next()
    {
        std::size_t const length = Number<std::size_t>(m_rest.substr(0, m_rest.find(':')));
        m_rest.remove_prefix(m_rest.find(':') + 1);
        if (length > m_rest.size())
            throw std::runtime_error("it ends early");
        std::string_view const text = m_rest.substr(0, length);
        m_rest.remove_prefix(length);
        return text;
    }
    template <class Value>
    Value Parsed()
    {
        return Number<Value>(Next());
    }
    template <class Value>
    static Value Number(std::string_view text)
    {
        Value value{};
        auto const result = std::from_chars(text.data(), text.data() + text.size(), value);
        if (result.ec != std::errc() || result.ptr != text.data() + text.size())
            throw std::runtime_error("it has no number");
        return value;
    }

    std::string_view m_rest;
};

}  // namespace KVR
