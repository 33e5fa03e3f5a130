#pragma once

#include <charconv>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace KVR
{

/// The lines of a text, whatever ends them.
class TextLines
{
public:
    explicit TextLines(std::string_view text) : m_text(text) {}

    /// The next line without its end; false when there is none.
    bool Next(std::string_view& line)
    {
        if (m_place >= m_text.size())
            return false;
        std::size_t end = m_text.find_first_of("\r\n", m_place);
        end = end == std::string_view::npos ? m_text.size() : end;
        line = m_text.substr(m_place, end - m_place);
        m_place = end + (m_text.substr(end, 2) == "\r\n" ? 2 : 1);
        ++m_number;
        return true;
    }
    /// That of the line, from 1.
    std::size_t Number() const noexcept { return m_number; }
    std::string Where() const { return "line " + std::to_string(m_number); }
    /// Where the next line begins.
    std::size_t Place() const noexcept { return m_place; }

private:
    std::string_view m_text;
    std::size_t m_place = 0;
    std::size_t m_number = 0;
};

/// The words of a line, with blanks between them.
class TextWords
{
public:
    explicit TextWords(std::string_view text) : m_rest(text) {}

    /// Empty behind the last one.
    std::string_view Next()
    {
        SkipBlanks();
        std::size_t const end = m_rest.find_first_of(kBlanks);
        std::string_view const word = m_rest.substr(0, end);
        m_rest.remove_prefix(word.size());
        return word;
    }
    /// What is left, without blanks around it.
    std::string_view Rest()
    {
        SkipBlanks();
        std::size_t const end = m_rest.find_last_not_of(kBlanks);
        return m_rest.substr(0, end == std::string_view::npos ? 0 : end + 1);
    }

private:
    static constexpr std::string_view kBlanks = " \t\r\n\v\f";

    void SkipBlanks()
    {
        std::size_t const first = m_rest.find_first_not_of(kBlanks);
        m_rest.remove_prefix(first == std::string_view::npos ? m_rest.size() : first);
    }

    std::string_view m_rest;
};

/// The number that a word is; nothing for another word, and for what is infinite.
template <class Number>
std::optional<Number> NumberOf(std::string_view word)
{
    if (word.starts_with('+'))
        word.remove_prefix(1);
    Number number{};
    auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error == std::errc::result_out_of_range && std::is_floating_point_v<Number> &&
        end == word.data() + word.size() && word.find("e-") != std::string_view::npos)
        return Number{};
    if (error != std::errc() || end != word.data() + word.size() || !std::isfinite(static_cast<double>(number)))
        return {};
    return number;
}

}  // namespace KVR
