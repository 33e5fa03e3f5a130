#include "exchange/model/ModelFormat.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <utility>

#include "exchange/model/ModelError.h"

namespace KVR
{

namespace
{

constexpr std::size_t kHeadSize = 512;
// Of a binary STL file: a free text and the number of triangles, then so many bytes for each.
constexpr std::uintmax_t kStlHeadSize = 84;
constexpr std::uintmax_t kStlTriangleSize = 50;
// In an IGES file the letter of the section stands behind 72 columns.
constexpr std::size_t kIgesSectionColumn = 72;

constexpr std::pair<std::string_view, ModelFormat> kExtensions[] = {
    {".stp", ModelFormat::kStep},  {".step", ModelFormat::kStep}, {".p21", ModelFormat::kStep},
    {".igs", ModelFormat::kIges},  {".iges", ModelFormat::kIges}, {".brep", ModelFormat::kBrep},
    {".brp", ModelFormat::kBrep},  {".rle", ModelFormat::kBrep},  {".glb", ModelFormat::kGltf},
    {".gltf", ModelFormat::kGltf}, {".stl", ModelFormat::kStl},   {".obj", ModelFormat::kObj},
    {".ply", ModelFormat::kPly},
};

std::string_view Trimmed(std::string_view text)
{
    auto const first = text.find_first_not_of(" \t\r\n");
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

bool IsBinaryStl(std::string_view head, std::uintmax_t size)
{
    if (size < kStlHeadSize || head.size() < kStlHeadSize)
        return false;
    std::uintmax_t count = 0;
    for (int byte = 3; byte >= 0; --byte)
        count = count * 256 + static_cast<unsigned char>(head[80 + static_cast<std::size_t>(byte)]);
    return size == kStlHeadSize + count * kStlTriangleSize;
}

// An OBJ file has no head: its first lines are statements, and one of them is a point or names a library.
bool IsObj(std::string_view head)
{
    constexpr std::string_view kStatements[] = {"v", "vn", "vt", "f", "l", "p", "o", "g", "s", "usemtl", "mtllib"};
    bool isObj = false;
    // The last line may be cut.
    for (std::size_t end = head.find('\n'); end != std::string_view::npos; end = head.find('\n'))
    {
        std::string_view const word = head.substr(0, std::min(head.find_first_of(" \t\r"), end));
        if (!word.empty() && word.front() != '#' &&
            std::find(std::begin(kStatements), std::end(kStatements), word) == std::end(kStatements))
            return false;
        isObj = isObj || word == "v" || word == "mtllib";
        head.remove_prefix(end + 1);
    }
    return isObj;
}

std::optional<ModelFormat> FormatOfContent(std::string_view head, std::uintmax_t size)
{
    std::string_view text = Trimmed(head);
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    if (text.starts_with("ISO-10303-21"))
        return ModelFormat::kStep;
    if (head.starts_with("glTF"))
        return ModelFormat::kGltf;
    if (text.starts_with("ply\n") || text.starts_with("ply\r"))
        return ModelFormat::kPly;
    if (text.starts_with("DBRep_DrawableShape") || text.starts_with("CASCADE Topology") ||
        text.starts_with("Open CASCADE Topology"))
        return ModelFormat::kBrep;
    if (head.size() > kIgesSectionColumn && head[kIgesSectionColumn] == 'S' && head.find('\n') >= kIgesSectionColumn &&
        head.find('\n') <= 82)
        return ModelFormat::kIges;
    if (IsBinaryStl(head, size) || (text.starts_with("solid") && head.find("facet") != std::string_view::npos))
        return ModelFormat::kStl;
    // Of all formats glTF alone is JSON.
    if (text.starts_with('{'))
        return ModelFormat::kGltf;
    if (IsObj(text))
        return ModelFormat::kObj;
    return {};
}

}  // namespace

std::optional<ModelFormat> FormatOfModel(std::string const& path)
{
    std::error_code error;
    auto const status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        throw ModelError("there is no such file");
    if (std::filesystem::is_directory(status))
        throw ModelError("it is a directory");
    if (!std::filesystem::is_regular_file(status))
        throw ModelError("it is no regular file");
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw ModelError(std::string("it cannot be read: ") + std::strerror(errno));
    std::string head(kHeadSize, '\0');
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(file.gcount()));
    if (head.empty())
        throw ModelError("it is empty");
    if (auto const format = FormatOfContent(head, std::filesystem::file_size(path, error)))
        return format;
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    for (auto const& [known, format] : kExtensions)
        if (known == extension)
            return format;
    return {};
}

}  // namespace KVR
