#include "framework/kernel/store/TextShapes.h"

#include <Standard_CString.hxx>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace KVR
{

namespace
{

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
    return ahead.substr(0, length);
}

void TextShapes::Version(bool isFile)
{
    SkipBlankLines();
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

double TextShapes::LooseReal()
{
    std::string_view const word = Word();
    double value = 0.0;
    return ReadWord(word, value) ? value : Strtod(std::string(word).c_str(), nullptr);
}

double TextShapes::Weight()
{
    double const weight = Real();
    Require(std::isfinite(weight) && weight > kLeastWeight);
    return weight;
}

std::array<float, 3> TextShapes::Normal()
{
    std::array<float, 3> normal{};
    for (float& component : normal)
        component = static_cast<float>(LooseReal());
    return normal;
}

GeomAbs_Shape TextShapes::Continuity(std::string_view word)
{
    auto const found = std::find(kContinuities.begin(), kContinuities.end(), word);
    Require(found != kContinuities.end());
    return IsGood() ? static_cast<GeomAbs_Shape>(found - kContinuities.begin()) : GeomAbs_C0;
}

int TextShapes::IntegerAndContinuity(GeomAbs_Shape& continuity)
{
    std::string_view const word = Word();
    std::size_t const end = std::min(word.find_first_of("CG"), word.size());
    int value = 0;
    Require(ReadWord(word.substr(0, end), value));
    continuity = Continuity(word.substr(end));
    return value;
}

double TextShapes::Deflection()
{
    Require(Word() == "p");
    return LooseReal();
}

TopAbs_ShapeEnum TextShapes::ShapeKind()
{
    auto const found = std::find(kShapeKinds.begin(), kShapeKinds.end(), Word());
    Require(found != kShapeKinds.end());
    return static_cast<TopAbs_ShapeEnum>(found - kShapeKinds.begin());
}

int TextShapes::PointKind(double& parameter)
{
    parameter = LooseReal();
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

std::array<bool, 7> TextShapes::ShapeFlags()
{
    std::array<bool, 7> flags{};
    std::string_view const word = Word();
    Require(word.size() == flags.size() && word.find_first_not_of("01") == std::string_view::npos);
    if (IsGood())
        std::transform(word.begin(), word.end(), flags.begin(), [](char flag) { return flag == '1'; });
    return flags;
}

bool TextShapes::Child(TopAbs_Orientation& orientation, int& index, int& location)
{
    // In the order of TopAbs_Orientation.
    constexpr std::string_view kOrientations = "+-ie";
    std::string_view const word = Word();
    if (word == "*")
        return false;
    std::size_t const found = word.empty() ? std::string_view::npos : kOrientations.find(word[0]);
    Require(found != std::string_view::npos && ReadWord(word.substr(1), index));
    if (!IsGood())
        return false;
    orientation = static_cast<TopAbs_Orientation>(found);
    location = Integer();
    return IsGood();
}

}  // namespace KVR
