#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace KVR::Bench
{

/// A scene of one file whose organisation is large, and what it must serve.
struct OrganisationCase
{
    std::string_view name;
    /// Writes the scene with so many things in it. Throws std::runtime_error when the file cannot be written.
    void (*write)(std::filesystem::path const& path, unsigned count);
    /// What is counted.
    std::string_view unit;
    /// The full size.
    unsigned count;
    /// The id of the object that holds the things, or of the last thing; asked for when the scene was read.
    std::string (*lastId)(unsigned count);
};

/// A view of members with distinct paths; one whose members repeat a tenth as many paths; a layer of items; groups of
/// ten items; and all of these in one scene.
std::vector<OrganisationCase> OrganisationCases();

}  // namespace KVR::Bench
