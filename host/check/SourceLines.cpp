#include "host/check/SourceLines.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

#include "output/SafeText.h"

namespace KVR
{

namespace
{

// So much of a line is shown, and so much of it before the place.
constexpr std::size_t kWidth = 96;
constexpr std::size_t kBefore = 48;
// What is kept of a line: some documents are one line.
constexpr std::size_t kLongestLine = std::size_t{1} << 20U;

struct Close
{
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

bool IsContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

}  // namespace

SourceLines::SourceLines(std::string const& path, std::set<std::size_t> const& numbers)
{
    std::unique_ptr<std::FILE, Close> const file(numbers.empty() ? nullptr : std::fopen(path.c_str(), "rb"));
    if (!file)
        return;
    std::vector<char> buffer(std::size_t{256} * 1024);
    std::size_t line = 1;
    std::string* kept = numbers.contains(line) ? &m_lines[line] : nullptr;
    while (line <= *numbers.rbegin())
    {
        std::size_t const count = std::fread(buffer.data(), 1, buffer.size(), file.get());
        if (count == 0)
            return;
        for (char const* at = buffer.data(); at != buffer.data() + count;)
        {
            char const* const end = std::find(at, static_cast<char const*>(buffer.data() + count), '\n');
            if (kept && kept->size() < kLongestLine)
                kept->append(at, end);
            if (end == buffer.data() + count)
                break;
            ++line;
            kept = numbers.contains(line) ? &m_lines[line] : nullptr;
            at = end + 1;
        }
    }
}

SourceLines::Excerpt SourceLines::Around(std::size_t line, std::size_t column)
{
    auto const found = m_lines.find(line);
    if (found == m_lines.end())
        return {};
    std::string& text = found->second;
    std::vector<std::size_t>& starts = m_starts;
    if (m_latest != line)
    {
        m_latest = line;
        starts.clear();
        // A zero is a byte of UTF-16.
        if (text.find('\0') != std::string::npos)
            text.clear();
        for (std::size_t i = 0; i < text.size(); ++i)
            if (!IsContinuation(text[i]))
                starts.push_back(i);
    }
    if (text.empty())
        return {};
    std::size_t const place = std::min(std::max<std::size_t>(column, 1) - 1, starts.size());
    std::size_t const first =
        place > kBefore ? std::min(place - kBefore, starts.size() - std::min(starts.size(), kWidth)) : 0;
    std::size_t const last = std::min(first + kWidth, starts.size());
    auto const byteOf = [&](std::size_t character)
    { return character < starts.size() ? starts[character] : text.size(); };
    std::string shown = text.substr(byteOf(first), byteOf(last) - byteOf(first));
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    Excerpt excerpt;
    // Text that is safe to show may be longer than it was: then a caret would mislead, and none of a scene's own tricks
    // are worth one.
    bool const isSafe = [&]
    {
        std::string plain = shown;
        std::replace_if(
            plain.begin(), plain.end(), [](char c) { return c == '"' || c == '\\'; }, ' ');
        return Escaped(plain) == plain;
    }();
    if (!isSafe)
        return {};
    std::string const cut = first > 0 ? "..." : "";
    excerpt.text = cut + shown + (last < starts.size() ? "..." : "");
    excerpt.caret = cut.size() + place - first;
    return excerpt;
}

}  // namespace KVR
