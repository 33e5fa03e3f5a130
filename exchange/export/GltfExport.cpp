#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "exchange/export/ExportSideFiles.h"
#include "exchange/export/Formats.h"
#include "exchange/export/GltfCompression.h"
#include "exchange/export/GltfDocument.h"
#include "exchange/run/NewFile.h"

namespace KVR
{

namespace
{

using Bytes = std::vector<unsigned char>;

// The document without its buffers, whose bytes are taken out of the model.
nlohmann::ordered_json DocumentOf(tinygltf::Model& model, Bytes& bytes)
{
    if (!model.buffers.empty())
        bytes.swap(model.buffers.front().data);
    model.buffers.clear();
    std::ostringstream stream;
    if (!tinygltf::TinyGLTF().WriteGltfSceneToStream(&model, stream, false, false))
        throw std::runtime_error("its document cannot be written");
    auto document = nlohmann::ordered_json::parse(stream.str());
    if (!bytes.empty())
        document["buffers"] = nlohmann::ordered_json::array({{{"byteLength", bytes.size()}}});
    return document;
}

std::string_view TextOf(Bytes const& bytes)
{
    return {reinterpret_cast<char const*>(bytes.data()), bytes.size()};
}

void WriteFile(std::filesystem::path const& path, std::string_view content)
{
    NewFile file(path.string());
    file.Out().Put(content);
    file.Finish();
}

// A head, the document and the bytes, each part filled up to words.
void WriteParts(std::string const& path, std::string text, Bytes const& bytes)
{
    constexpr std::uint32_t kMagic = 0x46546C67;
    constexpr std::uint32_t kVersion = 2;
    constexpr std::uint32_t kJson = 0x4E4F534A;
    constexpr std::uint32_t kBinary = 0x004E4942;
    constexpr std::size_t kHeads = 28;
    auto const filled = [](std::size_t size) { return (size + 3) / 4 * 4; };
    text.resize(filled(text.size()), ' ');
    std::size_t const byteCount = filled(bytes.size());
    if (text.size() + byteCount > 0xFFFFFFFFU - kHeads)
        throw std::runtime_error("it takes more than 4 GiB, which glTF cannot hold; --only exports a part");
    NewFile file(path);
    auto const put = [&](std::size_t number) { file.Put(static_cast<std::uint32_t>(number)); };
    for (std::size_t const number :
         {std::size_t{kMagic}, std::size_t{kVersion}, text.size() + (byteCount == 0 ? kHeads - 8 : kHeads + byteCount),
          text.size(), std::size_t{kJson}})
        put(number);
    file.Out().Put(text);
    if (byteCount > 0)
    {
        put(byteCount);
        put(kBinary);
        file.Out().Put(TextOf(bytes));
        for (std::size_t i = bytes.size(); i < byteCount; ++i)
            file.Out().Put('\0');
    }
    file.Finish();
}

// The document's text, in which the one buffer has the length of the bytes that are taken out of the model. The library
// would copy them all to write them, and the text of a large document is better not read again to change one number.
std::string TextOf(tinygltf::Model& model, Bytes& bytes)
{
    static constexpr std::string_view kEmpty = R"("buffers":[{"byteLength":0}])";
    if (!model.buffers.empty())
        bytes.swap(model.buffers.front().data);
    std::ostringstream stream;
    if (!tinygltf::TinyGLTF().WriteGltfSceneToStream(&model, stream, false, true))
        throw std::runtime_error("its document cannot be written");
    // Behind the head of the file and that of the part.
    std::string text = stream.str().substr(20);
    text.resize(text.find_last_not_of(' ') + 1);
    if (bytes.empty())
        return text;
    // No string has it, since quotation marks are escaped there.
    std::size_t const place = text.find(kEmpty);
    if (place == std::string::npos)
        throw std::runtime_error("its document cannot be written");
    return text.replace(place + kEmpty.size() - 3, 1, std::to_string(bytes.size()));
}

void WriteBinary(tinygltf::Model& model, std::string const& path, bool compresses)
{
    Bytes bytes;
    if (!compresses)
    {
        std::string text = TextOf(model, bytes);
        return WriteParts(path, std::move(text), bytes);
    }
    nlohmann::ordered_json document = DocumentOf(model, bytes);
    if (!bytes.empty())
        CompressGltf(model, bytes, document);
    WriteParts(path, document.dump(), bytes);
}

// As text, with the bytes in a file beside it, and each image in another.
void WriteText(tinygltf::Model& model, std::filesystem::path const& path, bool compresses)
{
    std::string const stem = path.stem().string();
    std::vector<tinygltf::Image> images;
    images.swap(model.images);
    Bytes bytes;
    nlohmann::ordered_json document = DocumentOf(model, bytes);
    for (std::size_t i = 0; i < images.size(); ++i)
    {
        std::string const name =
            stem + ".image" + std::to_string(i + 1) + (images[i].mimeType == "image/png" ? ".png" : ".jpg");
        WriteFile(path.parent_path() / name, TextOf(images[i].image));
        document["images"].push_back({{"uri", UriOfFile(name)}, {"name", images[i].name}});
    }
    if (compresses && !bytes.empty())
        CompressGltf(model, bytes, document);
    if (!bytes.empty())
    {
        document["buffers"][0]["uri"] = UriOfFile(stem + ".bin");
        WriteFile(path.parent_path() / (stem + ".bin"), TextOf(bytes));
    }
    WriteFile(path, document.dump(2) + '\n');
}

}  // namespace

void ExportGltf(ExportTask& task)
{
    std::filesystem::path const path(task.path);
    std::string const extension = path.extension().string();
    bool const isBinary = extension.size() == 4 && (extension[3] == 'b' || extension[3] == 'B');
    GltfDocument document(task, isBinary);
    document.Build();
    if (!isBinary)
        WriteText(document.Model(), path, task.options.compress);
    else
        WriteBinary(document.Model(), task.path, task.options.compress);
}

}  // namespace KVR
