#pragma once

#include <memory>
#include <string>
#include <vector>

#include "authoring/MeshStoreWriter.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

/// A scene of a test's own text, with a store of meshes and curves, which the program exports.
class ExportScene
{
public:
    ExportScene();

    /// The store, which has to be filled before Export.
    Authoring::MeshStoreWriter& Store() { return *m_store; }
    /// A mesh of these vertices and polygons, without normals.
    ExportScene& Mesh(std::string const& id, std::vector<double> const& vertices,
                      std::vector<std::vector<std::uint64_t>> const& polygons);
    /// A triangle with its corners in (0, 0, 0), (1, 0, 0) and (0, 1, 0).
    ExportScene& Triangle(std::string const& id);

    /// Writes the scene, whose text is what stands in its root element, and exports it to that name in the scene's
    /// folder.
    ToolRun Export(std::string const& text, std::string const& name, std::vector<std::string> const& options = {});

    std::string PathOf(std::string const& name) const { return m_folder.NarrowPathOf(name); }
    TempFolder const& Folder() const noexcept { return m_folder; }

private:
    TempFolder m_folder;
    std::unique_ptr<Authoring::MeshStoreWriter> m_store;
};

/// A file as the scene's root, in millimetres, over one assembly of the id "top" that the text is in.
std::string UnderTop(std::string const& instances, std::string const& crossLevel = {},
                     std::string const& declared = {});
/// A part with a mesh of the id "m", which may have more attributes or content.
std::string PartOfMesh(std::string const& meshContent = {}, std::string const& partContent = {});
/// An instance with its target and the numbers of its transform.
std::string Instance(std::string const& id, std::string const& target,
                     std::string const& transform = "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1", std::string const& more = {});

}  // namespace KVR::Test
