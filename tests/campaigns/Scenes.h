#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/support/TempFolder.h"

namespace KVR::Campaigns
{

/// Scenes with their side files, in folders of their own that end with the object.
class SceneCopies
{
public:
    enum class Kind
    {
        /// examples/complete: every element and every kind of side file.
        kComplete,
        /// The scene of the tests, which uses every element in every place.
        kFull,
        /// A scene as an import of a model writes it.
        kModel
    };

    SceneCopies();
    ~SceneCopies();

    /// A new copy; the path of its scene.
    std::string Make(Kind kind);
    /// The names of the scene and of its side files.
    std::vector<std::string> Files(Kind kind) const;

private:
    std::unique_ptr<Test::TempFolder> m_model;
    std::vector<std::unique_ptr<Test::TempFolder>> m_folders;
};

}  // namespace KVR::Campaigns
