#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace KVR::Certification
{

/// A glTF file, binary or not, as its JSON and the bytes that it speaks of.
class GltfBytes
{
public:
    /// Throws std::exception for a file that is damaged, or has buffers in texts.
    explicit GltfBytes(std::string const& path);

    nlohmann::json const& Json() const { return m_json; }
    /// The elements of one of the lists ("nodes", "meshes"); an empty list for a missing one.
    nlohmann::json const& List(char const* name) const;
    /// The element of a list that another one names by a number; throws std::exception for none.
    nlohmann::json const& At(char const* list, nlohmann::json const& index) const;
    /// The numbers of an accessor, `width` for each element; whole numbers that stand for fractions are made these.
    std::vector<double> Numbers(nlohmann::json const& accessor, std::size_t width) const;

private:
    /// The numbers of an accessor, or of a part of a sparse one, from its place in a view on.
    std::vector<double> Run(nlohmann::json const& place, int type, std::size_t width, std::size_t count) const;

    nlohmann::json m_json;
    std::vector<std::string> m_buffers;
};

}  // namespace KVR::Certification
