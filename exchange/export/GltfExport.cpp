#include <filesystem>
#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include "exchange/export/Formats.h"
#include "exchange/export/GltfDocument.h"
#include "exchange/export/OutputBuffer.h"
#include "exchange/run/NewFile.h"

namespace KVR
{

namespace
{

// What a file's name is in a URI.
std::string UriOf(std::string const& name)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string uri;
    for (char const character : name)
    {
        auto const byte = static_cast<unsigned char>(character);
        bool const isPlain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                             (byte >= '0' && byte <= '9') || byte == '-' || byte == '.' || byte == '_' || byte == '~';
        if (isPlain)
            uri += character;
        else
            uri += {'%', kDigits[byte >> 4U], kDigits[byte & 15U]};
    }
    return uri;
}

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

// As text, with the bytes in a file beside it.
void WriteText(tinygltf::Model& model, std::filesystem::path const& path)
{
    std::vector<unsigned char> bytes;
    if (!model.buffers.empty())
        bytes.swap(model.buffers.front().data);
    // The library would write a buffer into the text.
    model.buffers.clear();
    std::ostringstream stream;
    if (!tinygltf::TinyGLTF().WriteGltfSceneToStream(&model, stream, false, false))
        throw std::runtime_error("its document cannot be written");
    nlohmann::ordered_json document = nlohmann::ordered_json::parse(stream.str());
    if (!bytes.empty())
    {
        std::string const name = path.stem().string() + ".bin";
        document["buffers"] = {{{"byteLength", bytes.size()}, {"uri", UriOf(name)}}};
        NewFile file((path.parent_path() / name).string());
        file.Out().Put({reinterpret_cast<char const*>(bytes.data()), bytes.size()});
        file.Finish();
    }
    NewFile file(path.string());
    file.Out().Put(document.dump(2) + '\n');
    file.Finish();
}

}  // namespace

void ExportGltf(ExportTask& task)
{
    GltfDocument document(task);
    document.Build();
    std::filesystem::path const path(task.path);
    std::string const extension = path.extension().string();
    if (extension.size() == 4 && (extension[3] == 'b' || extension[3] == 'B'))
        WriteBinary(document.Model(), task.path);
    else
        WriteText(document.Model(), path);
}

}  // namespace KVR
