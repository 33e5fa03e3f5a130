#include "exchange/certify/Picture.h"

#include <fstream>
#include <iterator>

#include "exchange/run/F3d.h"

namespace KVR::Certification
{

std::string PictureOf(std::string const& model, std::string const& target)
{
    bool const isGltf = model.ends_with(".glb") || model.ends_with(".gltf");
    if (!RunF3d({isGltf ? "--up=+Y" : "--up=+Z", "--resolution=640,480", "--output=" + target, model}))
        return {};
    std::ifstream file(target, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace KVR::Certification
