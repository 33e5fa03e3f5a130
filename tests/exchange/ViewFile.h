#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace KVR::Test
{

/// A file of the viewer, unpacked as a browser does. Whatever does not fit together throws.
class ViewFile
{
public:
    explicit ViewFile(std::string const& path);

    /// What stands around the data.
    std::string page;
    std::string title;
    std::string glb;
    /// The JSON of the scene as its text.
    std::string text;
    nlohmann::json scene;
    /// The document of the GLB.
    nlohmann::json document;

    /// A member of a list of equally long lists.
    template <class Number>
    Number At(char const* list, char const* member, std::size_t place) const
    {
        return scene.at(list).at(member).at(place).get<Number>();
    }
    std::vector<double> Transform(std::size_t index) const;
    nlohmann::json const& Primitive(std::size_t mesh, std::string const& role) const;
    std::vector<float> Floats(std::size_t accessor) const;
    std::vector<std::uint32_t> Indices(std::size_t accessor) const;
    /// Those that all items draw that are seen.
    std::size_t DrawnTriangles() const;

private:
    std::string Packed(std::string const& id);
    std::string Bytes(std::size_t accessor) const;
    bool IsSeen(std::size_t item) const;

    std::string m_numbers;
};

}  // namespace KVR::Test
