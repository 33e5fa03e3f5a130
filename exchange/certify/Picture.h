#pragma once

#include <string>

namespace KVR::Certification
{

/// A picture of a model as the bytes of a PNG file, drawn by the program f3d; empty where that is not there, cannot
/// read the model, or takes too long. `target` is where it may write the file.
std::string PictureOf(std::string const& model, std::string const& target);

}  // namespace KVR::Certification
