#include "exchange/meshes/PlyHeader.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "exchange/meshes/TextWords.h"
#include "exchange/model/ModelError.h"

namespace KVR
{

namespace
{

using Type = PlyHeader::Type;

constexpr std::pair<std::string_view, Type> kTypes[] = {
    {"char", Type::kInt8},     {"int8", Type::kInt8},       {"uchar", Type::kUint8},    {"uint8", Type::kUint8},
    {"short", Type::kInt16},   {"int16", Type::kInt16},     {"ushort", Type::kUint16},  {"uint16", Type::kUint16},
    {"int", Type::kInt32},     {"int32", Type::kInt32},     {"uint", Type::kUint32},    {"uint32", Type::kUint32},
    {"float", Type::kFloat32}, {"float32", Type::kFloat32}, {"double", Type::kFloat64}, {"float64", Type::kFloat64},
};

constexpr std::pair<std::string_view, PlyHeader::Form> kForms[] = {
    {"ascii", PlyHeader::Form::kText},
    {"binary_little_endian", PlyHeader::Form::kLittleEndian},
    {"binary_big_endian", PlyHeader::Form::kBigEndian},
};

template <class Table>
auto Found(Table const& table, std::string_view word) -> std::optional<decltype(table[0].second)>
{
    for (auto const& [name, value] : table)
        if (name == word)
            return value;
    return {};
}

bool ReadProperty(PlyHeader& header, TextWords& words)
{
    PlyHeader::Property property;
    std::string_view word = words.Next();
    property.isList = word == "list";
    if (property.isList)
    {
        std::optional<Type> const count = Found(kTypes, words.Next());
        if (!count || *count == Type::kFloat32 || *count == Type::kFloat64)
            return false;
        property.countType = *count;
        word = words.Next();
    }
    std::optional<Type> const type = Found(kTypes, word);
    property.name = words.Next();
    if (!type || property.name.empty() || header.elements.empty())
        return false;
    property.type = *type;
    header.elements.back().properties.push_back(std::move(property));
    return true;
}

bool ReadLine(PlyHeader& header, std::string_view keyword, TextWords& words)
{
    if (keyword == "property")
        return ReadProperty(header, words);
    if (keyword == "element")
    {
        PlyHeader::Element element;
        element.name = words.Next();
        std::optional<unsigned long long> const count = NumberOf<unsigned long long>(words.Next());
        bool const isKnown = std::any_of(header.elements.begin(), header.elements.end(),
                                         [&](PlyHeader::Element const& other) { return other.name == element.name; });
        if (element.name.empty() || isKnown || !count)
            return false;
        element.count = *count;
        header.elements.push_back(std::move(element));
        return true;
    }
    if (keyword == "comment")
    {
        if (words.Next() == "TextureFile")
            header.texture = words.Rest();
        return true;
    }
    return keyword == "obj_info" || keyword.empty();
}

}  // namespace

std::size_t PlyHeader::SizeOf(Type type)
{
    constexpr std::size_t kSizes[] = {1, 1, 2, 2, 4, 4, 4, 8};
    return kSizes[static_cast<std::size_t>(type)];
}

std::size_t PlyHeader::Element::LeastSize(Form given) const
{
    std::size_t least = 0;
    for (Property const& property : properties)
        // Of a text a digit and what parts it from the next.
        least += given == Form::kText ? 2 : SizeOf(property.isList ? property.countType : property.type);
    return least;
}

PlyHeader PlyHeader::Of(std::string_view bytes)
{
    PlyHeader header;
    TextLines lines(bytes);
    std::string_view line;
    bool hasForm = false;
    while (lines.Next(line))
    {
        if (lines.Place() > bytes.size())
            // A line without an end.
            break;
        TextWords words(line);
        std::string_view const keyword = words.Next();
        bool isGood = true;
        if (lines.Number() == 1)
            isGood = keyword == "ply";
        else if (keyword == "format")
        {
            std::optional<Form> const form = Found(kForms, words.Next());
            isGood = form && words.Next() == "1.0";
            header.form = form.value_or(Form::kText);
            hasForm = true;
        }
        else if (keyword == "end_header" && hasForm)
        {
            header.size = lines.Place();
            header.lines = lines.Number();
            return header;
        }
        else
            isGood = ReadLine(header, keyword, words);
        if (!isGood)
            throw ModelError(lines.Where() + " of its head makes no sense");
    }
    throw ModelError("it ends within its head, in " + lines.Where());
}

}  // namespace KVR
