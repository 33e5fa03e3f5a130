#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "host/export/Formats.h"
#include "host/export/GltfDocument.h"

namespace KVR
{

namespace
{

[[noreturn]] void Fail(int errorNumber)
{
    throw std::system_error(errorNumber != 0 ? errorNumber : EIO, std::generic_category());
}

}  // namespace

void ExportGltf(ExportTask& task)
{
    GltfDocument document(task);
    document.Build();
    tinygltf::Model& model = document.Model();
    std::filesystem::path const path(task.path);
    std::string extension = path.extension().string();
    bool const isBinary = extension.size() == 4 && (extension[3] == 'b' || extension[3] == 'B');
    errno = 0;
    if (!isBinary)
    {
        // With its buffer in a file beside it.
        if (!model.buffers.empty())
        {
            std::string const name = path.stem().string() + ".bin";
            model.buffers.front().uri = name;
        }
        tinygltf::TinyGLTF writer;
        std::size_t const size = model.buffers.empty() ? 0 : model.buffers.front().data.size();
        bool isGood = writer.WriteGltfSceneToFile(&model, task.path, false, false, true, false);
        std::error_code error;
        if (isGood && size > 0)
            isGood = std::filesystem::file_size(path.parent_path() / model.buffers.front().uri, error) == size;
        std::ifstream written(task.path, std::ios::binary | std::ios::ate);
        // A document that is cut short does not end as one.
        if (isGood && written && written.tellg() > 2)
        {
            written.seekg(-3, std::ios::end);
            std::string end(3, ' ');
            written.read(end.data(), 3);
            isGood = end.find('}') != std::string::npos;
        }
        if (!isGood)
            Fail(errno);
        return;
    }
    std::ofstream file(task.path, std::ios::binary);
    if (!file)
        Fail(errno);
    tinygltf::TinyGLTF writer;
    bool const isGood = writer.WriteGltfSceneToStream(&model, file, false, true);
    file.close();
    if (!isGood || !file)
        Fail(errno);
}

}  // namespace KVR
