#pragma once

#include <string>
#include <vector>

namespace KVR
{

/// The side files of a scene, held against what the scene notes of them.
class SideFileCheck
{
public:
    enum class Extent
    {
        kSizes,
        /// Reads all of them once, at the speed of memory where they are cached.
        kContents
    };

    /// Nothing is wrong with a scene without notes.
    explicit SideFileCheck(std::string const& scenePath, Extent extent = Extent::kContents);

    /// Sentences without their full stops, with names as they stand: which file is missing, short, or another scene's.
    std::vector<std::string> const& Problems() const noexcept { return m_problems; }

    /// Takes in a file that the reader of the scene could not read; the notes may have told of it before.
    void AddUnread(std::string const& path);

    /// All problems in one sentence; not to be called without any.
    std::string Sentence() const;

    /// The paths of the files that a scene has noted, as they are opened beside it.
    static std::vector<std::string> PathsOf(std::string const& scenePath);

    /// Whether a scene has noted a file, and it is as long as that.
    static bool HasNotedSize(std::string const& scenePath, std::string const& path);

private:
    std::string m_folder;
    std::vector<std::string> m_names;
    std::vector<std::string> m_problems;
};

}  // namespace KVR
