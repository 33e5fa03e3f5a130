#pragma once

#include <string>
#include <vector>

namespace KVR::Campaigns
{

/// Small models in every format that is imported.
struct ModelFiles
{
    struct Model
    {
        /// What it is called in findings, and the extension of its file.
        std::string name;
        std::string extension;
        std::string bytes;
        /// Files beside it, by their names.
        std::vector<std::pair<std::string, std::string>> beside = {};
    };

    /// A box with a rounded edge and a bore, in the text form of Open CASCADE.
    static std::string Brep();
    static std::vector<Model> All();
};

}  // namespace KVR::Campaigns
