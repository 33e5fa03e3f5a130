#include "exchange/export/StrokeFont.h"

#include <charconv>
#include <fstream>
#include <iterator>
#include <sstream>

namespace KVR
{

namespace
{

constexpr char kFirst = ' ';
constexpr std::size_t kGlyphs = 95;
// Of a line: the number of the glyph and how many pairs of letters follow. A pair is a point, each letter a number.
constexpr std::size_t kNumberWidth = 5;
constexpr std::size_t kHeadWidth = 8;
constexpr char kZero = 'R';
// Capitals stand on the one and reach to the other; y runs downwards.
constexpr double kBase = 9.0;
constexpr double kTop = -12.0;

// Signs of drawings that the font does not have.
constexpr struct
{
    std::string_view sign;
    std::string_view letters;
} kSigns[] = {{"\u00B1", "+/-"}, {"\u00B0", " deg"}, {"\u00D8", "dia "}, {"\u2300", "dia "},  {"\u00D7", "x"},
              {"\u2212", "-"},   {"\u2264", "<="},   {"\u2265", ">="},   {"\u00B5", "micro"}, {"\u2205", "dia "}};

// In the letters of the font.
std::string LettersOf(std::string_view text)
{
    std::string letters;
    while (!text.empty())
    {
        std::size_t length = 1;
        std::string_view known = text.substr(0, 1);
        if (static_cast<unsigned char>(text.front()) >= 0x80)
        {
            known = "?";
            while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U)
                ++length;
            for (auto const& [sign, replacement] : kSigns)
                if (text.substr(0, length) == sign)
                    known = replacement;
        }
        letters += known;
        text.remove_prefix(length);
    }
    return letters;
}

}  // namespace

std::optional<StrokeFont> StrokeFont::Load()
{
#ifdef KVR_STROKE_FONT
    std::ifstream file(KVR_STROKE_FONT, std::ios::binary);
    return Of({std::istreambuf_iterator<char>(file), {}});
#else
    return std::nullopt;
#endif
}

std::optional<StrokeFont> StrokeFont::Of(std::string const& fileText)
{
    StrokeFont font;
    std::istringstream lines(fileText);
    for (std::string line; font.m_glyphs.size() < kGlyphs && std::getline(lines, line);)
    {
        if (line.size() < kHeadWidth + 2)
            return std::nullopt;
        auto const number = [](char letter) { return static_cast<double>(letter - kZero); };
        Glyph& glyph = font.m_glyphs.emplace_back();
        glyph.left = number(line[kHeadWidth]);
        glyph.right = number(line[kHeadWidth + 1]);
        int pairs = 0;
        std::size_t const digit = line.find_first_not_of(' ', kNumberWidth);
        std::from_chars(line.data() + digit, line.data() + kHeadWidth, pairs);
        bool isDown = false;
        for (std::size_t place = kHeadWidth + 2; place + 1 < line.size() && --pairs > 0; place += 2)
        {
            // A pair of its own lifts the pen.
            if (line[place] == ' ' && line[place + 1] == 'R')
            {
                isDown = false;
                continue;
            }
            if (!isDown)
                glyph.strokes.emplace_back();
            isDown = true;
            glyph.strokes.back().push_back({number(line[place]), kBase - number(line[place + 1])});
        }
    }
    return font.m_glyphs.size() == kGlyphs ? std::optional(std::move(font)) : std::nullopt;
}

SceneLines StrokeFont::Strokes(std::string_view text, double height) const
{
    SceneLines lines;
    double const scale = height / (kBase - kTop);
    double x = 0.0;
    double y = 0.0;
    for (char const letter : LettersOf(text))
    {
        if (letter == '\n')
        {
            x = 0.0;
            y -= kLineStep * height;
            continue;
        }
        auto const place = static_cast<std::size_t>(static_cast<unsigned char>(letter) - kFirst);
        Glyph const& glyph = m_glyphs[letter >= kFirst && place < m_glyphs.size() ? place : '?' - kFirst];
        for (auto const& stroke : glyph.strokes)
        {
            std::vector<double> points;
            for (auto const& [across, up] : stroke)
                points.insert(points.end(), {x + scale * (across - glyph.left), y + scale * up, 0.0});
            if (points.size() > 3)
                lines.Add(points);
        }
        x += scale * (glyph.right - glyph.left);
    }
    return lines;
}

}  // namespace KVR
