#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "exchange/export/ExportSideFiles.h"
#include "exchange/export/Formats.h"
#include "exchange/export/GltfCompression.h"
#include "exchange/export/GltfDocument.h"
#include "exchange/export/OutputBuffer.h"
#include "exchange/run/NewFile.h"

namespace KVR
{

namespace
{

using Bytes = std::vector<unsigned char>;

void WriteBinary(tinygltf::Model const& model, std::string const& path)
{
    NewFile file(path);
    OutputBuffer buffer(file.Out());
    std::ostream stream(&buffer);
    // What the file refuses is then thrown here.
    stream.exceptions(std::ios::badbit);
    if (!tinygltf::TinyGLTF().WriteGltfSceneToStream(&model, stream, false, true))
        throw std::runtime_error("its document cannot be written");
    file.Finish();
}

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
void WriteCompressedBinary(tinygltf::Model& model, std::string const& path)
{
    constexpr std::uint32_t kMagic = 0x46546C67;
    constexpr std::uint32_t kVersion = 2;
    constexpr std::uint32_t kJson = 0x4E4F534A;
    constexpr std::uint32_t kBinary = 0x004E4942;
    constexpr std::size_t kHeads = 28;
    Bytes bytes;
    nlohmann::ordered_json document = DocumentOf(model, bytes);
    if (!bytes.empty())
        CompressGltf(model, bytes, document);
    std::string text = document.dump();
    text.resize((text.size() + 3) / 4 * 4, ' ');
    bytes.resize((bytes.size() + 3) / 4 * 4);
    if (text.size() + bytes.size() > 0xFFFFFFFFU - kHeads)
        throw std::runtime_error("it takes more than 4 GiB, which glTF cannot hold; --only exports a part");
    NewFile file(path);
    auto const put = [&](std::size_t number) { file.Put(static_cast<std::uint32_t>(number)); };
    for (std::size_t const number :
         {std::size_t{kMagic}, std::size_t{kVersion},
          text.size() + (bytes.empty() ? kHeads - 8 : kHeads + bytes.size()), text.size(), std::size_t{kJson}})
        put(number);
    file.Out().Put(text);
    if (!bytes.empty())
    {
        put(bytes.size());
        put(kBinary);
        file.Out().Put(TextOf(bytes));
    }
    file.Finish();
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
    else if (task.options.compress)
        WriteCompressedBinary(document.Model(), task.path);
    else
        WriteBinary(document.Model(), task.path);
}

}  // namespace KVR
