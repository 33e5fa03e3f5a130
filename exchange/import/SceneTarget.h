#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "exchange/run/WorkFolder.h"
#include "framework/xml_util/SideFileNotes.h"

namespace KVR
{

/// Where a scene is to stand, and what stands there: a former scene of the name with its side files, which are
/// replaced, and files that are no business of this one. Operations throw TargetError, and std::system_error.
class SceneTarget
{
public:
    /// Refuses the model itself, a name that does not end in ".xml", and files of others where side files are to be,
    /// unless these are to be replaced as well.
    SceneTarget(std::string const& modelPath, std::string const& scenePath, bool replacesForeign);

    /// Where to write the scene and its side files.
    std::string Inside() const { return m_folder.Inside().string(); }

    /// Gives all files their places. What belonged to the former scene and is not replaced goes.
    void Place() const;

private:
    bool IsForeign(std::string const& name) const;
    void ExpectOwn(std::string const& name) const;
    std::string PathOf(std::string const& name) const;

    WorkFolder m_folder;
    bool m_replacesForeign;
    /// By their names; nothing for a scene that is not there, or is there without notes.
    std::optional<std::map<std::string, FileDigest>> m_notes;
    std::string m_propertyName;
};

}  // namespace KVR
