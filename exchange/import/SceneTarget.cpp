#include "exchange/import/SceneTarget.h"

#include <filesystem>
#include <set>
#include <system_error>

#include "authoring/SceneWriter.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR
{

namespace fs = std::filesystem;

namespace
{

constexpr char kSceneExtension[] = ".xml";

// Names of side files are made of that of the scene, and no two scenes share any as long as all end alike.
std::string const& Checked(std::string const& scenePath)
{
    if (fs::path(scenePath).extension() != kSceneExtension)
        throw TargetError(scenePath + ": the name of a scene ends in .xml");
    return scenePath;
}

}  // namespace

SceneTarget::SceneTarget(std::string const& modelPath, std::string const& scenePath, bool replacesForeign)
    : m_folder(Checked(scenePath), {modelPath}),
      m_replacesForeign(replacesForeign),
      m_propertyName(fs::path(scenePath).filename().replace_extension(kPropertyFileExtension.Narrow()).string())
{
    if (auto const notes = SideFileNotes::Of(UTF8String(m_folder.Target().string())))
    {
        m_notes.emplace();
        for (SideFileNote const& note : *notes)
            m_notes->emplace(note.name, note.digest);
    }
    // Better known before the work than after it.
    for (std::string const& name : Authoring::SceneWriter::SideFileNames(fs::path(scenePath).filename().string()))
        ExpectOwn(name);
}

void SceneTarget::Place() const
{
    std::vector<std::string> const names = m_folder.Names();
    for (std::string const& name : names)
        ExpectOwn(name);
    // Properties of an earlier scene of this name would count as this one's.
    ExpectOwn(m_propertyName);
    std::set<std::string> former = {m_propertyName};
    if (m_notes)
        for (auto const& [name, digest] : *m_notes)
            if (!IsForeign(name))
                former.insert(name);
    for (std::string const& name : names)
        former.erase(name);
    m_folder.MoveIntoPlace({former.begin(), former.end()});
}

std::string SceneTarget::PathOf(std::string const& name) const
{
    return (m_folder.Target().parent_path() / name).string();
}

bool SceneTarget::IsForeign(std::string const& name) const
{
    std::string const path = PathOf(name);
    std::error_code ignored;
    if (name == m_folder.Target().filename() || !fs::exists(fs::symlink_status(path, ignored)))
        return false;
    // A scene without notes takes the properties that stand under its name.
    if (!m_notes)
        return name != m_propertyName || !fs::exists(m_folder.Target(), ignored);
    auto const note = m_notes->find(name);
    return note == m_notes->end() || FileDigest::Of(UTF8String(path)) != note->second;
}

void SceneTarget::ExpectOwn(std::string const& name) const
{
    if (!m_replacesForeign && IsForeign(name))
        throw TargetError(PathOf(name) + ": it is there and is no side file of that scene; --force replaces it");
}

}  // namespace KVR
