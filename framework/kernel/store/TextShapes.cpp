#include "framework/kernel/store/TextShapes.h"

#include <Geom2d_Curve.hxx>
#include <GeomTools.hxx>
#include <Geom_Curve.hxx>
#include <Geom_Surface.hxx>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <locale>
#include <sstream>

namespace KVR
{

namespace
{

using opencascade::handle;

constexpr std::array<std::string_view, 3> kVersions = {"CASCADE Topology V1, (c) Matra-Datavision",
                                                       "CASCADE Topology V2, (c) Matra-Datavision",
                                                       "CASCADE Topology V3, (c) Open Cascade"};

// Open CASCADE takes a longer word for two numbers.
constexpr std::size_t kLongestWord = 24;
// And no longer line behind a face.
constexpr std::size_t kLongestLine = 255;

// Open CASCADE takes none for a weight that is not well above 0.
constexpr double kLeastWeight = 1e-300;

constexpr std::array<std::string_view, 8> kShapeKinds = {"Co", "CS", "So", "Sh", "Fa", "Wi", "Ed", "Ve"};
constexpr std::array<std::string_view, 7> kContinuities = {"C0", "G1", "C1", "G2", "C2", "C3", "CN"};

template <class Value>
bool ReadWord(std::string_view word, Value& value)
{
    auto const result = std::from_chars(word.data(), word.data() + word.size(), value);
    return result.ec == std::errc() && result.ptr == word.data() + word.size();
}

}  // namespace

std::string_view TextShapes::Word()
{
    SkipBlanks();
    std::string_view const ahead = Ahead(kLongestWord + 1).substr(0, kLongestWord + 1);
    auto const length = static_cast<std::size_t>(std::find_if(ahead.begin(), ahead.end(), IsBlank) - ahead.begin());
    if (length == 0 || length == ahead.size())
    {
        Require(false);
        return {};
    }
    Pass(length);
    if (!m_begins.empty())
        m_words.append(ahead.substr(0, length)).push_back(' ');
    return ahead.substr(0, length);
}

void TextShapes::Version(bool isFile)
{
    SkipBlanks();
    std::string_view const ahead = Ahead(kLongestLine);
    auto const found = std::find_if(kVersions.begin() + (isFile ? 0 : 1), kVersions.end(),
                                    [&](std::string_view version) { return ahead.starts_with(version); });
    Require(found != kVersions.end());
    if (!IsGood())
        return;
    m_version = static_cast<int>(found - kVersions.begin()) + 1;
    Expect(*found);
    LineEnd();
}

bool TextShapes::Flag()
{
    int const flag = Integer();
    Require(flag == 0 || flag == 1);
    return flag == 1;
}

int TextShapes::Integer()
{
    int value = 0;
    Require(ReadWord(Word(), value));
    return value;
}

double TextShapes::Real()
{
    double value = 0.0;
    Require(ReadWord(Word(), value));
    return value;
}

void TextShapes::Reals(std::uint64_t count)
{
    // Open CASCADE makes a number of any word.
    for (; count > 0 && IsGood(); --count)
        Word();
}

void TextShapes::FiniteReals(std::uint64_t count)
{
    for (; count > 0 && IsGood(); --count)
        Require(std::isfinite(Real()));
}

void TextShapes::Poles(std::uint64_t count, int space, bool haveWeights)
{
    for (; count > 0 && IsGood(); --count)
    {
        FiniteReals(static_cast<std::uint64_t>(space));
        if (haveWeights)
        {
            double const weight = Real();
            Require(std::isfinite(weight) && weight > kLeastWeight);
        }
    }
}

void TextShapes::Continuity(std::string_view word)
{
    Require(std::find(kContinuities.begin(), kContinuities.end(), word) != kContinuities.end());
}

int TextShapes::IntegerAndContinuity()
{
    std::string_view const word = Word();
    std::size_t const end = std::min(word.find_first_of("CG"), word.size());
    int value = 0;
    Require(ReadWord(word.substr(0, end), value));
    Continuity(word.substr(end));
    return value;
}

void TextShapes::Deflection()
{
    Require(Word() == "p");
    Word();
}

TopAbs_ShapeEnum TextShapes::ShapeKind()
{
    auto const found = std::find(kShapeKinds.begin(), kShapeKinds.end(), Word());
    Require(found != kShapeKinds.end());
    return static_cast<TopAbs_ShapeEnum>(found - kShapeKinds.begin());
}

int TextShapes::PointKind()
{
    Word();
    return Integer();
}

// The rest of the line, and one more: empty, or 2 and a triangulation.
void TextShapes::EndOfFace(int& triangulation)
{
    triangulation = 0;
    auto const line = [&]
    {
        std::string_view const ahead = Ahead(kLongestLine).substr(0, kLongestLine);
        std::size_t const end = ahead.find('\n');
        Require(end != std::string_view::npos);
        if (!IsGood())
            return std::string_view();
        Pass(end + 1);
        return ahead.substr(0, end > 0 && ahead[end - 1] == '\r' ? end - 1 : end);
    };
    Require(line().find_first_not_of(' ') == std::string_view::npos);
    std::string_view const second = line();
    if (second.empty())
        return;
    std::size_t const number = second.find_first_not_of(' ', 1);
    Require(second.starts_with("2 ") && number != std::string_view::npos &&
            ReadWord(second.substr(number), triangulation) && triangulation != 0);
}

void TextShapes::ShapeFlags()
{
    constexpr std::size_t kFlags = 7;
    std::string_view const flags = Word();
    Require(flags.size() == kFlags && flags.find_first_not_of("01") == std::string_view::npos);
}

bool TextShapes::Child(int& index, int& location)
{
    std::string_view const word = Word();
    if (word == "*")
        return false;
    Require(!word.empty() && std::string_view("+-ie").find(word[0]) != std::string_view::npos &&
            ReadWord(word.substr(1), index));
    location = Integer();
    return IsGood();
}

void TextShapes::BeginGeometry()
{
    m_begins.push_back(m_words.size());
}

template <class Geometry>
bool TextShapes::IsMade(std::string const& words)
{
    std::istringstream in(words);
    in.imbue(std::locale::classic());
    in.exceptions(std::ios_base::failbit | std::ios_base::badbit);
    handle<Geometry> geometry;
    GeomTools::Read(geometry, in);
    return !geometry.IsNull();
}

template bool TextShapes::IsMade<Geom_Curve>(std::string const&);
template bool TextShapes::IsMade<Geom2d_Curve>(std::string const&);
template bool TextShapes::IsMade<Geom_Surface>(std::string const&);

}  // namespace KVR
