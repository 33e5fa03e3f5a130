#include "exchange/certify/SourceFormat.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneReading.h"

namespace KVR::Certification
{

ModelFacts FactsOfSceneFile(std::string const& path)
{
    SceneOptions options;
    options.path = path;
    options.strict = true;
    SceneFile file(options);
    SceneReading const reading = SceneReading::Of(file);
    if (!reading.rootId)
        throw std::runtime_error("it has no root");
    return FactsOfScene(file.Producer(), *reading.rootId);
}

ModelFacts FactsOfFile(std::string const& path, double millimetres, bool isModel, TellFraction const& tell)
{
    std::string start(512, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    std::string ending = std::filesystem::path(path).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    auto const holds = [&](char const* text) { return start.find(text) != std::string::npos; };
    if (holds("ISO-10303-21"))
        return FactsOfStep(path, tell);
    if (start.compare(0, 4, "glTF") == 0 || ending == ".gltf")
        return FactsOfGltf(path, isModel);
    if (holds("DBRep_DrawableShape") || holds("CASCADE Topology") || holds("Open CASCADE Topology"))
        return FactsOfBrep(path, millimetres);
    if (ending == ".xml")
        return FactsOfSceneFile(path);
    if (ending == ".igs" || ending == ".iges")
        return FactsOfIges(path);
    if (ending == ".stl" || ending == ".obj" || ending == ".ply")
        return FactsOfTriangles(path, millimetres);
    throw std::runtime_error("there is no reader for it");
}

}  // namespace KVR::Certification
